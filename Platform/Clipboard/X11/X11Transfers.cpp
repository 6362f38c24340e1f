#include "Platform/Clipboard/X11/X11Transfers.h"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <utility>

namespace ravlin {

X11Transfers::X11Transfers(X11Connection& connection, std::chrono::milliseconds limit)
    : connection_(connection),
      incrementSize_(std::min(kIncrementSize, connection.maximumDataSize())),
      transfers_(limit) {}

void X11Transfers::deliver(Destination destination, Content content) {
    const std::size_t size = content.bytes->size();
    if (size <= incrementSize_) {
        transfers_.remove(destination);
        connection_.putBytes(destination.window, destination.property, content.type, *content.bytes);
        return;
    }
    // We must be watching for deletions of the property before the requestor can make one.
    transfers_.add(destination, connection_, destination.window, std::move(content));
    const auto announced = static_cast<std::uint32_t>(std::min<std::size_t>(size, UINT32_MAX));
    connection_.putValues(destination.window, destination.property, connection_.atom(X11Atom::incr), {{announced}});
}

void X11Transfers::handle(const xcb_generic_event_t& event) {
    switch (x11EventType(event)) {
        case XCB_PROPERTY_NOTIFY: {
            const auto& change = x11EventAs<xcb_property_notify_event_t>(event);
            if (change.state == XCB_PROPERTY_DELETE) sendIncrement({change.window, change.atom});
            return;
        }
        case XCB_DESTROY_NOTIFY: removeAllTo(x11EventAs<xcb_destroy_notify_event_t>(event).window); return;
        case kX11Error: {
            // A window that was gone before we watched it: its destruction is not reported.
            const auto& error = x11EventAs<xcb_value_error_t>(event);
            if (error.error_code == XCB_WINDOW) removeAllTo(error.bad_value);
            return;
        }
        default: return;
    }
}

/// The requestor has taken the previous increment. An empty one marks the end.
void X11Transfers::sendIncrement(Destination destination) {
    Transfer* const transfer = transfers_.find(destination);
    if (transfer == nullptr) return;
    const Content& content = transfer->content;
    const auto increment = std::string_view(*content.bytes).substr(transfer->offset, incrementSize_);
    connection_.putBytes(destination.window, destination.property, content.type, increment);
    transfer->offset += increment.size();
    increment.empty() ? transfers_.remove(destination) : transfers_.noteStep(destination);
}

void X11Transfers::removeAllTo(xcb_window_t window) {
    transfers_.remove({window, 0}, {window, UINT32_MAX});
}

}  // namespace ravlin
