#pragma once

#include "Engine/Support/NonCopyable.h"
#include "Platform/Clipboard/Wayland/FocusPasteboard.h"

#include <wayland-client-protocol.h>

#include <memory>
#include <string>

namespace ravlin::tests {

/// A program's connection to a compositor, with a surface that can have keyboard focus. Only those that share it read
/// from it.
class WaylandWindow : NonCopyable {
public:
    explicit WaylandWindow(const std::string& displayName);
    ~WaylandWindow();

    wl_display* display() const { return display_; }

private:
    wl_display* display_;
    wl_registry* registry_;
    wl_compositor* compositor_ = nullptr;
    wl_surface* surface_ = nullptr;
};

/// The pasteboard of a window; the test fails if there is none.
std::unique_ptr<FocusPasteboard> openPasteboardOf(const WaylandWindow& window, ReadLimits limits = {});

}  // namespace ravlin::tests
