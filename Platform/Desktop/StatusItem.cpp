#include "Platform/Desktop/StatusItem.h"

#include "Platform/Desktop/PanelPlacement.h"
#include "Platform/Desktop/StatusIcon.h"
#include "Platform/Desktop/WindowSystem.h"

#include <QCursor>
#include <QEvent>
#include <QGuiApplication>
#include <QIcon>
#include <QPixmap>

#include <algorithm>
#include <cstdlib>

namespace ravlin {
namespace {

/// How far from the pointer a host's idea of the place of a click may be: no icon is larger.
constexpr int kHostAccuracy = 64;  // device-independent pixels

/// The place of a click as a host gave it, null if useless: some hosts always give the origin or the same other point,
/// and those on Wayland coordinates in a surface of their own.
QRect clickedPoint(QPoint where) {
    if (!WindowSystem::isX11()) return {};
    const QPoint point = PanelPlacement::fromDevicePixels(where, PanelPlacement::currentScreens());
    const QPoint distance = point - QCursor::pos();
    if (std::max(std::abs(distance.x()), std::abs(distance.y())) > kHostAccuracy) return {};
    return {point, QSize(1, 1)};
}

QIcon drawnIcon(const QColor& color) {
    QIcon icon;
    for (const int size : StatusIcon::kSizes) icon.addPixmap(QPixmap::fromImage(StatusIcon::image(size, color)));
    return icon;
}

}  // namespace

StatusItem::StatusItem(const QDBusConnection& bus, QObject* parent)
    : QObject(parent),
      openAction_(QStringLiteral("Open Ravlin")),
      checkForUpdatesAction_(QStringLiteral("Check for Updates\u2026")),
      quitAction_(QStringLiteral("Quit")),
      exportedMenu_({&openAction_, &checkForUpdatesAction_, &quitAction_}, bus),
      notifierItem_(bus) {
    connect(&openAction_, &QAction::triggered, this,
            [this] { Q_EMIT openRequested(notifierItem_.takeActivationToken()); });
    connect(&checkForUpdatesAction_, &QAction::triggered, this, &StatusItem::checkForUpdatesRequested);
    connect(&quitAction_, &QAction::triggered, this, &StatusItem::quitRequested);
    connect(&notifierItem_, &StatusNotifierItem::registrationChanged, this, &StatusItem::followWatcher);
    connect(&notifierItem_, &StatusNotifierItem::activated, this,
            [this](QPoint where) { Q_EMIT activated(clickedPoint(where), notifierItem_.takeActivationToken()); });
    connect(&notifierItem_, &StatusNotifierItem::contextMenuRequested, this, [this](QPoint where) {
        if (!WindowSystem::isX11()) return;
        const QRect point = clickedPoint(where);
        popupMenu().popup(point.isNull() ? QCursor::pos() : point.topLeft());
    });
    qGuiApp->installEventFilter(this);
    notifierItem_.start();
}

bool StatusItem::isShown() const {
    if (xembedIcon_ != nullptr) return QSystemTrayIcon::isSystemTrayAvailable();
    return notifierItem_.registration() == StatusNotifierItem::Registration::shown;
}

bool StatusItem::eventFilter(QObject* watched, QEvent* event) {
    // The colours of the session have changed, and so have those in which the host paints the icon.
    if (watched == qGuiApp && event->type() == QEvent::ApplicationPaletteChange) Q_EMIT notifierItem_.NewIcon();
    // Qt's window for an XEmbed icon, made when a tray appears, has no title and would go by the program's file name.
    if (event->type() == QEvent::WinIdChange && watched->inherits("QSystemTrayIconSys"))
        qobject_cast<QWidget*>(watched)->setWindowTitle(QStringLiteral("Ravlin"));
    return QObject::eventFilter(watched, event);
}

/// Qt chooses between its own StatusNotifierItem and XEmbed when a process makes its first QSystemTrayIcon, and never
/// again, so we make none while there may be a watcher. A watcher that was there and went away is restarting, or the
/// screen is locked.
void StatusItem::followWatcher() {
    if (notifierItem_.registration() != StatusNotifierItem::Registration::noWatcher)
        hideXEmbedIcon();
    else if (xembedIcon_ == nullptr && WindowSystem::isX11() && !notifierItem_.hasMetWatcher())
        showXEmbedIcon();
    Q_EMIT shownChanged();
}

void StatusItem::showXEmbedIcon() {
    xembedIcon_ = std::make_unique<QSystemTrayIcon>();
    xembedIcon_->setToolTip(QStringLiteral("Ravlin"));
    xembedIcon_->setContextMenu(&popupMenu());
    connect(xembedIcon_.get(), &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::MiddleClick)
            Q_EMIT activated(xembedIcon_->geometry(), {});
    });
    QSystemTrayIcon::isSystemTrayAvailable();  // Qt begins to watch the tray here, and would undo an earlier watch
    xembedColors_ = std::make_unique<TrayColors>();
    connect(xembedColors_.get(), &TrayColors::changed, this, &StatusItem::paintXEmbedIcon);
    paintXEmbedIcon();
    xembedIcon_->show();
}

void StatusItem::hideXEmbedIcon() {
    xembedColors_.reset();
    xembedIcon_.reset();
}

void StatusItem::paintXEmbedIcon() {
    xembedIcon_->setIcon(drawnIcon(xembedColors_->foreground().value_or(QColor(StatusIcon::kColorForAnyTray))));
}

/// Made at its first use; most desktops never need it.
QMenu& StatusItem::popupMenu() {
    if (popupMenu_ == nullptr) {
        popupMenu_ = std::make_unique<QMenu>();
        popupMenu_->setWindowTitle(QStringLiteral("Ravlin"));
        popupMenu_->addActions({&openAction_, &checkForUpdatesAction_, &quitAction_});
    }
    return *popupMenu_;
}

}  // namespace ravlin
