#pragma once

#include "Platform/Clipboard/SystemPasteboard.h"
#include "Platform/Clipboard/X11/X11Connection.h"
#include "Platform/Clipboard/X11/X11SelectionReader.h"
#include "Platform/Clipboard/X11/X11SelectionServer.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ravlin {

/// The CLIPBOARD selection of an X server, on a connection of its own.
///
/// The server tells every change of the selection's owner in an XFixes event, our own changes included, and sends
/// events and replies in the order in which things happened. So after any reply the events before it say how many
/// changes there were and who the owner is: nothing is missed, and nothing has to be asked twice.
/// NOTE: an owner that changes its content without taking the selection anew, against ICCCM, cannot be noticed.
///
/// A write overwrites no copy that it should not; where the owner has been there longer than this object, but for one
/// in the very moment of the write.
///
/// Once the connection is lost every operation returns at once with nothing or false.
class X11Pasteboard final : public SystemPasteboard {
public:
    /// Connects to `displayName` (null: to the one that DISPLAY names). Null where that fails, with the reason in
    /// `whyNot`, for example "no display answers".
    static std::unique_ptr<X11Pasteboard> open(const char* displayName, std::string& whyNot, ReadLimits limits = {});

    int fileDescriptor() const override { return connection_->fileDescriptor(); }

private:
    X11Pasteboard(std::unique_ptr<X11Connection> connection, ReadLimits limits);

    bool awaitAnswer() override;
    bool isEmpty() const override { return owner_ == XCB_WINDOW_NONE; }
    Text ownText() const override { return server_.text(); }
    std::optional<std::string> read(Type type) override;
    bool write(const Text& text, std::int64_t count) override;
    void clear() override;
    void wakeUp() override { askServerTime(); }
    void handleEvents() override;
    void settle() override;
    bool isTransferring() const override { return server_.isTransferring(); }
    std::vector<int> servingDescriptors() const override { return {connection_->fileDescriptor()}; }
    void giveAway() override { connection_->giveAway(); }

    bool take(const Text& text, xcb_timestamp_t time);
    std::optional<xcb_timestamp_t> serverTime();
    void askServerTime();
    bool pump(X11Connection::TimePoint deadline);
    void handleQueuedEvents();
    void handle(const xcb_generic_event_t& event);
    void noteOwner(const xcb_generic_event_t& event);
    bool noteServerTime(const xcb_generic_event_t& event);
    bool isOwner() const { return owner_ == connection_->window(); }

    std::unique_ptr<X11Connection> connection_;
    X11SelectionReader reader_;
    X11SelectionServer server_;
    xcb_window_t owner_ = XCB_WINDOW_NONE;
    std::optional<xcb_timestamp_t> ownerSince_;
    std::optional<xcb_timestamp_t> serverTime_;
    Text nextText_;  // goes on offer when the server confirms that we are the owner
};

}  // namespace ravlin
