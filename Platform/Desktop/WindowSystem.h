#pragma once

struct wl_display;

/// The window system that Qt's windows are on. There must be an application object.
namespace ravlin::WindowSystem {

bool isX11();
bool isWayland();

/// The connection of Qt's windows to the Wayland compositor, with which it ends; null where they have none.
wl_display* waylandDisplay();

}  // namespace ravlin::WindowSystem
