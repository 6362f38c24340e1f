#pragma once

#include "Platform/Clipboard/OfferedText.h"
#include "Platform/Clipboard/X11/X11Connection.h"
#include "Platform/Clipboard/X11/X11Transfers.h"

#include <chrono>
#include <cstddef>
#include <deque>
#include <memory>
#include <optional>

namespace ravlin {

/// Hands the text that we own to every program that asks for it (ICCCM sections 2.2 and 2.7). Feed it every event.
///
/// A request is only noted when its event arrives, and is answered when `answerNext` is called: however many there are,
/// nothing else has to wait for the answers. Each is answered as it would have been on its arrival, and a transfer is
/// completed, even if the clipboard changes meanwhile.
class X11SelectionServer {
public:
    /// So many requests wait for their answers at most, the latest ones. No desktop makes as many at once.
    static constexpr std::size_t kMaximumRequests = 1000;

    /// `limit`: how long a program that reads may take nothing.
    X11SelectionServer(X11Connection& connection, std::chrono::milliseconds limit);

    /// From now on requests get `text`, which we have owned since the server time `since`.
    void offer(std::shared_ptr<const OfferedText> text, xcb_timestamp_t since);

    /// From now on requests are refused.
    void withdraw() { offer_ = {}; }

    /// The text on offer, or null.
    const std::shared_ptr<const OfferedText>& text() const { return offer_.text; }

    void handle(const xcb_generic_event_t& event);

    bool hasRequests() const { return !requests_.empty(); }

    /// Answers the oldest request.
    void answerNext();

    /// Drops the readers that have taken nothing for too long; and when that will have something to do, if ever.
    void dropStalledTransfers() { transfers_.removeStalled(); }
    std::optional<X11Connection::TimePoint> nextDeadline() const { return transfers_.nextDeadline(); }

private:
    using Destination = X11Transfers::Destination;

    struct Offer {
        std::shared_ptr<const OfferedText> text;
        xcb_timestamp_t since = XCB_CURRENT_TIME;
    };
    struct Request {
        xcb_selection_request_event_t event;
        Offer offer;  // what it is about; without a text it is refused
    };

    bool isServable(const xcb_selection_request_event_t& request) const;
    bool convertMultiple(const Offer& offer, Destination destination);
    bool convert(const Offer& offer, xcb_atom_t target, Destination destination);
    void listTargets(const Offer& offer, Destination destination);
    std::optional<X11Transfers::Content> contentAs(const Offer& offer, xcb_atom_t target) const;

    X11Connection& connection_;
    Offer offer_;
    std::deque<Request> requests_;
    X11Transfers transfers_;
};

}  // namespace ravlin
