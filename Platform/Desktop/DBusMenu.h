#pragma once

#include "Platform/Desktop/DBusStruct.h"

#include <QAction>
#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusVariant>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantMap>

namespace ravlin {

/// One entry's properties as sent over the bus: (ia{sv}).
struct DBusMenuItem {
    int id = 0;
    QVariantMap properties;

    friend QDBusArgument& operator<<(QDBusArgument& out, const DBusMenuItem& item) {
        return DBusStruct::write(out, item.id, item.properties);
    }
    friend const QDBusArgument& operator>>(const QDBusArgument& in, DBusMenuItem& item) {
        return DBusStruct::read(in, item.id, item.properties);
    }
};

/// The names of properties that have returned to their defaults: (ias).
struct DBusMenuItemKeys {
    int id = 0;
    QStringList properties;

    friend QDBusArgument& operator<<(QDBusArgument& out, const DBusMenuItemKeys& keys) {
        return DBusStruct::write(out, keys.id, keys.properties);
    }
    friend const QDBusArgument& operator>>(const QDBusArgument& in, DBusMenuItemKeys& keys) {
        return DBusStruct::read(in, keys.id, keys.properties);
    }
};

/// An entry with the entries under it: (ia{sv}av).
struct DBusMenuLayoutItem {
    int id = 0;
    QVariantMap properties;
    QList<QDBusVariant> children;

    friend QDBusArgument& operator<<(QDBusArgument& out, const DBusMenuLayoutItem& item) {
        return DBusStruct::write(out, item.id, item.properties, item.children);
    }
    friend const QDBusArgument& operator>>(const QDBusArgument& in, DBusMenuLayoutItem& item) {
        return DBusStruct::read(in, item.id, item.properties, item.children);
    }
};

/// What the user did to an entry: (isvu).
struct DBusMenuEvent {
    int id = 0;
    QString eventId;
    QDBusVariant data;
    uint timestamp = 0;

    friend QDBusArgument& operator<<(QDBusArgument& out, const DBusMenuEvent& event) {
        return DBusStruct::write(out, event.id, event.eventId, event.data, event.timestamp);
    }
    friend const QDBusArgument& operator>>(const QDBusArgument& in, DBusMenuEvent& event) {
        return DBusStruct::read(in, event.id, event.eventId, event.data, event.timestamp);
    }
};

/// A flat menu on the session bus under `com.canonical.dbusmenu`, for tray hosts that draw the menu themselves. Entry
/// number n of the list has the id n + 1; 0 is the menu. The methods are the protocol's, and have its names.
class DBusMenu final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
    Q_PROPERTY(uint Version READ version SCRIPTABLE true CONSTANT)
    Q_PROPERTY(QString TextDirection READ textDirection SCRIPTABLE true CONSTANT)
    Q_PROPERTY(QString Status READ status SCRIPTABLE true CONSTANT)
    Q_PROPERTY(QStringList IconThemePath READ iconThemePath SCRIPTABLE true CONSTANT)

public:
    /// The menu's path on the bus.
    static QString objectPath() { return QStringLiteral("/MenuBar"); }

    /// Exports `entries`, which must outlive the menu; their texts are fixed, but they may be enabled and disabled.
    DBusMenu(QList<QAction*> entries, QDBusConnection bus, QObject* parent = nullptr);
    ~DBusMenu() override;

    static uint version() { return 3; }
    static QString textDirection();
    static QString status() { return QStringLiteral("normal"); }
    static QStringList iconThemePath() { return {}; }

    Q_SLOT Q_SCRIPTABLE uint GetLayout(int parentId, int recursionDepth, const QStringList& propertyNames,
                                       ravlin::DBusMenuLayoutItem& layout);
    Q_SLOT Q_SCRIPTABLE QList<ravlin::DBusMenuItem> GetGroupProperties(const QList<int>& ids,
                                                                       const QStringList& propertyNames);
    Q_SLOT Q_SCRIPTABLE QDBusVariant GetProperty(int id, const QString& name);
    Q_SLOT Q_SCRIPTABLE void Event(int id, const QString& eventId, const QDBusVariant& data, uint timestamp);
    Q_SLOT Q_SCRIPTABLE QList<int> EventGroup(const QList<ravlin::DBusMenuEvent>& events);
    Q_SLOT Q_SCRIPTABLE bool AboutToShow(int id);
    Q_SLOT Q_SCRIPTABLE QList<int> AboutToShowGroup(const QList<int>& ids, QList<int>& idErrors);

Q_SIGNALS:
    Q_SCRIPTABLE void ItemsPropertiesUpdated(const QList<ravlin::DBusMenuItem>& updated,
                                             const QList<ravlin::DBusMenuItemKeys>& removed);
    Q_SCRIPTABLE void LayoutUpdated(uint revision, int parent);

private:
    bool knows(int id) const { return id >= 0 && id <= entries_.size(); }
    QVariantMap properties(int id, const QStringList& names = {}) const;
    void refuse(int id);
    bool refuseTooMany(qsizetype count);
    bool handle(int id, const QString& eventId);
    void announceChange(int id);

    QList<QAction*> entries_;
    QDBusConnection bus_;
};

}  // namespace ravlin
