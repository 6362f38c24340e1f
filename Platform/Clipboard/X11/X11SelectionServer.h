#pragma once

#include "Platform/Clipboard/OfferedText.h"
#include "Platform/Clipboard/X11/X11Connection.h"

#include <chrono>
#include <cstddef>
#include <list>
#include <memory>
#include <optional>
#include <string>

namespace ravlin {

/// Hands the text that we own to every program that asks for it (ICCCM sections 2.2 and 2.7). Feed it every event.
///
/// A text too large for one piece goes out in increments, to any number of programs at once, each at its own pace. A
/// transfer is completed even if the clipboard changes meanwhile.
class X11SelectionServer {
public:
    /// Content above this size goes out in increments of this size, in bytes; smaller ones if the server takes less.
    static constexpr std::size_t kIncrementSize = std::size_t{256} << 10;

    explicit X11SelectionServer(X11Connection& connection);

    /// From now on requests get `text`, which we have owned since the server time `since`.
    void offer(std::shared_ptr<const OfferedText> text, xcb_timestamp_t since);

    /// From now on requests are refused.
    void withdraw() { text_ = nullptr; }

    /// The text on offer, or null.
    const std::shared_ptr<const OfferedText>& text() const { return text_; }

    bool isTransferring() const { return !transfers_.empty(); }

    /// Drops the readers that have taken nothing for `SystemPasteboard::kTransferLimit`.
    void dropStalledTransfers();
    void handle(const xcb_generic_event_t& event);

private:
    struct Content {
        xcb_atom_t type;
        OfferedText::Bytes bytes;
    };
    /// Where an answer goes.
    struct Destination {
        xcb_window_t window;
        xcb_atom_t property;
        friend bool operator==(const Destination&, const Destination&) = default;
    };
    struct Transfer {
        Transfer(X11Connection& connection, Destination to, Content what)
            : destination(to), requestorWatch(connection, to.window), content(std::move(what)) {}
        Destination destination;
        X11WindowWatch requestorWatch;
        Content content;
        std::size_t offset = 0;
        std::chrono::steady_clock::time_point lastStep = std::chrono::steady_clock::now();
    };

    void answer(const xcb_selection_request_event_t& request);
    bool isServable(const xcb_selection_request_event_t& request) const;
    bool convertMultiple(Destination destination);
    bool convert(xcb_atom_t target, Destination destination);
    void listTargets(Destination destination);
    std::optional<Content> contentAs(xcb_atom_t target) const;
    void deliver(Destination destination, Content content);
    void continueTransfer(Destination destination);
    bool sendIncrement(Transfer& transfer);

    X11Connection& connection_;
    std::size_t incrementSize_;
    std::shared_ptr<const OfferedText> text_;
    xcb_timestamp_t since_ = XCB_CURRENT_TIME;
    std::list<Transfer> transfers_;
};

}  // namespace ravlin
