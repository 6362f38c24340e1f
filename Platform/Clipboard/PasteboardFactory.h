#pragma once

#include "Platform/Clipboard/SystemPasteboard.h"

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace ravlin {

/// One way to reach the clipboard.
struct PasteboardBackEnd {
    /// For the log, for example "X11".
    std::string_view name;
    /// The clipboard, or null with the reason in the argument.
    std::function<std::unique_ptr<SystemPasteboard>(std::string& whyNot)> open;
};

using PasteboardLog = std::function<void(const std::string& line)>;

/// The back ends that need no toolkit, best first: Wayland's data control, X11.
std::span<const PasteboardBackEnd> pasteboardBackEnds();

/// The clipboard of this desktop session, from the first of `backEnds` that can be opened, or null. `log` gets one line
/// that says which one that is, and why those before it failed:
///     "clipboard: Wayland"
///     "clipboard: X11 (Wayland: WAYLAND_DISPLAY is not set)"
std::unique_ptr<SystemPasteboard> openSystemPasteboard(const PasteboardLog& log,
                                                       std::span<const PasteboardBackEnd> backEnds);

/// The same; the line goes to `std::clog`.
std::unique_ptr<SystemPasteboard> openSystemPasteboard(std::span<const PasteboardBackEnd> backEnds);

}  // namespace ravlin
