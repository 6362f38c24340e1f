#include "Platform/Desktop/StatusNotifierItem.h"

#include "Platform/Desktop/DBusLimits.h"
#include "Platform/Desktop/DBusMenu.h"
#include "Platform/Desktop/StatusIcon.h"

#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QtEndian>

#include <utility>

namespace ravlin {
namespace {

constexpr QLatin1String kWatcherService("org.kde.StatusNotifierWatcher");
constexpr QLatin1String kWatcherPath("/StatusNotifierWatcher");
constexpr QLatin1String kItemPath("/StatusNotifierItem");

QDBusMessage watcherCall(const QString& interface, const QString& method, const QVariantList& arguments) {
    QDBusMessage call = QDBusMessage::createMethodCall(kWatcherService, kWatcherPath, interface, method);
    call.setAutoStartService(false);  // a desktop without a tray must not get one from us
    call.setArguments(arguments);
    return call;
}

/// Waits for the bus, but gives up on one that has been stopped.
bool isWatcherThere(const QDBusConnection& bus) {
    constexpr int kAnswerLimit = 1000;  // ms
    QDBusMessage call =
        QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                                       QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameHasOwner"));
    call << QString(kWatcherService);
    return bus.call(call, QDBus::Block, kAnswerLimit).arguments().value(0).toBool();
}

StatusNotifierPixmap travelling(const QImage& image) {
    const QImage argb = image.convertToFormat(QImage::Format_ARGB32);
    StatusNotifierPixmap pixmap{argb.width(), argb.height(), QByteArray(argb.sizeInBytes(), Qt::Uninitialized)};
    qToBigEndian<quint32>(argb.constBits(), argb.sizeInBytes() / qsizetype(sizeof(quint32)), pixmap.pixels.data());
    return pixmap;
}

}  // namespace

StatusNotifierItem::StatusNotifierItem(QDBusConnection bus, QObject* parent)
    : QObject(parent),
      bus_(std::move(bus)),
      watcherWatcher_(kWatcherService, bus_, QDBusServiceWatcher::WatchForOwnerChange) {
    qDBusRegisterMetaType<StatusNotifierPixmap>();
    qDBusRegisterMetaType<QList<StatusNotifierPixmap>>();
    qDBusRegisterMetaType<StatusNotifierToolTip>();
    bus_.registerObject(kItemPath, this, QDBusConnection::ExportScriptableContents);
    connect(&watcherWatcher_, &QDBusServiceWatcher::serviceRegistered, this, &StatusNotifierItem::registerWithWatcher);
    connect(&watcherWatcher_, &QDBusServiceWatcher::serviceUnregistered, this, &StatusNotifierItem::loseWatcher);
    // From any sender: naming the watcher would mean waiting for the bus to name its owner.
    bus_.connect({}, kWatcherPath, kWatcherService, QStringLiteral("StatusNotifierHostRegistered"), this,
                 SLOT(registerWithWatcher()));
}

StatusNotifierItem::~StatusNotifierItem() {
    bus_.unregisterObject(kItemPath);
}

void StatusNotifierItem::start() {
    if (bus_.isConnected())
        registerWithWatcher();
    else
        setRegistration(Registration::noWatcher);
}

bool StatusNotifierItem::hasMetWatcher() {
    if (!hasMetWatcher_ && bus_.isConnected()) hasMetWatcher_ = isWatcherThere(bus_);
    return hasMetWatcher_;
}

void StatusNotifierItem::registerWithWatcher() {
    const QDBusMessage call =
        watcherCall(kWatcherService, QStringLiteral("RegisterStatusNotifierItem"), {bus_.baseService()});
    ask(call, [this](const QDBusPendingCall& answer) {
        if (answer.isError()) return setRegistration(Registration::noWatcher);
        hasMetWatcher_ = true;
        askForHost();
    });
}

void StatusNotifierItem::askForHost() {
    const QDBusMessage call = watcherCall(QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"),
                                          {QString(kWatcherService), QStringLiteral("IsStatusNotifierHostRegistered")});
    ask(call, [this](const QDBusPendingCall& answer) {
        const QDBusPendingReply<QDBusVariant> hasHost = answer;
        const bool isShown = hasHost.isValid() && hasHost.value().variant().toBool();
        setRegistration(isShown ? Registration::shown : Registration::noHost);
    });
}

void StatusNotifierItem::loseWatcher() {
    hasMetWatcher_ = true;
    ++lastQuestion_;
    setRegistration(Registration::noWatcher);
}

/// The answer to an older question, perhaps from a watcher that is gone, no longer counts.
void StatusNotifierItem::ask(const QDBusMessage& question, std::function<void(const QDBusPendingCall&)> whenAnswered) {
    const auto* pending = new QDBusPendingCallWatcher(bus_.asyncCall(question), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this,
            [this, number = ++lastQuestion_, whenAnswered = std::move(whenAnswered)](QDBusPendingCallWatcher* answer) {
                answer->deleteLater();
                if (number == lastQuestion_) whenAnswered(*answer);
            });
}

void StatusNotifierItem::setRegistration(Registration registration) {
    if (registration_ == registration) return;
    registration_ = registration;
    Q_EMIT registrationChanged();
}

QString StatusNotifierItem::iconName() {
    return StatusIcon::themeName();
}

QString StatusNotifierItem::iconThemePath() {
    return StatusIcon::themePath();
}

QList<StatusNotifierPixmap> StatusNotifierItem::iconPixmap() {
    QList<StatusNotifierPixmap> pixmaps;
    for (const int size : StatusIcon::kSizes)
        pixmaps.append(travelling(StatusIcon::image(size, StatusIcon::kColorForAnyTray)));
    return pixmaps;
}

QDBusObjectPath StatusNotifierItem::menu() {
    return QDBusObjectPath(DBusMenu::objectPath());
}

void StatusNotifierItem::Activate(int x, int y) {
    Q_EMIT activated({x, y});
}

void StatusNotifierItem::SecondaryActivate(int x, int y) {
    Q_EMIT activated({x, y});
}

void StatusNotifierItem::ContextMenu(int x, int y) {
    Q_EMIT contextMenuRequested({x, y});
}

void StatusNotifierItem::Scroll(int /*delta*/, const QString& /*orientation*/) {}

void StatusNotifierItem::ProvideXdgActivationToken(const QString& token) {
    activationToken_ = DBusLimits::accept(token);
}

}  // namespace ravlin
