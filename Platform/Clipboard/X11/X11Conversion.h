#pragma once

#include "Platform/Clipboard/X11/X11Connection.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace ravlin {

/// One request to the owner of the clipboard (ICCCM section 2.4) for its content as one target, delivered whole or in
/// increments. Feed it every event until it is done.
class X11Conversion {
public:
    enum class State : std::uint8_t {
        waiting,    // for the owner's answer
        receiving,  // increments
        answered,   // `bytes` are complete
        refused,    // the owner has no such target
        failed,     // the owner ended before it had finished, or sends more than it may or memory has room for
    };

    struct Question {
        xcb_window_t owner;
        xcb_atom_t target;
        xcb_atom_t property;  // of our window, where the answer goes; not in use for any other request
        std::size_t maximumSize;
    };

    X11Conversion(X11Connection& connection, Question question);

    void handle(const xcb_generic_event_t& event);

    State state() const { return state_; }
    bool isDone() const { return state_ != State::waiting && state_ != State::receiving; }

    /// What has arrived so far, its type and the size of its units in bits.
    std::string& bytes() { return bytes_; }
    xcb_atom_t type() const { return type_; }
    int format() const { return format_; }

private:
    void handleAnswer(const xcb_selection_notify_event_t& answer);
    void handleChange(const xcb_property_notify_event_t& change);
    void takeAnswer();
    void takeIncrement();
    X11Reply<xcb_get_property_reply_t> takeProperty();
    void append(xcb_get_property_reply_t& reply);

    X11Connection& connection_;
    Question question_;
    X11WindowWatch ownerWatch_;
    State state_ = State::waiting;
    xcb_atom_t type_ = XCB_ATOM_NONE;
    int format_ = 0;
    std::string bytes_;
};

}  // namespace ravlin
