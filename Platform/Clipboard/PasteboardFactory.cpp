#include "Platform/Clipboard/PasteboardFactory.h"

#include "Platform/Clipboard/Wayland/WaylandPasteboard.h"
#include "Platform/Clipboard/X11/X11Pasteboard.h"

#include <array>
#include <iostream>

namespace ravlin {
namespace {

template <class BackEnd>
std::unique_ptr<SystemPasteboard> openDefault(std::string& whyNot) {
    return BackEnd::open(/*displayName=*/nullptr, whyNot);
}

}  // namespace

std::span<const PasteboardBackEnd> pasteboardBackEnds() {
    // If a compositor offers data control, programs on its X server may see nothing without focus. If it does not, like
    // GNOME's, they see everything.
    static const std::array kBackEnds = {PasteboardBackEnd{.name = "Wayland", .open = openDefault<WaylandPasteboard>},
                                         PasteboardBackEnd{.name = "X11", .open = openDefault<X11Pasteboard>}};
    return kBackEnds;
}

std::unique_ptr<SystemPasteboard> openSystemPasteboard(const PasteboardLog& log,
                                                       std::span<const PasteboardBackEnd> backEnds) {
    std::string refusals;
    const auto line = [&refusals](std::string_view name) {
        return "clipboard: " + std::string(name) + (refusals.empty() ? "" : " (" + refusals + ")");
    };
    for (const PasteboardBackEnd& each : backEnds) {
        std::string whyNot;
        if (auto pasteboard = each.open(whyNot)) {
            log(line(each.name));
            return pasteboard;
        }
        refusals += (refusals.empty() ? "" : "; ") + std::string(each.name) + ": " + whyNot;
    }
    log(line("none"));
    return nullptr;
}

std::unique_ptr<SystemPasteboard> openSystemPasteboard(std::span<const PasteboardBackEnd> backEnds) {
    return openSystemPasteboard([](const std::string& line) { std::clog << line << std::endl; }, backEnds);
}

}  // namespace ravlin
