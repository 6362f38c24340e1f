#pragma once

#include "Platform/Desktop/DBusMenu.h"
#include "Platform/Desktop/StatusNotifierItem.h"
#include "Platform/Desktop/TrayColors.h"

#include <QAction>
#include <QDBusConnection>
#include <QMenu>
#include <QObject>
#include <QRect>
#include <QString>
#include <QSystemTrayIcon>

#include <memory>

namespace ravlin {

/// The icon in the tray with its small menu: a StatusNotifierItem if the desktop has a watcher for them; on X11 an
/// XEmbed icon until one appears. A tray that comes late or restarts is noticed automatically.
class StatusItem final : public QObject {
    Q_OBJECT

public:
    /// Shows the icon as soon as there is a tray. `bus` is the session bus; it need not be connected.
    explicit StatusItem(const QDBusConnection& bus, QObject* parent = nullptr);

    /// Whether the menu's check for updates is enabled; it is at first.
    void setCanCheckForUpdates(bool canCheck) { checkForUpdatesAction_.setEnabled(canCheck); }

    /// Whether a tray shows the icon, as far as the desktop says.
    bool isShown() const;

Q_SIGNALS:
    /// The icon was clicked. `icon` is its rectangle or a point in it, in device-independent pixels, or null if the
    /// desktop does not say; `activationToken` allows raising a window, or is "".
    void activated(const QRect& icon, const QString& activationToken);

    /// An entry of the menu was chosen.
    void openRequested(const QString& activationToken);
    void checkForUpdatesRequested();
    void quitRequested();

    /// `isShown` may have changed.
    void shownChanged();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void followWatcher();
    void showXEmbedIcon();
    void hideXEmbedIcon();
    void paintXEmbedIcon();
    QMenu& popupMenu();

    QAction openAction_;
    QAction checkForUpdatesAction_;
    QAction quitAction_;
    DBusMenu exportedMenu_;
    StatusNotifierItem notifierItem_;
    std::unique_ptr<QMenu> popupMenu_;
    std::unique_ptr<QSystemTrayIcon> xembedIcon_;
    std::unique_ptr<TrayColors> xembedColors_;
};

}  // namespace ravlin
