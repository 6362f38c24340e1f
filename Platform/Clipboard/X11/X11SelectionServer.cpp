#include "Platform/Clipboard/X11/X11SelectionServer.h"

#include "Platform/Clipboard/TextFormats.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace ravlin {
namespace {

// A MULTIPLE request names pairs of a target and a property. No program needs more pairs than this.
constexpr std::uint32_t kMaximumPairs = 256;
constexpr int kAtomFormat = 32;

/// Server times are 32-bit milliseconds, which wrap around to 0 every 49.7 days.
bool isEarlier(xcb_timestamp_t time, xcb_timestamp_t other) {
    return static_cast<std::int32_t>(time - other) < 0;
}

void sendNotification(X11Connection& connection, const xcb_selection_request_event_t& request, xcb_atom_t property) {
    xcb_selection_notify_event_t notification = {};
    notification.response_type = XCB_SELECTION_NOTIFY;
    notification.time = request.time;
    notification.requestor = request.requestor;
    notification.selection = request.selection;
    notification.target = request.target;
    notification.property = property;
    // Every event has 32 bytes on the wire, though this one fills fewer.
    std::array<char, 32> wire = {};
    static_assert(sizeof(notification) <= wire.size());
    std::memcpy(wire.data(), &notification, sizeof(notification));
    xcb_send_event(connection.get(), /*propagate=*/0, request.requestor, XCB_EVENT_MASK_NO_EVENT, wire.data());
}

}  // namespace

X11SelectionServer::X11SelectionServer(X11Connection& connection, std::chrono::milliseconds limit)
    : connection_(connection), transfers_(connection, limit) {}

void X11SelectionServer::offer(std::shared_ptr<const OfferedText> text, xcb_timestamp_t since) {
    offer_ = {.text = std::move(text), .since = since};
}

void X11SelectionServer::handle(const xcb_generic_event_t& event) {
    if (x11EventType(event) != XCB_SELECTION_REQUEST) {
        transfers_.handle(event);
        return;
    }
    const auto& request = x11EventAs<xcb_selection_request_event_t>(event);
    if (requests_.size() == kMaximumRequests) requests_.pop_front();
    requests_.push_back({.event = request, .offer = isServable(request) ? offer_ : Offer{}});
}

void X11SelectionServer::answerNext() {
    const Request request = std::move(requests_.front());
    requests_.pop_front();
    const xcb_selection_request_event_t& event = request.event;
    // Clients older than ICCCM name no property and mean the one with the target's name.
    const xcb_atom_t property = event.property == XCB_ATOM_NONE ? event.target : event.property;
    const Destination destination = {event.requestor, property};
    bool isConverted = false;
    if (request.offer.text != nullptr) {
        const bool isMultiple = event.target == connection_.atom(X11Atom::multiple);
        isConverted = isMultiple ? event.property != XCB_ATOM_NONE && convertMultiple(request.offer, destination)
                                 : convert(request.offer, event.target, destination);
    }
    sendNotification(connection_, event, isConverted ? property : xcb_atom_t{XCB_ATOM_NONE});
}

bool X11SelectionServer::isServable(const xcb_selection_request_event_t& request) const {
    if (offer_.text == nullptr || request.selection != connection_.atom(X11Atom::clipboard)) return false;
    // Our own window's properties are for what we read.
    if (request.requestor == connection_.window()) return false;
    // What was on the clipboard before our text is not ours to give.
    return request.time == XCB_CURRENT_TIME || !isEarlier(request.time, offer_.since);
}

bool X11SelectionServer::convertMultiple(const Offer& offer, Destination destination) {
    const auto reply = connection_.await<xcb_get_property_reply_t>(
        xcb_get_property(connection_.get(), /*_delete=*/0, destination.window, destination.property,
                         XCB_GET_PROPERTY_TYPE_ANY, 0, 2 * kMaximumPairs));
    if (!reply || reply->format != kAtomFormat || reply->bytes_after > 0) return false;
    const std::span named(static_cast<const xcb_atom_t*>(xcb_get_property_value(reply.get())), reply->value_len);
    std::vector<xcb_atom_t> pairs(named.begin(), named.end());
    for (std::size_t i = 0; i + 1 < pairs.size(); i += 2) {
        if (pairs[i + 1] != XCB_ATOM_NONE && convert(offer, pairs[i], {destination.window, pairs[i + 1]})) continue;
        // NOTE: ICCCM marks a failure in the pair's target; common requestors look at the pair's property.
        pairs[i] = pairs[i + 1] = XCB_ATOM_NONE;
    }
    if (!std::ranges::equal(pairs, named)) {
        connection_.putValues(destination.window, destination.property, reply->type, pairs);
    }
    return true;
}

bool X11SelectionServer::convert(const Offer& offer, xcb_atom_t target, Destination destination) {
    if (target == connection_.atom(X11Atom::targets)) {
        listTargets(offer, destination);
        return true;
    }
    if (target == connection_.atom(X11Atom::timestamp)) {
        connection_.putValues(destination.window, destination.property, XCB_ATOM_INTEGER, {{offer.since}});
        return true;
    }
    std::optional<X11Transfers::Content> content = contentAs(offer, target);
    if (!content) return false;
    transfers_.deliver(destination, std::move(*content));
    return true;
}

void X11SelectionServer::listTargets(const Offer& offer, Destination destination) {
    std::vector<xcb_atom_t> targets = {connection_.atom(X11Atom::targets), connection_.atom(X11Atom::timestamp),
                                       connection_.atom(X11Atom::multiple)};
    for (const TextFormat& each : TextFormats::kAll) {
        if (offer.text->isOfferedIn(each)) targets.push_back(connection_.atom(each));
    }
    if (offer.text->passwordHint() != nullptr) targets.push_back(connection_.atom(X11Atom::passwordHint));
    connection_.putValues(destination.window, destination.property, XCB_ATOM_ATOM, targets);
}

std::optional<X11Transfers::Content> X11SelectionServer::contentAs(const Offer& offer, xcb_atom_t target) const {
    const bool isHint = target == connection_.atom(X11Atom::passwordHint);
    if (isHint && offer.text->passwordHint() != nullptr)
        return X11Transfers::Content{target, offer.text->passwordHint()};
    const TextFormat* const format = connection_.formatOf(target);
    if (format == nullptr || !offer.text->isOfferedIn(*format)) return std::nullopt;
    const bool isTypeTold = format->encoding == TextFormat::Encoding::told;
    return X11Transfers::Content{isTypeTold ? connection_.atom(TextFormats::kUTF8String) : target,
                                 offer.text->bytesIn(*format)};
}

}  // namespace ravlin
