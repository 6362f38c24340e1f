#include "Platform/WaylandPasteboard.h"

#include "Platform/ClipboardTypes.h"
#include "Platform/LingeringChild.h"
#include "Platform/PipeReader.h"
#include "Platform/Polling.h"

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
    std::unique_ptr<WaylandPasteboard> pasteboard(new WaylandPasteboard(limits));
    return pasteboard->connect(displayName, whyNot) ? std::move(pasteboard) : nullptr;
}

bool WaylandPasteboard::connect(const char* displayName, std::string& whyNot) {
    surviveBrokenPipes();
    connection_ = WaylandConnection::open(
        displayName,
        {.appeared = [this](std::uint32_t name, std::string_view interface) { noteGlobal(name, interface); },
         .removed = [this](std::uint32_t name) { noteRemoval(name); }},
        whyNot);
    if (!connection_) return false;
    const bool isAnswering = connection_->synchronise();
    if (isAnswering && !bindManager()) {
        whyNot = "the compositor offers no data control";
        return false;
    }
    // The content that is there already comes like a change.
    chooseSeat();
    if (!isAnswering || !connection_->synchronise()) {
        whyNot = "the compositor does not answer in time";
        return false;
    }
    changeCount_ = 0;
    return true;
}

void WaylandPasteboard::noteGlobal(std::uint32_t name, std::string_view interface) {
    if (interface == wl_seat_interface.name) seatNames_.push_back(name);
    for (const Dialect each : {Dialect::ext, Dialect::zwlr}) {
        if (interface == DataControl::managerName(each)) managerNames_.emplace_back(name, each);
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
                   .finished = [this] { isSeatFinished_ = true; }})};
    return true;
}

void WaylandPasteboard::noteSelection(std::shared_ptr<DataControl::Offer> offer) {
    ++changeCount_;
    foreign_ = {.offer = std::move(offer)};
}

// --- Operations ------------------------------------------------------------------------------------------------------

std::int64_t WaylandPasteboard::changeCount() {
    catchUp();
    return changeCount_;
}

std::optional<std::string> WaylandPasteboard::string() {
    if (!catchUp()) return std::nullopt;
    if (isOwner()) return *own_.text;  // asked through the compositor, we would wait for ourselves
    foreign_.isSilent = false;
    const std::string* const name = offeredAs(Type::string);
    std::optional<std::string> bytes = name != nullptr ? read(*name) : std::nullopt;
    return bytes ? ClipboardTypes::decoded(*name, std::move(*bytes)) : std::nullopt;
}

std::optional<std::string> WaylandPasteboard::data(Type type) {
    if (type == Type::string) return string();
    if (!catchUp() || isOwner() || foreign_.isSilent) return std::nullopt;
    const std::string* const name = offeredAs(type);
    return name != nullptr ? read(*name) : std::nullopt;
}

std::optional<std::size_t> WaylandPasteboard::itemCount() {
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
    if (!seat_) return false;
    const auto content = std::make_shared<const std::string>(text);
    auto source = manager_->createSource(
        {.send = [this, content](std::string_view type, int descriptor) { serve(type, descriptor, content); },
         .cancelled = [this] { own_.text = nullptr; }});
    for (const std::string& type : ClipboardTypes::servedTypes(text)) source->offer(type);
    seat_->device->setSelection(source.get());
    own_ = {.source = std::move(source), .text = content};
    return synchronise() && isOwner();
}

void WaylandPasteboard::processEvents() {
    connection_->processEvents();
    update();
    if (isClearPending_) {
        completeClear();
        connection_->processEvents();
    }
    proceedWithTransfers();
}

/// Makes `changeCount_`, `foreign_` and `own_` those of now. False where the compositor does not answer.
bool WaylandPasteboard::catchUp() {
    if (isClearPending_) completeClear();
    return synchronise();
}

bool WaylandPasteboard::synchronise() {
    bool isAnswered = connection_->synchronise();
    if (update()) isAnswered = connection_->synchronise();  // what is on the other seat comes like a change
    if (!isAnswered) ++changeCount_;
    return isAnswered;
}

/// Draws the conclusions from events that could not be drawn while they were handled: what they came to must not be
/// destroyed meanwhile. True where another seat has been chosen.
bool WaylandPasteboard::update() {
    if (own_.text == nullptr) own_.source.reset();
    if (isSeatFinished_) {
        isSeatFinished_ = false;
        ++changeCount_;
        own_ = {};
        foreign_ = {};
        if (seat_) std::erase(seatNames_, seat_->name);
        seat_.reset();
    }
    return chooseSeat();
}

void WaylandPasteboard::completeClear() {
    isClearPending_ = false;
    own_ = {};
    if (seat_) seat_->device->setSelection(nullptr);
}

// --- Reading ---------------------------------------------------------------------------------------------------------

/// The name under which another program offers what is read as `type`; null where it does not.
const std::string* WaylandPasteboard::offeredAs(Type type) const {
    return foreign_.offer != nullptr ? ClipboardTypes::best(type, foreign_.offer->types()) : nullptr;
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
    if (!catchUp() || !(isOwner() || !transfers_.empty())) return;
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

void WaylandPasteboard::serveToTheEnd() {
    for (;;) {
        processEvents();
        if (connection_->isLost() || !(isOwner() || !transfers_.empty())) return;
        connection_->waitFor(-1,
                             transfers_.empty() ? WaylandConnection::TimePoint::max() : Clock::now() + kTransferLimit);
    }
}

}  // namespace ravlin
