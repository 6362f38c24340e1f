#include "tests/platform/WaylandWindow.h"

#include <stdexcept>
#include <string_view>

namespace ravlin::tests {

WaylandWindow::WaylandWindow(const std::string& displayName) : display_(wl_display_connect(displayName.c_str())) {
    if (display_ == nullptr) throw std::runtime_error("no compositor for the test's window");
    static constexpr wl_registry_listener kListener = {
        .global =
            [](void* self, wl_registry* registry, std::uint32_t name, const char* interface,
               std::uint32_t /*version*/) {
                if (std::string_view(interface) != wl_compositor_interface.name) return;
                static_cast<WaylandWindow*>(self)->compositor_ =
                    static_cast<wl_compositor*>(wl_registry_bind(registry, name, &wl_compositor_interface, 1));
            },
        .global_remove = [](void* /*self*/, wl_registry* /*registry*/, std::uint32_t /*name*/) {}};
    registry_ = wl_display_get_registry(display_);
    wl_registry_add_listener(registry_, &kListener, this);
    wl_display_roundtrip(display_);
    surface_ = wl_compositor_create_surface(compositor_);
    wl_display_roundtrip(display_);
}

WaylandWindow::~WaylandWindow() {
    wl_proxy_destroy(reinterpret_cast<wl_proxy*>(surface_));
    wl_compositor_destroy(compositor_);
    wl_registry_destroy(registry_);
    wl_display_disconnect(display_);
}

std::unique_ptr<FocusPasteboard> openPasteboardOf(const WaylandWindow& window, ReadLimits limits) {
    std::string whyNot;
    auto pasteboard = FocusPasteboard::open(window.display(), whyNot, limits);
    if (!pasteboard) throw std::runtime_error("no pasteboard: " + whyNot);
    return pasteboard;
}

}  // namespace ravlin::tests
