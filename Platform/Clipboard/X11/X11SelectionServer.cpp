#include "Platform/Clipboard/X11/X11SelectionServer.h"

#include "Platform/Clipboard/SystemPasteboard.h"
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

using Clock = std::chrono::steady_clock;

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

X11SelectionServer::X11SelectionServer(X11Connection& connection)
    : connection_(connection), incrementSize_(std::min(kIncrementSize, connection.maximumDataSize())) {}

void X11SelectionServer::offer(std::shared_ptr<const OfferedText> text, xcb_timestamp_t since) {
    text_ = std::move(text);
    since_ = since;
}

void X11SelectionServer::handle(const xcb_generic_event_t& event) {
    switch (x11EventType(event)) {
        case XCB_SELECTION_REQUEST: answer(x11EventAs<xcb_selection_request_event_t>(event)); return;
        case XCB_PROPERTY_NOTIFY: {
            const auto& change = x11EventAs<xcb_property_notify_event_t>(event);
            if (change.state == XCB_PROPERTY_DELETE) continueTransfer({change.window, change.atom});
            return;
        }
        case XCB_DESTROY_NOTIFY: {
            const xcb_window_t window = x11EventAs<xcb_destroy_notify_event_t>(event).window;
            std::erase_if(transfers_, [window](const Transfer& each) { return each.destination.window == window; });
            return;
        }
        default: return;
    }
}

void X11SelectionServer::dropStalledTransfers() {
    const auto oldest = Clock::now() - SystemPasteboard::kTransferLimit;
    std::erase_if(transfers_, [oldest](const Transfer& each) { return each.lastStep < oldest; });
}

void X11SelectionServer::answer(const xcb_selection_request_event_t& request) {
    // Clients older than ICCCM name no property and mean the one with the target's name.
    const xcb_atom_t property = request.property == XCB_ATOM_NONE ? request.target : request.property;
    const Destination destination = {request.requestor, property};
    bool isConverted = false;
    if (isServable(request)) {
        const bool isMultiple = request.target == connection_.atom(X11Atom::multiple);
        isConverted = isMultiple ? request.property != XCB_ATOM_NONE && convertMultiple(destination)
                                 : convert(request.target, destination);
    }
    sendNotification(connection_, request, isConverted ? property : xcb_atom_t{XCB_ATOM_NONE});
}

bool X11SelectionServer::isServable(const xcb_selection_request_event_t& request) const {
    if (text_ == nullptr || request.selection != connection_.atom(X11Atom::clipboard)) return false;
    // Our own window's properties are for what we read.
    if (request.requestor == connection_.window()) return false;
    // What was on the clipboard before our text is not ours to give.
    return request.time == XCB_CURRENT_TIME || !isEarlier(request.time, since_);
}

bool X11SelectionServer::convertMultiple(Destination destination) {
    const auto reply = connection_.await<xcb_get_property_reply_t>(
        xcb_get_property(connection_.get(), /*_delete=*/0, destination.window, destination.property,
                         XCB_GET_PROPERTY_TYPE_ANY, 0, 2 * kMaximumPairs));
    if (!reply || reply->format != kAtomFormat || reply->bytes_after > 0) return false;
    const std::span named(static_cast<const xcb_atom_t*>(xcb_get_property_value(reply.get())), reply->value_len);
    std::vector<xcb_atom_t> pairs(named.begin(), named.end());
    for (std::size_t i = 0; i + 1 < pairs.size(); i += 2) {
        if (pairs[i + 1] != XCB_ATOM_NONE && convert(pairs[i], {destination.window, pairs[i + 1]})) continue;
        // NOTE: ICCCM marks a failure in the pair's target; common requestors look at the pair's property.
        pairs[i] = pairs[i + 1] = XCB_ATOM_NONE;
    }
    if (!std::ranges::equal(pairs, named)) {
        connection_.putValues(destination.window, destination.property, reply->type, pairs);
    }
    return true;
}

bool X11SelectionServer::convert(xcb_atom_t target, Destination destination) {
    if (target == connection_.atom(X11Atom::targets)) {
        listTargets(destination);
        return true;
    }
    if (target == connection_.atom(X11Atom::timestamp)) {
        connection_.putValues(destination.window, destination.property, XCB_ATOM_INTEGER, {{since_}});
        return true;
    }
    std::optional<Content> content = contentAs(target);
    if (!content) return false;
    deliver(destination, std::move(*content));
    return true;
}

void X11SelectionServer::listTargets(Destination destination) {
    std::vector<xcb_atom_t> targets = {connection_.atom(X11Atom::targets), connection_.atom(X11Atom::timestamp),
                                       connection_.atom(X11Atom::multiple)};
    for (const TextFormat& each : TextFormats::kAll) {
        if (text_->isOfferedIn(each)) targets.push_back(connection_.atom(each));
    }
    connection_.putValues(destination.window, destination.property, XCB_ATOM_ATOM, targets);
}

std::optional<X11SelectionServer::Content> X11SelectionServer::contentAs(xcb_atom_t target) const {
    const TextFormat* const format = connection_.formatOf(target);
    if (format == nullptr || !text_->isOfferedIn(*format)) return std::nullopt;
    const bool isTypeTold = format->encoding == TextFormat::Encoding::told;
    return Content{isTypeTold ? connection_.atom(TextFormats::kUTF8String) : target, text_->bytesIn(*format)};
}

void X11SelectionServer::deliver(Destination destination, Content content) {
    std::erase_if(transfers_, [&](const Transfer& each) { return each.destination == destination; });
    if (content.bytes->size() <= incrementSize_) {
        connection_.putBytes(destination.window, destination.property, content.type, *content.bytes);
        return;
    }
    // We must be watching for deletions of the property before the requestor can make one.
    const Transfer& transfer = transfers_.emplace_back(connection_, destination, std::move(content));
    const auto size = static_cast<std::uint32_t>(std::min<std::size_t>(transfer.content.bytes->size(), UINT32_MAX));
    connection_.putValues(destination.window, destination.property, connection_.atom(X11Atom::incr), {{size}});
}

void X11SelectionServer::continueTransfer(Destination destination) {
    const auto transfer = std::ranges::find(transfers_, destination, &Transfer::destination);
    if (transfer != transfers_.end() && !sendIncrement(*transfer)) transfers_.erase(transfer);
}

/// The requestor has taken the previous increment: sends the next one. An empty one marks the end; false after that.
bool X11SelectionServer::sendIncrement(Transfer& transfer) {
    const auto increment = std::string_view(*transfer.content.bytes).substr(transfer.offset, incrementSize_);
    connection_.putBytes(transfer.destination.window, transfer.destination.property, transfer.content.type, increment);
    transfer.offset += increment.size();
    transfer.lastStep = Clock::now();
    return !increment.empty();
}

}  // namespace ravlin
