#pragma once

#include "Engine/Support/NonCopyable.h"

#include <wayland-client-protocol.h>

#include <cstdint>
#include <memory>
#include <utility>

namespace ravlin {

/// What a seat reports about input to the program's windows: whether one of them has keyboard focus, and which input
/// was the latest. The events come through the event queue of the seat's object.
class WaylandInput : NonCopyable {
public:
    /// Follows `seat`, which must outlive this object and have no other listener.
    explicit WaylandInput(wl_seat* seat);
    ~WaylandInput() = default;

    bool hasFocus() const noexcept { return hasFocus_; }

    /// Whether a keyboard or pointer has appeared since the last call: its first events are still on their way.
    bool takeNewDevice() noexcept { return std::exchange(hasNewDevice_, false); }

    /// The compositor's serial number for the latest key, button or focus event; 0 before the first.
    std::uint32_t latestSerial() const noexcept { return latestSerial_; }

private:
    struct Deleter {
        void operator()(wl_keyboard* keyboard) const noexcept { wl_keyboard_destroy(keyboard); }
        void operator()(wl_pointer* pointer) const noexcept { wl_pointer_destroy(pointer); }
    };

    void noteCapabilities(std::uint32_t capabilities);
    void listenToKeyboard();
    void listenToPointer();

    wl_seat* seat_;
    std::unique_ptr<wl_keyboard, Deleter> keyboard_;
    std::unique_ptr<wl_pointer, Deleter> pointer_;
    bool hasFocus_ = false;
    bool hasNewDevice_ = false;
    std::uint32_t latestSerial_ = 0;
};

}  // namespace ravlin
