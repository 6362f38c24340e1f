#include "Platform/Clipboard/Wayland/WaylandPasteboard.h"

#include "Platform/Clipboard/ClipboardTypes.h"
#include "Platform/Clipboard/LingeringChild.h"
#include "Platform/Clipboard/Polling.h"
#include "Platform/Clipboard/Wayland/PipeReader.h"

#include <wayland-client-protocol.h>

#include <algorithm>
#include <array>

#include <unistd.h>

namespace ravlin {
namespace {

using Clock = std::chrono::steady_clock;
using DataControl::Dialect;

}  // namespace

// --- Connection and seats --------------------------------------------------------------------------------------------

std::unique_ptr<WaylandPasteboard> WaylandPasteboard::open(const char* displayName, std::string& whyNot,
                                                           ReadLimits limits) {
    std::unique_ptr<WaylandPasteboard> pasteboard(new WaylandPasteboard(/*isShared=*/false, limits));
    pasteboard->connection_ = WaylandConnection::open(displayName, pasteboard->globals(), whyNot);
    return pasteboard->connection_ && pasteboard->start(whyNot) ? std::move(pasteboard) : nullptr;
}

std::unique_ptr<WaylandPasteboard> WaylandPasteboard::openOn(wl_display* display, std::string& whyNot,
                                                             ReadLimits limits) {
    std::unique_ptr<WaylandPasteboard> pasteboard(new WaylandPasteboard(/*isShared=*/true, limits));
    pasteboard->connection_ = WaylandConnection::share(display, pasteboard->globals());
    return pasteboard->start(whyNot) ? std::move(pasteboard) : nullptr;
}

WaylandPasteboard::~WaylandPasteboard() {
    if (!isShared_ || !seat_) return;
    seat_->device->retire();
    connection_->synchronise();
}

WaylandConnection::Globals WaylandPasteboard::globals() {
    return {.appeared = [this](std::uint32_t name, std::string_view interface,
                               std::uint32_t version) { noteGlobal(name, interface, version); },
            .removed = [this](std::uint32_t name) { noteRemoval(name); }};
}

bool WaylandPasteboard::start(std::string& whyNot) {
    surviveBrokenPipes();
    const bool isAnswering = connection_->synchronise();
    if (isAnswering && !bindManager()) {
        whyNot = isShared_ ? "the compositor offers no clipboard" : "the compositor offers no data control";
        return false;
    }
    // The content that is there already comes like a change.
    chooseSeat();
    if (!isAnswering || !synchronise()) {
        whyNot = "the compositor does not answer in time";
        return false;
    }
    changeCount_ = 0;
    return true;
}

void WaylandPasteboard::noteGlobal(std::uint32_t name, std::string_view interface, std::uint32_t version) {
    if (interface == wl_seat_interface.name) seatNames_.push_back(name);
    for (const Dialect each : {Dialect::ext, Dialect::zwlr, Dialect::core}) {
        const bool isOfUse = isShared_ == (each == Dialect::core) && version >= DataControl::versionOf(each);
        if (isOfUse && interface == DataControl::managerName(each)) managerNames_.emplace_back(name, each);
    }
}

void WaylandPasteboard::noteRemoval(std::uint32_t name) {
    std::erase(seatNames_, name);
    if (seat_ && seat_->name == name) isSeatFinished_ = true;
}

bool WaylandPasteboard::bindManager() {
    const auto best = std::ranges::min_element(managerNames_, {}, [](const auto& each) { return each.second; });
    if (best == managerNames_.end()) return false;
    manager_ = std::make_unique<DataControl::Manager>(connection_->registry(), best->first, best->second);
    return true;
}

bool WaylandPasteboard::chooseSeat() {
    if (seat_ || seatNames_.empty()) return false;
    const std::uint32_t name = seatNames_.front();
    auto* const registry = reinterpret_cast<wl_registry*>(connection_->registry());
    auto* const seat = static_cast<wl_proxy*>(wl_registry_bind(registry, name, &wl_seat_interface, 1));
    seat_ = Seat{
        .name = name,
        .proxy = std::unique_ptr<wl_proxy, DataControl::ProxyDeleter>(seat),
        .device = manager_->deviceOf(
            seat, {.selection = [this](std::shared_ptr<DataControl::Offer> offer) { noteSelection(std::move(offer)); },
                   .finished = [this] { isSeatFinished_ = true; }}),
        .input = isShared_ ? std::make_unique<WaylandInput>(reinterpret_cast<wl_seat*>(seat)) : nullptr};
    return true;
}

void WaylandPasteboard::noteSelection(std::shared_ptr<DataControl::Offer> offer) {
    ++changeCount_;
    foreign_ = {.offer = std::move(offer), .isTold = true};
    if (!own_ || own_->mark.empty()) return;
    own_->isAccepted = foreign_.offer && std::ranges::count(foreign_.offer->types(), own_->mark) > 0;
}

// --- Operations ------------------------------------------------------------------------------------------------------

std::int64_t WaylandPasteboard::changeCount() {
    catchUp();
    toldCount_ = changeCount_;
    return changeCount_;
}

std::optional<std::string> WaylandPasteboard::string() {
    toldCount_.reset();
    if (!catchUp()) return std::nullopt;
    if (isOwner()) return *own_->text;  // asked through the compositor, we would wait for ourselves
    foreign_.isSilent = false;
    const std::optional<std::string> name = offeredAs(Type::string);
    std::optional<std::string> bytes = name ? read(*name) : std::nullopt;
    return bytes ? ClipboardTypes::decoded(*name, std::move(*bytes)) : std::nullopt;
}

std::optional<std::string> WaylandPasteboard::data(Type type) {
    if (type == Type::string) return string();
    toldCount_.reset();
    if (!catchUp() || isOwner() || foreign_.isSilent) return std::nullopt;
    const std::optional<std::string> name = offeredAs(type);
    return name ? read(*name) : std::nullopt;
}

std::optional<std::size_t> WaylandPasteboard::itemCount() {
    toldCount_.reset();
    if (!catchUp()) return std::nullopt;
    return isOwner() || foreign_.offer != nullptr ? 1 : 0;
}

void WaylandPasteboard::clearContents() {
    isClearPending_ = true;
    // So that `processEvents` comes even if nothing else happens.
    connection_->askForWakeUp();
}

bool WaylandPasteboard::setString(std::string_view text) {
    isClearPending_ = false;
    const std::optional<std::int64_t> toldCount = std::exchange(toldCount_, std::nullopt);
    std::unique_ptr<Own> copy = copyOf(text);
    // The input that this answers may not have been handled here, and a long text is long enough in the making for
    // somebody else's copy. One that comes from here on is overwritten, which no protocol can prevent.
    if ((isShared_ || toldCount) && !synchronise()) return false;
    if (!seat_ || (isShared_ && !seat_->input->hasFocus())) return false;
    if (toldCount && isOvertaken(*toldCount)) return false;
    const std::uint32_t seatName = seat_->name;
    std::unique_ptr<Own> before = std::exchange(own_, std::move(copy));
    select(own_->source.get());
    const bool isAnswered = synchronise();
    if (isAnswered && isOwner()) return true;
    // Where the compositor refused, our text of before, if it was there, still is.
    if (isAnswered && seat_ && seat_->name == seatName) own_ = std::move(before);
    return false;
}

std::unique_ptr<WaylandPasteboard::Own> WaylandPasteboard::copyOf(std::string_view text) {
    const auto content = std::make_shared<const std::string>(text);
    auto own = std::make_unique<Own>(Own{.source = nullptr, .text = content, .mark = "", .isAccepted = !isShared_});
    own->source = manager_->createSource(
        {.send = [this, content](std::string_view type, int descriptor) { serve(type, descriptor, content); },
         .cancelled = [self = own.get()] { self->text = nullptr; }});
    for (const std::string& type : ClipboardTypes::servedTypes(text)) own->source->offer(type);
    if (isShared_) {
        // The core protocol may refuse a copy and say nothing; that it took it shows when it offers it.
        own->mark = "application/x-ravlin-" + std::to_string(getpid()) + "-" + std::to_string(++ownCount_);
        own->source->offer(own->mark);
    }
    return own;
}

void WaylandPasteboard::select(const DataControl::Source* source) {
    seat_->device->setSelection(source, seat_->input ? seat_->input->latestSerial() : 0);
}

void WaylandPasteboard::processEvents() {
    toldCount_.reset();
    connection_->processEvents();
    update();
    if (isClearPending_) {
        completeClear();
        connection_->processEvents();
    }
    proceedWithTransfers();
}

/// Makes `changeCount_`, `foreign_` and `own_` those of now. False where that cannot be known.
bool WaylandPasteboard::catchUp() {
    if (isClearPending_) completeClear();
    if (!synchronise()) return false;
    if (!hasAccess()) ++changeCount_;  // for all we know
    return hasAccess();
}

/// Whether the compositor tells what is on the clipboard.
bool WaylandPasteboard::hasAccess() const {
    return !seat_ || !seat_->input || isOwner() || (seat_->input->hasFocus() && foreign_.isTold);
}

bool WaylandPasteboard::synchronise() {
    bool isAnswered = connection_->synchronise();
    while (update() && isAnswered) isAnswered = connection_->synchronise();
    if (!isAnswered) ++changeCount_;
    return isAnswered;
}

/// Draws the conclusions from events that could not be drawn while they were handled: what they came to must not be
/// destroyed meanwhile. True where there is more to be told: what is on another seat comes like a change.
bool WaylandPasteboard::update() {
    if (own_ && !own_->text) own_.reset();
    if (isSeatFinished_) {
        isSeatFinished_ = false;
        ++changeCount_;
        own_.reset();
        foreign_ = {};
        if (seat_) std::erase(seatNames_, seat_->name);
        seat_.reset();
    }
    return chooseSeat() || (seat_ && seat_->input && seat_->input->takeNewDevice());
}

void WaylandPasteboard::completeClear() {
    isClearPending_ = false;
    own_.reset();
    // Without the focus only our own text can be taken away.
    if (seat_ && hasAccess()) select(nullptr);
}

// --- Reading ---------------------------------------------------------------------------------------------------------

/// The name under which another program offers what is read as `type`; nothing where it does not. A copy: the offer may
/// be gone by the end of the reading.
std::optional<std::string> WaylandPasteboard::offeredAs(Type type) const {
    const std::string* const name =
        foreign_.offer != nullptr ? ClipboardTypes::best(type, foreign_.offer->types()) : nullptr;
    return name != nullptr ? std::optional(*name) : std::nullopt;
}

/// All that the program writes as the type `name`. One that ends in the middle cannot be told from one that is through;
/// that the clipboard has changed by then is told by the counter.
std::optional<std::string> WaylandPasteboard::read(const std::string& name) {
    Patience patience(limits_);
    const std::shared_ptr<DataControl::Offer> offer = foreign_.offer;
    PipeReader pipe(limits_.byteSize);
    if (pipe.writingEnd() < 0) return std::nullopt;
    offer->receive(name, pipe.writingEnd());
    connection_->processEvents();
    pipe.closeWritingEnd();
    PipeReader::State state = PipeReader::State::open;
    while ((state = pipe.proceed()) == PipeReader::State::open && !connection_->isLost()) {
        patience.noteSize(pipe.bytes().size());
        const auto deadline = patience.deadline();
        if (Clock::now() >= deadline || !connection_->waitFor(pipe.descriptor(), deadline)) break;
        connection_->processEvents();
        proceedWithTransfers();
    }
    if (state == PipeReader::State::ended) return std::move(pipe.bytes());
    if (foreign_.offer == offer) foreign_.isSilent = true;
    return std::nullopt;
}

// --- Serving ---------------------------------------------------------------------------------------------------------

/// Writes the text into a pipe, as far as that takes it; the rest follows when it takes more.
void WaylandPasteboard::serve(std::string_view type, int descriptor, const std::shared_ptr<const std::string>& text) {
    PipeWriter transfer(descriptor, ClipboardTypes::encoded(type, text));
    if (!transfer.proceed()) return;
    connection_->watchWritable(descriptor);
    transfers_.push_back(std::move(transfer));
}

void WaylandPasteboard::proceedWithTransfers() {
    const auto oldest = Clock::now() - kTransferLimit;
    for (auto transfer = transfers_.begin(); transfer != transfers_.end();) {
        if (transfer->proceed() && transfer->lastStep() >= oldest) {
            ++transfer;
        } else {
            connection_->unwatch(transfer->descriptor());
            transfer = transfers_.erase(transfer);
        }
    }
}

void WaylandPasteboard::lingerIfOwner() {
    if (isShared_ || !catchUp() || !(isOwner() || !transfers_.empty())) return;
    std::vector<int> kept = {connection_->socket(), connection_->watcher()};
    for (const PipeWriter& each : transfers_) kept.push_back(each.descriptor());
    switch (forkLingeringChild(kept)) {
        case ForkSide::parent:
            connection_->giveAway();
            transfers_.clear();
            return;
        case ForkSide::failed: return;
        case ForkSide::child: break;
    }
    serveToTheEnd();
    _exit(0);
}

void WaylandPasteboard::finishTransfers(WaylandConnection::TimePoint deadline) {
    processEvents();
    while (!transfers_.empty() && Clock::now() < deadline && connection_->waitFor(-1, deadline)) processEvents();
}

void WaylandPasteboard::serveToTheEnd() {
    for (;;) {
        processEvents();
        if (connection_->isLost() || !(isOwner() || !transfers_.empty())) return;
        connection_->waitFor(-1,
                             transfers_.empty() ? WaylandConnection::TimePoint::max() : Clock::now() + kTransferLimit);
    }
}

}  // namespace ravlin
