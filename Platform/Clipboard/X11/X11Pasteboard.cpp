#include "Platform/Clipboard/X11/X11Pasteboard.h"

#include <xcb/xfixes.h>

#include <chrono>
#include <utility>

namespace ravlin {
namespace {

using Clock = std::chrono::steady_clock;

/// How long one turn of the event loop may handle events, and how long it may answer requests: the rest has to wait for
/// the next turn, so that the user interface gets its own.
constexpr std::chrono::milliseconds kTurn{5};

}  // namespace

std::unique_ptr<X11Pasteboard> X11Pasteboard::open(const char* displayName, std::string& whyNot, ReadLimits limits) {
    auto connection = X11Connection::open(displayName, whyNot);
    if (!connection) return nullptr;
    std::unique_ptr<X11Pasteboard> pasteboard(new X11Pasteboard(std::move(connection), limits));
    // Changes are already being reported: one that comes after this answer is not missed.
    const auto owner = pasteboard->connection_->await<xcb_get_selection_owner_reply_t>(
        xcb_get_selection_owner(pasteboard->connection_->get(), pasteboard->connection_->atom(X11Atom::clipboard)));
    if (!owner) {
        whyNot = "the display does not answer in time";
        return nullptr;
    }
    pasteboard->owner_ = owner->owner;
    pasteboard->settle();
    return pasteboard;
}

X11Pasteboard::X11Pasteboard(std::unique_ptr<X11Connection> connection, ReadLimits limits)
    : connection_(std::move(connection)),
      reader_(*connection_, limits, [this](X11Connection::TimePoint deadline) { return pump(deadline); }),
      server_(*connection_, limits.reader) {}

std::optional<std::string> X11Pasteboard::read(Type type) {
    return reader_.read({.owner = owner_, .changeCount = countSoFar()}, type);
}

OfferedText::Bytes X11Pasteboard::readPasswordHint() {
    const auto hint = reader_.readPasswordHint({.owner = owner_, .changeCount = countSoFar()});
    return hint ? std::make_shared<const std::string>(*hint) : nullptr;
}

bool X11Pasteboard::write(const Text& text, std::int64_t count) {
    // The time right after the owner's: the server refuses it if another owner has come later, so that no copy that we
    // have not seen is overwritten.
    if (ownerSince_ && *ownerSince_ + 1 != XCB_CURRENT_TIME && take(text, *ownerSince_ + 1)) return true;
    // The owner's time is unknown, in the future, or weeks ago. With the server's own we may overwrite a copy that is
    // made between its answer and our taking the selection.
    if (isOvertaken(count)) return false;
    const std::optional<xcb_timestamp_t> now = serverTime();
    return now && !isOvertaken(count) && take(text, *now);
}

bool X11Pasteboard::take(const Text& text, xcb_timestamp_t time) {
    nextText_ = text;
    xcb_set_selection_owner(connection_->get(), connection_->window(), connection_->atom(X11Atom::clipboard), time);
    const bool isAnswered = synchronise();
    const bool isTaken = nextText_ == nullptr && isOwner();
    if (isAnswered) nextText_ = nullptr;
    return isTaken;
}

void X11Pasteboard::handleEvents() {
    const auto deadline = Clock::now() + kTurn;
    while (Clock::now() < deadline) {
        const X11Event event = connection_->pollEvent();
        if (!event) break;
        handle(*event);
    }
    server_.dropStalledTransfers();
}

/// The server's events come before its answers to later requests.
bool X11Pasteboard::awaitAnswer() {
    const auto reply = connection_->await<xcb_get_input_focus_reply_t>(xcb_get_input_focus(connection_->get()));
    handleQueuedEvents();
    return reply != nullptr;
}

void X11Pasteboard::clear() {
    if (const std::optional<xcb_timestamp_t> now = serverTime()) {
        xcb_set_selection_owner(connection_->get(), XCB_WINDOW_NONE, connection_->atom(X11Atom::clipboard), *now);
    }
}

std::optional<xcb_timestamp_t> X11Pasteboard::serverTime() {
    askServerTime();
    const auto deadline = Clock::now() + X11Connection::kServerLimit;
    while (serverTimeRequestCount_ > 0 && pump(deadline)) continue;
    return serverTimeRequestCount_ == 0 ? serverTime_ : std::nullopt;
}

/// Appending nothing to a property counts as a change, and the event that reports it carries the time.
void X11Pasteboard::askServerTime() {
    ++serverTimeRequestCount_;
    xcb_change_property(connection_->get(), XCB_PROP_MODE_APPEND, connection_->window(),
                        connection_->atom(X11Atom::clock), XCB_ATOM_INTEGER, 32, 0, nullptr);
}

bool X11Pasteboard::pump(X11Connection::TimePoint deadline) {
    // Checked first: an endless stream of events must not outlast the deadline.
    if (Clock::now() >= deadline) return false;
    const X11Event event = connection_->waitForEvent(deadline);
    if (event) handle(*event);
    if (server_.hasRequests()) server_.answerNext();
    return event != nullptr;
}

void X11Pasteboard::handleQueuedEvents() {
    while (const X11Event event = connection_->queuedEvent()) handle(*event);
}

void X11Pasteboard::answerRequests(X11Connection::TimePoint deadline) {
    while (server_.hasRequests() && Clock::now() < deadline) server_.answerNext();
}

/// Events that libxcb has read along with a reply, or while it wrote, are in its own queue: the descriptor will not
/// become readable for them, so they are handled now. Nor will it for requests that have to wait for the next turn.
void X11Pasteboard::settle() {
    const auto deadline = Clock::now() + kTurn;
    for (;;) {
        answerRequests(deadline);
        if (server_.hasRequests() && serverTimeRequestCount_ == 0) wakeUp();
        connection_->flush();
        const X11Event event = connection_->queuedEvent();
        if (!event) return;
        handle(*event);
        handleQueuedEvents();
    }
}

void X11Pasteboard::handle(const xcb_generic_event_t& event) {
    // Other programs have only one thing to send us, the answer to a request; everything else comes from the server.
    if (x11EventIsSent(event) && x11EventType(event) != XCB_SELECTION_NOTIFY) return;
    if (x11EventType(event) == connection_->ownerChangeEvent()) {
        noteOwner(event);
    } else if (!noteServerTime(event)) {
        reader_.handle(event);
        server_.handle(event);
    }
}

/// NOTE: SelectionClear is ignored. It reports the same, but one that was sent before we took the selection again
/// cannot be distinguished from one sent afterwards within the same millisecond.
void X11Pasteboard::noteOwner(const xcb_generic_event_t& event) {
    const auto& change = x11EventAs<xcb_xfixes_selection_notify_event_t>(event);
    const bool wasOwner = isOwner();
    noteChange();
    owner_ = change.owner;
    ownerSince_ = change.selection_timestamp;
    if (!isOwner()) {
        // Our window is destroyed when our connection is: nobody has copied, and the text may be saved.
        if (!wasOwner || change.subtype == XCB_XFIXES_SELECTION_EVENT_SET_SELECTION_OWNER) server_.withdraw();
    } else if (nextText_ != nullptr) {
        server_.offer(std::exchange(nextText_, nullptr), change.selection_timestamp);
    }
}

bool X11Pasteboard::noteServerTime(const xcb_generic_event_t& event) {
    if (x11EventType(event) != XCB_PROPERTY_NOTIFY) return false;
    const auto& change = x11EventAs<xcb_property_notify_event_t>(event);
    if (change.window != connection_->window() || change.atom != connection_->atom(X11Atom::clock)) return false;
    serverTime_ = change.time;
    --serverTimeRequestCount_;
    return true;
}

}  // namespace ravlin
