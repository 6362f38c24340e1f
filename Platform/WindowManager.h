#pragma once

#include <QByteArray>
#include <QWindow>

/// What Qt does not tell the window manager of an X11 desktop. Nothing happens on others.
namespace ravlin::WindowManager {

/// Gives `window`, which is shown, the keyboard. Qt asks with the time of the last X event it saw, which is long ago
/// where the user's wish came over the session bus: window managers then take it for a window that steals the focus.
void activate(const QWindow& window);

/// Ends the desktop's "starting" feedback, for example the busy pointer, of the launch with this id. An empty id stands
/// for none.
void finishLaunch(const QByteArray& startupId);

}  // namespace ravlin::WindowManager
