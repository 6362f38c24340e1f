#include "Platform/Clipboard/X11/X11Conversion.h"

#include <new>
#include <utility>

namespace ravlin {
namespace {

constexpr std::size_t kPropertyUnit = 4;  // bytes; GetProperty counts in these

}  // namespace

X11Conversion::X11Conversion(X11Connection& connection, Question question)
    : connection_(connection), question_(question), ownerWatch_(connection, question.owner) {
    xcb_delete_property(connection_.get(), connection_.window(), question_.property);
    xcb_convert_selection(connection_.get(), connection_.window(), connection_.atom(X11Atom::clipboard),
                          question_.target, question_.property, XCB_CURRENT_TIME);
}

void X11Conversion::handle(const xcb_generic_event_t& event) {
    if (isDone()) return;
    switch (x11EventType(event)) {
        case XCB_SELECTION_NOTIFY: handleAnswer(x11EventAs<xcb_selection_notify_event_t>(event)); return;
        case XCB_PROPERTY_NOTIFY: handleChange(x11EventAs<xcb_property_notify_event_t>(event)); return;
        case XCB_DESTROY_NOTIFY:
            if (x11EventAs<xcb_destroy_notify_event_t>(event).window == question_.owner) state_ = State::failed;
            return;
        default: return;
    }
}

void X11Conversion::handleAnswer(const xcb_selection_notify_event_t& answer) {
    if (state_ != State::waiting || answer.target != question_.target) return;
    if (answer.property == question_.property) takeAnswer();
    // NOTE: a refusal names no property, so a late one, to an earlier request for the same target that was given up, is
    // taken for this one's. That can miss a text that is there, but never yield one that is not.
    if (answer.property == XCB_ATOM_NONE) state_ = State::refused;
}

void X11Conversion::handleChange(const xcb_property_notify_event_t& change) {
    const bool isOurs = change.window == connection_.window() && change.atom == question_.property;
    if (isOurs && change.state == XCB_PROPERTY_NEW_VALUE && state_ == State::receiving) takeIncrement();
}

void X11Conversion::takeAnswer() {
    const auto reply = takeProperty();
    if (!reply) return;
    if (reply->type == XCB_ATOM_NONE) {
        state_ = State::refused;  // announced, yet not there
    } else if (reply->type == connection_.atom(X11Atom::incr)) {
        state_ = State::receiving;  // deleting the announcement, as just done, requests the first increment
    } else {
        append(*reply);
        if (state_ == State::waiting) state_ = State::answered;
    }
}

void X11Conversion::takeIncrement() {
    const auto reply = takeProperty();
    // If a change's value is gone already, it was taken together with the one before.
    if (!reply || reply->type == XCB_ATOM_NONE) return;
    if (reply->value_len == 0) {
        state_ = State::answered;
    } else {
        append(*reply);
    }
}

X11Reply<xcb_get_property_reply_t> X11Conversion::takeProperty() {
    const std::size_t roomLeft = question_.maximumSize - bytes_.size();
    auto reply = connection_.await<xcb_get_property_reply_t>(
        xcb_get_property(connection_.get(), /*_delete=*/1, connection_.window(), question_.property,
                         XCB_GET_PROPERTY_TYPE_ANY, 0, static_cast<std::uint32_t>(roomLeft / kPropertyUnit + 1)));
    if (!reply || reply->bytes_after > 0) state_ = State::failed;
    // The server does not delete what was not read to its end.
    if (state_ == State::failed) xcb_delete_property(connection_.get(), connection_.window(), question_.property);
    return state_ == State::failed ? nullptr : std::move(reply);
}

void X11Conversion::append(xcb_get_property_reply_t& reply) {
    type_ = reply.type;
    format_ = reply.format;
    const auto size = static_cast<std::size_t>(xcb_get_property_value_length(&reply));
    if (bytes_.size() + size > question_.maximumSize) {
        state_ = State::failed;
        return;
    }
    try {
        bytes_.append(static_cast<const char*>(xcb_get_property_value(&reply)), size);
    } catch (const std::bad_alloc&) {
        state_ = State::failed;
    }
}

}  // namespace ravlin
