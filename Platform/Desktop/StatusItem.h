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

/// The icon in the tray with its small menu: a StatusNotifierItem where the desktop has a watcher for them; on X11 an
/// XEmbed icon for as long as none has come. A tray that comes late or restarts is noticed by itself.
class StatusItem final : public QObject {
    Q_OBJECT

public:
    /// Shows the icon as soon as there is a tray. `bus` is the session bus; it need not be connected.
    explicit StatusItem(const QDBusConnection& bus, QObject* parent = nullptr);

    /// Whether a check for updates can be chosen in the menu; it can at first.
    void setCanCheckForUpdates(bool canCheck) { checkForUpdatesAction_.setEnabled(canCheck); }

    /// Whether some tray shows the icon, as far as the desktop tells.
    bool isShown() const;

Q_SIGNALS:
    /// The icon was clicked. `icon` is where it is, in device-independent pixels, or a point of it, or null where the
    /// desktop does not tell; `activationToken` allows to raise a window, or is "".
    void activated(const QRect& icon, const QString& activationToken);

    /// An entry of the menu was chosen.
    void openRequested(const QString& activationToken);
    void checkForUpdatesRequested();
    void quitRequested();

    /// `isShown` may answer differently now.
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
