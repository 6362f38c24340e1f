#include "Platform/Desktop/WindowSystem.h"

#include <QGuiApplication>
#include <qpa/qplatformnativeinterface.h>

namespace ravlin::WindowSystem {

bool isX11() {
    return QGuiApplication::platformName() == QLatin1String("xcb");
}

bool isWayland() {
    return QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

wl_display* waylandDisplay() {
    if (!isWayland()) return nullptr;
    void* const display = QGuiApplication::platformNativeInterface()->nativeResourceForIntegration("wl_display");
    return static_cast<wl_display*>(display);
}

}  // namespace ravlin::WindowSystem
