#include "Platform/Desktop/WindowSystem.h"

#include <QGuiApplication>
#include <qpa/qplatformnativeinterface.h>

#include <wayland-client-core.h>

namespace ravlin::WindowSystem {

bool isX11() {
    return QGuiApplication::platformName() == QLatin1String("xcb");
}

bool isWayland() {
    return QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

wl_display* waylandDisplay() {
    auto* const native = isWayland() ? QGuiApplication::platformNativeInterface() : nullptr;
    if (native == nullptr) return nullptr;
    return static_cast<wl_display*>(native->nativeResourceForIntegration("wl_display"));
}

bool hasLostWayland() {
    wl_display* const display = waylandDisplay();
    return display != nullptr && wl_display_get_error(display) != 0;
}

}  // namespace ravlin::WindowSystem
