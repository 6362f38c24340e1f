#pragma once

struct wl_display;

/// The window system that Qt's windows are on. Needs an application object.
namespace ravlin::WindowSystem {

bool isX11();
bool isWayland();

/// The connection of Qt's windows to the Wayland compositor, which ends with that object; null if they have none.
wl_display* waylandDisplay();

/// Whether there was such a connection and it is lost.
bool hasLostWayland();

}  // namespace ravlin::WindowSystem
