#pragma once

#include "Platform/Clipboard/SystemPasteboard.h"
#include "Platform/Clipboard/X11/X11Connection.h"
#include "Platform/Clipboard/X11/X11SelectionReader.h"
#include "Platform/Clipboard/X11/X11SelectionServer.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace ravlin {

/// The CLIPBOARD selection of an X server, on a connection of its own.
///
/// The server tells every change of the selection's owner in an XFixes event, our own changes included, and sends
/// events and replies in the order in which things happened. So after any reply the events before it say how many
/// changes there were and who the owner is: nothing is missed, and nothing has to be asked twice.
///
/// Once the connection is lost every operation returns at once with nothing or false.
class X11Pasteboard final : public SystemPasteboard {
public:
    /// Connects to `displayName` (null: to the one that DISPLAY names). Null where that fails, with the reason in
    /// `whyNot`, for example "no display answers".
    static std::unique_ptr<X11Pasteboard> open(const char* displayName, std::string& whyNot, ReadLimits limits = {});

    /// Counts the changes since this object was made. A server that does not answer in time is assumed to have changed
    /// something.
    /// NOTE: an owner that changes its content without taking the selection anew, against ICCCM, cannot be noticed.
    std::int64_t changeCount() override;

    /// Plain text in the best encoding that the owner has. An owner that did not answer is asked again only by the next
    /// call of this function: `data` and `itemCount` do not wait for it a second time.
    std::optional<std::string> string() override;
    std::optional<std::string> data(Type type) override;

    /// 1 where the selection has an owner, whether it answers or not.
    std::optional<std::size_t> itemCount() override;

    void clearContents() override;

    /// False where the server did not answer or somebody else was faster; a pending `clearContents` is dropped then.
    /// Called right after `changeCount`, it overwrites no copy that the number did not include; where the owner has
    /// been there longer than this object, but for one in the very moment of the write.
    bool setString(std::string_view text) override;

    int fileDescriptor() const override { return connection_->fileDescriptor(); }
    void processEvents() override;
    void lingerIfOwner() override;

private:
    X11Pasteboard(std::unique_ptr<X11Connection> connection, ReadLimits limits);

    std::optional<std::string> ownText() const;
    bool takeAfterOwner(const std::shared_ptr<const std::string>& text, std::int64_t count);
    bool takeNow(const std::shared_ptr<const std::string>& text, std::int64_t count);
    bool take(const std::shared_ptr<const std::string>& text, xcb_timestamp_t time);
    bool catchUp();
    bool synchronise();
    void completeClear();
    std::optional<xcb_timestamp_t> serverTime();
    void askServerTime();
    bool pump(X11Connection::TimePoint deadline);
    void handleQueuedEvents();
    void settle();
    void handle(const xcb_generic_event_t& event);
    void noteOwner(const xcb_generic_event_t& event);
    bool noteServerTime(const xcb_generic_event_t& event);
    /// Whether there is a copy that `count` does not include. An owner that has ended leaves none.
    bool isOvertaken(std::int64_t count) const { return changeCount_ != count && owner_ != XCB_WINDOW_NONE; }
    bool isOwner() const { return owner_ == connection_->window(); }
    void serveToTheEnd();

    std::unique_ptr<X11Connection> connection_;
    X11SelectionReader reader_;
    X11SelectionServer server_;
    std::int64_t changeCount_ = 0;
    std::optional<std::int64_t> toldCount_;  // by the operation before
    xcb_window_t owner_ = XCB_WINDOW_NONE;
    std::optional<xcb_timestamp_t> ownerSince_;
    std::optional<xcb_timestamp_t> serverTime_;
    std::shared_ptr<const std::string> nextText_;  // goes on offer when the server confirms that we are the owner
    bool isClearPending_ = false;
};

}  // namespace ravlin
