#include "Platform/Clipboard/Wayland/FocusPasteboard.h"

#include <chrono>

#include <unistd.h>

namespace ravlin {

std::unique_ptr<FocusPasteboard> FocusPasteboard::open(wl_display* display, std::string& whyNot, ReadLimits limits) {
    std::unique_ptr<FocusPasteboard> pasteboard(new FocusPasteboard(limits));
    return pasteboard->start(display, whyNot) ? std::move(pasteboard) : nullptr;
}

FocusPasteboard::FocusPasteboard(ReadLimits limits)
    : WaylandPasteboard({WaylandSelection::Protocol::core}, "clipboard", limits) {}

FocusPasteboard::~FocusPasteboard() {
    letGo();
}

bool FocusPasteboard::start(wl_display* display, std::string& whyNot) {
    return WaylandPasteboard::start(WaylandConnection::share(display, globals()), whyNot);
}

void FocusPasteboard::letGo() {
    if (device() != nullptr) {
        device()->retire();
        connection().synchronise();
    }
    close();
}

void FocusPasteboard::finishTransfers(WaylandConnection::TimePoint deadline) {
    processEvents();
    while (isTransferring() && std::chrono::steady_clock::now() < deadline && connection().waitFor(-1, deadline)) {
        processEvents();
    }
}

void FocusPasteboard::followSeat(wl_seat* seat) {
    input_ = seat != nullptr ? std::make_unique<WaylandInput>(seat) : nullptr;
}

bool FocusPasteboard::hasAccess() const {
    return !input_ || ownText() != nullptr || (input_->hasFocus() && isTold());
}

/// The core protocol may refuse a copy silently; that it has accepted one shows when it offers it back to us.
std::string FocusPasteboard::nextMark() {
    return "application/x-ravlin-" + std::to_string(getpid()) + "-" + std::to_string(++copyCount_);
}

}  // namespace ravlin
