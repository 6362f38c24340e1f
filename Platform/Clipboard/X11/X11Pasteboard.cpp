#include "Platform/Clipboard/X11/X11Pasteboard.h"

#include "Platform/Clipboard/LingeringChild.h"

#include <xcb/xfixes.h>

#include <array>
#include <chrono>
#include <span>
#include <utility>

#include <unistd.h>

namespace ravlin {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::array kRTFTargets = {X11Atom::textRTF, X11Atom::applicationRTF, X11Atom::richtext};
constexpr std::array kHTMLTargets = {X11Atom::html};

}  // namespace

std::unique_ptr<X11Pasteboard> X11Pasteboard::open(const char* displayName, std::string& whyNot, ReadLimits limits) {
    auto connection = X11Connection::open(displayName, whyNot);
    if (!connection) return nullptr;
    std::unique_ptr<X11Pasteboard> pasteboard(new X11Pasteboard(std::move(connection), limits));
    // Changes are being told already: one that comes after this answer is not missed.
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
      server_(*connection_) {}

std::int64_t X11Pasteboard::changeCount() {
    catchUp();
    settle();
    toldCount_ = changeCount_;
    return changeCount_;
}

std::optional<std::string> X11Pasteboard::string() {
    toldCount_.reset();
    std::optional<std::string> text;
    if (catchUp()) text = isOwner() ? ownText() : reader_.plainText({.owner = owner_, .changeCount = changeCount_});
    settle();
    return text;
}

/// Asked through the server, we would wait for ourselves.
std::optional<std::string> X11Pasteboard::ownText() const {
    return server_.text() != nullptr ? std::optional(*server_.text()) : std::nullopt;
}

std::optional<std::string> X11Pasteboard::data(Type type) {
    if (type == Type::string) return string();
    toldCount_.reset();
    std::optional<std::string> bytes;
    if (catchUp() && !isOwner()) {
        const auto targets = type == Type::rtf ? std::span<const X11Atom>(kRTFTargets) : kHTMLTargets;
        bytes = reader_.bytes({.owner = owner_, .changeCount = changeCount_}, targets);
    }
    settle();
    return bytes;
}

std::optional<std::size_t> X11Pasteboard::itemCount() {
    toldCount_.reset();
    const bool isUpToDate = catchUp();
    settle();
    if (!isUpToDate) return std::nullopt;
    return owner_ == XCB_WINDOW_NONE ? 0 : 1;
}

void X11Pasteboard::clearContents() {
    isClearPending_ = true;
    // Its answer makes the descriptor readable, so that `processEvents` comes even if nothing else happens.
    askServerTime();
    settle();
}

bool X11Pasteboard::setString(std::string_view text) {
    isClearPending_ = false;
    const std::optional<std::int64_t> toldCount = std::exchange(toldCount_, std::nullopt);
    if (!toldCount) catchUp();
    const std::int64_t count = toldCount.value_or(changeCount_);
    const auto shared = std::make_shared<const std::string>(text);
    const bool isTaken = takeAfterOwner(shared, count) || takeNow(shared, count);
    settle();
    return isTaken;
}

/// Takes the selection unless somebody has taken it since `count`. The time is the one right after the owner's that is
/// known: the server refuses it if anybody has come later, so that no copy is overwritten that we have not seen.
bool X11Pasteboard::takeAfterOwner(const std::shared_ptr<const std::string>& text, std::int64_t count) {
    if (isOvertaken(count) || !ownerSince_) return false;
    const xcb_timestamp_t time = *ownerSince_ + 1;
    return time != XCB_CURRENT_TIME && take(text, time);
}

/// The same where that time is not known, still to come, or weeks ago. It can overwrite a copy that is made between the
/// server's telling the time and our taking the selection.
bool X11Pasteboard::takeNow(const std::shared_ptr<const std::string>& text, std::int64_t count) {
    if (isOvertaken(count)) return false;
    const std::optional<xcb_timestamp_t> now = serverTime();
    return now && !isOvertaken(count) && take(text, *now);
}

bool X11Pasteboard::take(const std::shared_ptr<const std::string>& text, xcb_timestamp_t time) {
    nextText_ = text;
    xcb_set_selection_owner(connection_->get(), connection_->window(), connection_->atom(X11Atom::clipboard), time);
    const bool isAnswered = synchronise();
    const bool isTaken = nextText_ == nullptr && isOwner();
    if (isAnswered) nextText_ = nullptr;
    return isTaken;
}

void X11Pasteboard::processEvents() {
    toldCount_.reset();
    while (const X11Event event = connection_->pollEvent()) handle(*event);
    if (isClearPending_) completeClear();
    settle();
}

void X11Pasteboard::lingerIfOwner() {
    if (!catchUp() || !(isOwner() || server_.isTransferring())) return;
    settle();
    switch (forkLingeringChild({connection_->fileDescriptor()})) {
        case ForkSide::parent: connection_->giveAway(); return;
        case ForkSide::failed: return;
        case ForkSide::child: break;
    }
    serveToTheEnd();
    // A socket that is closed while events wait in it loses the requests on their way, a reader's last increment too.
    synchronise();
    _exit(0);
}

void X11Pasteboard::serveToTheEnd() {
    for (;;) {
        processEvents();
        server_.dropStalledTransfers();
        if (connection_->isLost() || !(isOwner() || server_.isTransferring())) return;
        const bool isWaitingForReader = server_.isTransferring();
        connection_->waitReadable(isWaitingForReader ? Clock::now() + X11SelectionServer::kTransferLimit
                                                     : X11Connection::TimePoint::max());
    }
}

/// Makes `changeCount_` and `owner_` those of now. False where the server does not answer.
bool X11Pasteboard::catchUp() {
    if (isClearPending_) completeClear();
    return synchronise();
}

/// Waits until the server has done everything it was asked, and handles what it told about that.
bool X11Pasteboard::synchronise() {
    const auto reply = connection_->await<xcb_get_input_focus_reply_t>(xcb_get_input_focus(connection_->get()));
    handleQueuedEvents();
    if (!reply) ++changeCount_;
    return reply != nullptr;
}

void X11Pasteboard::completeClear() {
    isClearPending_ = false;
    if (const std::optional<xcb_timestamp_t> now = serverTime()) {
        xcb_set_selection_owner(connection_->get(), XCB_WINDOW_NONE, connection_->atom(X11Atom::clipboard), *now);
    }
}

std::optional<xcb_timestamp_t> X11Pasteboard::serverTime() {
    serverTime_.reset();
    askServerTime();
    const auto deadline = Clock::now() + X11Connection::kServerLimit;
    while (!serverTime_ && pump(deadline)) continue;
    return serverTime_;
}

/// Appending nothing to a property is a change of it, and the event that tells the change carries the time.
void X11Pasteboard::askServerTime() {
    xcb_change_property(connection_->get(), XCB_PROP_MODE_APPEND, connection_->window(),
                        connection_->atom(X11Atom::clock), XCB_ATOM_INTEGER, 32, 0, nullptr);
}

bool X11Pasteboard::pump(X11Connection::TimePoint deadline) {
    // Looked at first: an endless stream of events must not outlast the deadline.
    if (Clock::now() >= deadline) return false;
    const X11Event event = connection_->waitForEvent(deadline);
    if (event) handle(*event);
    return event != nullptr;
}

void X11Pasteboard::handleQueuedEvents() {
    while (const X11Event event = connection_->queuedEvent()) handle(*event);
}

/// Every operation ends here. Events that libxcb has read along with a reply, or while it wrote, are in its own queue:
/// the descriptor will not become readable for them, so they are handled now.
void X11Pasteboard::settle() {
    connection_->flush();
    while (const X11Event event = connection_->queuedEvent()) {
        handle(*event);
        handleQueuedEvents();
        connection_->flush();
    }
}

void X11Pasteboard::handle(const xcb_generic_event_t& event) {
    // Other programs have one thing to tell us, the answer to a question; everything else comes from the server. An X
    // error, which has type 0, tells of a window that is gone: its destruction has been told as well.
    if (x11EventIsSent(event) && x11EventType(event) != XCB_SELECTION_NOTIFY) return;
    if (x11EventType(event) == connection_->ownerChangeEvent()) {
        noteOwner(event);
    } else if (!noteServerTime(event)) {
        reader_.handle(event);
        server_.handle(event);
    }
}

/// NOTE: SelectionClear is not looked at. It tells the same, but one that was sent before we took the selection again
/// cannot be told from one sent afterwards within the same millisecond.
void X11Pasteboard::noteOwner(const xcb_generic_event_t& event) {
    const auto& change = x11EventAs<xcb_xfixes_selection_notify_event_t>(event);
    ++changeCount_;
    owner_ = change.owner;
    ownerSince_ = change.selection_timestamp;
    if (!isOwner()) {
        server_.withdraw();
    } else if (nextText_ != nullptr) {
        server_.offer(std::exchange(nextText_, nullptr), change.selection_timestamp);
    }
}

bool X11Pasteboard::noteServerTime(const xcb_generic_event_t& event) {
    if (x11EventType(event) != XCB_PROPERTY_NOTIFY) return false;
    const auto& change = x11EventAs<xcb_property_notify_event_t>(event);
    if (change.window != connection_->window() || change.atom != connection_->atom(X11Atom::clock)) return false;
    serverTime_ = change.time;
    return true;
}

}  // namespace ravlin
