#include "Platform/Clipboard/Wayland/WaylandInput.h"

#include <unistd.h>

namespace ravlin {
namespace {

WaylandInput& input(void* self) {
    return *static_cast<WaylandInput*>(self);
}

/// For events of no interest.
template <class... Arguments>
void ignore(void* /*self*/, Arguments... /*arguments*/) {}

}  // namespace

// The objects have version 1, which has no events other than those that the listeners handle.

WaylandInput::WaylandInput(wl_seat* seat) : seat_(seat) {
    static constexpr wl_seat_listener kListener = [] {
        wl_seat_listener listener = {};
        listener.capabilities = [](void* self, wl_seat* /*seat*/, std::uint32_t capabilities) {
            input(self).noteCapabilities(capabilities);
        };
        return listener;
    }();
    wl_seat_add_listener(seat_, &kListener, this);
}

void WaylandInput::noteCapabilities(std::uint32_t capabilities) {
    const bool hasKeyboard = (capabilities & WL_SEAT_CAPABILITY_KEYBOARD) != 0;
    const bool hasPointer = (capabilities & WL_SEAT_CAPABILITY_POINTER) != 0;
    hasNewDevice_ = (hasKeyboard && !keyboard_) || (hasPointer && !pointer_);
    if (hasKeyboard && !keyboard_) listenToKeyboard();
    if (hasPointer && !pointer_) listenToPointer();
    if (!hasPointer) pointer_.reset();
    if (!hasKeyboard) {
        keyboard_.reset();
        hasFocus_ = false;
    }
}

void WaylandInput::listenToKeyboard() {
    static constexpr wl_keyboard_listener kListener = [] {
        wl_keyboard_listener listener = {};
        listener.keymap = [](void* /*self*/, wl_keyboard* /*keyboard*/, std::uint32_t /*format*/,
                             std::int32_t descriptor, std::uint32_t /*size*/) { close(descriptor); };
        listener.enter = [](void* self, wl_keyboard* /*keyboard*/, std::uint32_t serial, wl_surface* /*surface*/,
                            wl_array* /*keys*/) {
            input(self).hasFocus_ = true;
            input(self).latestSerial_ = serial;
        };
        listener.leave = [](void* self, wl_keyboard* /*keyboard*/, std::uint32_t /*serial*/, wl_surface* /*surface*/) {
            input(self).hasFocus_ = false;
        };
        listener.key = [](void* self, wl_keyboard* /*keyboard*/, std::uint32_t serial, std::uint32_t /*time*/,
                          std::uint32_t /*key*/, std::uint32_t /*state*/) { input(self).latestSerial_ = serial; };
        listener.modifiers = ignore;
        return listener;
    }();
    keyboard_.reset(wl_seat_get_keyboard(seat_));
    wl_keyboard_add_listener(keyboard_.get(), &kListener, this);
}

void WaylandInput::listenToPointer() {
    static constexpr wl_pointer_listener kListener = [] {
        wl_pointer_listener listener = {};
        listener.enter = ignore;
        listener.leave = ignore;
        listener.motion = ignore;
        listener.button = [](void* self, wl_pointer* /*pointer*/, std::uint32_t serial, std::uint32_t /*time*/,
                             std::uint32_t /*button*/, std::uint32_t /*state*/) { input(self).latestSerial_ = serial; };
        listener.axis = ignore;
        return listener;
    }();
    pointer_.reset(wl_seat_get_pointer(seat_));
    wl_pointer_add_listener(pointer_.get(), &kListener, this);
}

}  // namespace ravlin
