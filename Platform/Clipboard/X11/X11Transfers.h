#pragma once

#include "Platform/Clipboard/OfferedText.h"
#include "Platform/Clipboard/TransferQueue.h"
#include "Platform/Clipboard/X11/X11Connection.h"

#include <chrono>
#include <cstddef>
#include <optional>
#include <tuple>
#include <utility>

namespace ravlin {

/// Puts contents into other programs' windows: at once, or in increments if they are too large for one piece (ICCCM
/// section 2.7.2), to many programs at once and each at its own pace. Feed it every event.
class X11Transfers {
public:
    /// Content above this size goes out in increments of this size, in bytes; smaller ones if the server takes less.
    static constexpr std::size_t kIncrementSize = std::size_t{256} << 10;

    struct Content {
        xcb_atom_t type;
        OfferedText::Bytes bytes;
    };
    /// Where a content goes.
    struct Destination {
        xcb_window_t window;
        xcb_atom_t property;
        friend bool operator<(const Destination& one, const Destination& other) {
            return std::tie(one.window, one.property) < std::tie(other.window, other.property);
        }
    };

    X11Transfers(X11Connection& connection, std::chrono::milliseconds limit);

    void deliver(Destination destination, Content content);
    void handle(const xcb_generic_event_t& event);

    void removeStalled() { transfers_.removeStalled(); }
    std::optional<X11Connection::TimePoint> nextDeadline() const { return transfers_.nextDeadline(); }

private:
    struct Transfer {
        Transfer(X11Connection& connection, xcb_window_t requestor, Content what)
            : requestorWatch(connection, requestor), content(std::move(what)) {}
        X11WindowWatch requestorWatch;
        Content content;
        std::size_t offset = 0;
    };

    void sendIncrement(Destination destination);
    void removeAllTo(xcb_window_t window);

    X11Connection& connection_;
    std::size_t incrementSize_;
    TransferQueue<Destination, Transfer> transfers_;
};

}  // namespace ravlin
