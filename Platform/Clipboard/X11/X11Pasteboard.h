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
/// The server reports every change of the selection's owner, our own included, in an XFixes event, and sends events and
/// replies in the order in which things happened. So the events before any reply say how many changes there have been
/// and who the owner is: nothing is missed, and nothing has to be asked twice.
/// NOTE: if an owner changes its content without taking the selection again, against ICCCM, that goes unnoticed.
///
/// A write never overwrites a copy that it should not, with one exception: if the owner has been there longer than this
/// object, a copy made at the moment of the write is lost.
///
/// Once the connection is lost, every operation returns nothing or false at once.
class X11Pasteboard final : public SystemPasteboard {
public:
    /// Connects to `displayName` (null: the one that DISPLAY names). Null if that fails, with the reason in `whyNot`,
    /// for example "no display answers".
    static std::unique_ptr<X11Pasteboard> open(const char* displayName, std::string& whyNot, ReadLimits limits = {});

    int fileDescriptor() const override { return connection_->fileDescriptor(); }
    std::optional<Clock::time_point> nextDeadline() const override { return server_.nextDeadline(); }

private:
    X11Pasteboard(std::unique_ptr<X11Connection> connection, ReadLimits limits);

    bool awaitAnswer() override;
    bool isEmpty() const override { return owner_ == XCB_WINDOW_NONE; }
    Text ownText() const override { return server_.text(); }
    std::optional<std::string> read(Type type) override;
    OfferedText::Bytes readPasswordHint() override;
    bool write(const Text& text, std::int64_t count) override;
    void clear() override;
    void wakeUp() override { askServerTime(); }
    void handleEvents() override;
    void settle() override;
    std::vector<int> servingDescriptors() const override { return {connection_->fileDescriptor()}; }
    void giveAway() override { connection_->giveAway(); }

    bool take(const Text& text, xcb_timestamp_t time);
    std::optional<xcb_timestamp_t> serverTime();
    void askServerTime();
    bool pump(X11Connection::TimePoint deadline);
    void handleQueuedEvents();
    void answerRequests(X11Connection::TimePoint deadline);
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
    int serverTimeRequestCount_ = 0;  // that have not been answered
    Text nextText_;                   // offered once the server confirms that we are the owner
};

}  // namespace ravlin
