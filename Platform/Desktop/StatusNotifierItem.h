#pragma once

#include "Platform/Desktop/DBusStruct.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCall>
#include <QDBusServiceWatcher>
#include <QList>
#include <QObject>
#include <QPoint>
#include <QString>

#include <functional>
#include <utility>

namespace ravlin {

/// A picture as sent over the bus: (iiay), with the pixels as 32-bit ARGB in network byte order.
struct StatusNotifierPixmap {
    int width = 0;
    int height = 0;
    QByteArray pixels;

    friend QDBusArgument& operator<<(QDBusArgument& out, const StatusNotifierPixmap& pixmap) {
        return DBusStruct::write(out, pixmap.width, pixmap.height, pixmap.pixels);
    }
    friend const QDBusArgument& operator>>(const QDBusArgument& in, StatusNotifierPixmap& pixmap) {
        return DBusStruct::read(in, pixmap.width, pixmap.height, pixmap.pixels);
    }
};

/// (sa(iiay)ss).
struct StatusNotifierToolTip {
    QString iconName;
    QList<StatusNotifierPixmap> iconPixmap;
    QString title;
    QString description;

    friend QDBusArgument& operator<<(QDBusArgument& out, const StatusNotifierToolTip& toolTip) {
        return DBusStruct::write(out, toolTip.iconName, toolTip.iconPixmap, toolTip.title, toolTip.description);
    }
    friend const QDBusArgument& operator>>(const QDBusArgument& in, StatusNotifierToolTip& toolTip) {
        return DBusStruct::read(in, toolTip.iconName, toolTip.iconPixmap, toolTip.title, toolTip.description);
    }
};

/// The tray icon on the session bus under `org.kde.StatusNotifierItem`. It registers with the desktop's
/// StatusNotifierWatcher, and again whenever that restarts or a host appears. Properties, methods and D-Bus signals are
/// the protocol's, and have its names.
class StatusNotifierItem final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category SCRIPTABLE true CONSTANT)
    Q_PROPERTY(QString Id READ id SCRIPTABLE true CONSTANT)
    Q_PROPERTY(QString Title READ title SCRIPTABLE true CONSTANT)
    Q_PROPERTY(QString Status READ status SCRIPTABLE true CONSTANT)
    Q_PROPERTY(int WindowId READ windowId SCRIPTABLE true CONSTANT)
    Q_PROPERTY(QString IconThemePath READ iconThemePath SCRIPTABLE true CONSTANT)
    Q_PROPERTY(QString IconName READ iconName SCRIPTABLE true CONSTANT)
    Q_PROPERTY(QList<ravlin::StatusNotifierPixmap> IconPixmap READ iconPixmap SCRIPTABLE true CONSTANT)
    Q_PROPERTY(QString OverlayIconName READ none SCRIPTABLE true CONSTANT)
    Q_PROPERTY(QList<ravlin::StatusNotifierPixmap> OverlayIconPixmap READ noPixmap SCRIPTABLE true CONSTANT)
    Q_PROPERTY(QString AttentionIconName READ none SCRIPTABLE true CONSTANT)
    Q_PROPERTY(QList<ravlin::StatusNotifierPixmap> AttentionIconPixmap READ noPixmap SCRIPTABLE true CONSTANT)
    Q_PROPERTY(QString AttentionMovieName READ none SCRIPTABLE true CONSTANT)
    Q_PROPERTY(ravlin::StatusNotifierToolTip ToolTip READ toolTip SCRIPTABLE true CONSTANT)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu SCRIPTABLE true CONSTANT)
    Q_PROPERTY(QDBusObjectPath Menu READ menu SCRIPTABLE true CONSTANT)

public:
    /// Where the item stands with the desktop's tray.
    enum class Registration {
        asked,      // the watcher has not answered yet
        noWatcher,  // this desktop has none, or it refused
        noHost,     // registered, but no host shows items
        shown
    };

    explicit StatusNotifierItem(QDBusConnection bus, QObject* parent = nullptr);
    ~StatusNotifierItem() override;

    /// Registers the item. Connect to its signals before this.
    void start();

    Registration registration() const { return registration_; }

    /// Whether there has ever been a watcher. One that has just appeared and has not been announced yet counts: asks
    /// the bus, and waits for its answer.
    bool hasMetWatcher();

    /// The token that the host gave for raising a window; returned only once.
    QString takeActivationToken() { return std::exchange(activationToken_, {}); }

    static QString category() { return QStringLiteral("ApplicationStatus"); }
    static QString id() { return QStringLiteral("org.ravlin.ravlin"); }
    static QString title() { return QStringLiteral("Ravlin"); }
    static QString status() { return QStringLiteral("Active"); }
    static int windowId() { return 0; }
    static QString none() { return {}; }
    static QString iconName();
    static QString iconThemePath();
    static QList<StatusNotifierPixmap> iconPixmap();
    static QList<StatusNotifierPixmap> noPixmap() { return {}; }
    static StatusNotifierToolTip toolTip() { return {{}, {}, title(), {}}; }
    static bool itemIsMenu() { return false; }
    static QDBusObjectPath menu();

    Q_SLOT Q_SCRIPTABLE void Activate(int x, int y);
    Q_SLOT Q_SCRIPTABLE void SecondaryActivate(int x, int y);
    Q_SLOT Q_SCRIPTABLE void ContextMenu(int x, int y);
    Q_SLOT Q_SCRIPTABLE void Scroll(int delta, const QString& orientation);
    Q_SLOT Q_SCRIPTABLE void ProvideXdgActivationToken(const QString& token);

Q_SIGNALS:
    /// Asks the host to repaint the icon.
    Q_SCRIPTABLE void NewIcon();

    void registrationChanged();

    /// The icon was clicked at this point, in device pixels; hosts on Wayland give useless coordinates.
    void activated(QPoint where);
    void contextMenuRequested(QPoint where);

private:
    Q_SLOT void registerWithWatcher();
    void loseWatcher();
    void askForHost();
    void ask(const QDBusMessage& question, std::function<void(const QDBusPendingCall&)> whenAnswered);
    void setRegistration(Registration registration);

    QDBusConnection bus_;
    QDBusServiceWatcher watcherWatcher_;
    Registration registration_ = Registration::asked;
    bool hasMetWatcher_ = false;
    unsigned lastQuestion_ = 0;
    QString activationToken_;
};

}  // namespace ravlin
