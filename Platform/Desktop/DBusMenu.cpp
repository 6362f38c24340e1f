#include "Platform/Desktop/DBusMenu.h"

#include "Platform/Desktop/DBusLimits.h"

#include <QDBusError>
#include <QDBusMetaType>
#include <QGuiApplication>

#include <algorithm>
#include <utility>

namespace ravlin {
namespace {

void registerTypes() {
    qDBusRegisterMetaType<DBusMenuItem>();
    qDBusRegisterMetaType<QList<DBusMenuItem>>();
    qDBusRegisterMetaType<DBusMenuItemKeys>();
    qDBusRegisterMetaType<QList<DBusMenuItemKeys>>();
    qDBusRegisterMetaType<DBusMenuLayoutItem>();
    qDBusRegisterMetaType<DBusMenuEvent>();
    qDBusRegisterMetaType<QList<DBusMenuEvent>>();
}

constexpr int kMenuId = 0;
constexpr uint kRevision = 1;  // the number and order of the entries never change

}  // namespace

DBusMenu::DBusMenu(QList<QAction*> entries, QDBusConnection bus, QObject* parent)
    : QObject(parent), entries_(std::move(entries)), bus_(std::move(bus)) {
    registerTypes();
    for (int id = 1; id <= entries_.size(); ++id)
        connect(entries_[id - 1], &QAction::enabledChanged, this, [this, id] { announceChange(id); });
    bus_.registerObject(objectPath(), this, QDBusConnection::ExportScriptableContents);
}

DBusMenu::~DBusMenu() {
    bus_.unregisterObject(objectPath());
}

QString DBusMenu::textDirection() {
    return QGuiApplication::isRightToLeft() ? QStringLiteral("rtl") : QStringLiteral("ltr");
}

QVariantMap DBusMenu::properties(int id, const QStringList& names) const {
    QVariantMap all;
    if (id == kMenuId) {
        all.insert(QStringLiteral("children-display"), QStringLiteral("submenu"));
    } else {
        const QAction& entry = *entries_[id - 1];
        // An underscore marks an access key in this protocol.
        all.insert(QStringLiteral("label"), entry.text().replace(QLatin1Char('_'), QStringLiteral("__")));
        // Always sent, although true is the default, so that no host has to handle its removal.
        all.insert(QStringLiteral("enabled"), entry.isEnabled());
    }
    if (names.isEmpty()) return all;
    QVariantMap chosen;
    for (const QString& name : names)
        if (all.contains(name)) chosen.insert(name, all.value(name));
    return chosen;
}

void DBusMenu::refuse(int id) {
    if (calledFromDBus()) sendErrorReply(QDBusError::InvalidArgs, QStringLiteral("No menu entry %1").arg(id));
}

/// Refuses a call with a longer list than any host has reason to send; otherwise returns false.
bool DBusMenu::refuseTooMany(qsizetype count) {
    if (count <= DBusLimits::kMaxListSize) return false;
    if (calledFromDBus()) sendErrorReply(QDBusError::LimitsExceeded, QStringLiteral("Too many at once"));
    return true;
}

uint DBusMenu::GetLayout(int parentId, int recursionDepth, const QStringList& propertyNames,
                         DBusMenuLayoutItem& layout) {
    if (refuseTooMany(propertyNames.size())) return 0;
    if (!knows(parentId)) {
        refuse(parentId);
        return 0;
    }
    layout = {parentId, properties(parentId, propertyNames), {}};
    if (parentId != kMenuId || recursionDepth == 0) return kRevision;
    for (int id = 1; id <= entries_.size(); ++id)
        layout.children.append(
            QDBusVariant(QVariant::fromValue(DBusMenuLayoutItem{id, properties(id, propertyNames), {}})));
    return kRevision;
}

QList<DBusMenuItem> DBusMenu::GetGroupProperties(const QList<int>& ids, const QStringList& propertyNames) {
    QList<DBusMenuItem> items;
    if (refuseTooMany(std::max(ids.size(), propertyNames.size()))) return items;
    for (int id = 0; id <= entries_.size(); ++id)
        if (ids.isEmpty() || ids.contains(id)) items.append({id, properties(id, propertyNames)});
    return items;
}

QDBusVariant DBusMenu::GetProperty(int id, const QString& name) {
    const QVariant value = knows(id) ? properties(id).value(name) : QVariant();
    if (!value.isValid()) refuse(id);
    return QDBusVariant(value);
}

bool DBusMenu::handle(int id, const QString& eventId) {
    if (!knows(id) || eventId.size() > DBusLimits::kMaxStringSize) return false;
    if (id != kMenuId && eventId == QLatin1String("clicked")) entries_[id - 1]->trigger();
    return true;
}

void DBusMenu::Event(int id, const QString& eventId, const QDBusVariant& /*data*/, uint /*timestamp*/) {
    if (!handle(id, eventId)) refuse(id);
}

QList<int> DBusMenu::EventGroup(const QList<DBusMenuEvent>& events) {
    QList<int> unknown;
    if (refuseTooMany(events.size())) return unknown;
    for (const DBusMenuEvent& event : events)
        if (!handle(event.id, event.eventId)) unknown.append(event.id);
    return unknown;
}

bool DBusMenu::AboutToShow(int id) {
    if (!knows(id)) refuse(id);
    return false;  // what was sent last is up to date
}

QList<int> DBusMenu::AboutToShowGroup(const QList<int>& ids, QList<int>& idErrors) {
    if (refuseTooMany(ids.size())) return {};
    for (const int id : ids)
        if (!knows(id)) idErrors.append(id);
    return {};
}

void DBusMenu::announceChange(int id) {
    Q_EMIT ItemsPropertiesUpdated({{id, properties(id, {QStringLiteral("enabled")})}}, {});
}

}  // namespace ravlin
