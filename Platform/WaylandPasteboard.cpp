#include "Platform/WaylandPasteboard.h"

#include "Engine/Support/Unicode.h"
#include "Platform/Descriptor.h"
#include "Platform/Latin1.h"
#include "Platform/LingeringChild.h"
#include "Platform/Polling.h"

#include <wayland-client-protocol.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <span>

#include <fcntl.h>
#include <unistd.h>

namespace ravlin {
namespace {

using Clock = std::chrono::steady_clock;
using DataControl::Dialect;

constexpr std::string_view kLatin1Type = "STRING";

// The best first. What has no name of a character set is UTF-8 nowadays; "STRING", which X11 programs behind the
// compositor mean as Latin-1, may be either.
constexpr auto kPlainTypes =
    std::to_array<std::string_view>({"text/plain;charset=utf-8", "UTF8_STRING", "text/plain", kLatin1Type, "TEXT"});
constexpr auto kRTFTypes = std::to_array<std::string_view>({"text/rtf", "application/rtf", "text/richtext"});
constexpr auto kHTMLTypes = std::to_array<std::string_view>({"text/html"});

// What our text is offered as besides `kLatin1Type`, always in UTF-8.
constexpr auto kServedTypes =
    std::to_array<std::string_view>({"text/plain;charset=utf-8", "UTF8_STRING", "text/plain", "TEXT"});

/// A MIME type in the one form that it is compared in: programs differ in case and in spaces before parameters.
std::string normalized(std::string_view type) {
    std::string result;
    for (const char each : type) {
        if (each != ' ') result += each >= 'A' && each <= 'Z' ? static_cast<char>(each - 'A' + 'a') : each;
    }
    return result;
}

enum class PipeState : std::uint8_t { open, ended, tooLarge };

/// Takes what is in the pipe at present.
PipeState drain(int pipe, std::string& bytes, std::size_t byteLimit) {
    std::array<char, 65536> block;  // NOLINT(cppcoreguidelines-pro-type-member-init): written before it is read
    for (;;) {
        const ssize_t size = ::read(pipe, block.data(), block.size());
        if (size < 0 && errno == EINTR) continue;
        if (size < 0 && errno == EAGAIN) return PipeState::open;
        if (size <= 0) return PipeState::ended;
        if (bytes.size() + static_cast<std::size_t>(size) > byteLimit) return PipeState::tooLarge;
        bytes.append(block.data(), static_cast<std::size_t>(size));
    }
}

struct Pipe {
    Descriptor reading;
    Descriptor writing;
};

/// A pipe whose reading end never waits, whereas the program at the other end may rely on writes that do.
std::optional<Pipe> openPipe() {
    std::array<int, 2> ends = {};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) return std::nullopt;
    fcntl(ends[0], F_SETFL, O_NONBLOCK);  // NOLINT(cppcoreguidelines-pro-type-vararg): there is no other way to call it
    return Pipe{.reading = Descriptor(ends[0]), .writing = Descriptor(ends[1])};
}

/// The text of a plain representation as UTF-8; nothing where it is not valid UTF-8.
std::optional<std::string> decoded(std::string_view type, std::string bytes) {
    if (bytes.ends_with('\0')) bytes.pop_back();  // which some programs count in
    if (Unicode::isValidUTF8(bytes)) return bytes;
    return type == kLatin1Type ? std::optional(Latin1::toUTF8(bytes)) : std::nullopt;
}

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
    for (const std::string_view type : kPlainTypes) {
        const std::string* const name = offeredAs(type);
        if (name == nullptr) continue;
        std::optional<std::string> bytes = read(*name);
        return bytes ? decoded(type, std::move(*bytes)) : std::nullopt;
    }
    return std::nullopt;
}

std::optional<std::string> WaylandPasteboard::data(Type type) {
    if (type == Type::string) return string();
    if (!catchUp() || isOwner() || foreign_.isSilent) return std::nullopt;
    for (const std::string_view each : type == Type::rtf ? std::span<const std::string_view>(kRTFTypes) : kHTMLTypes) {
        if (const std::string* const name = offeredAs(each)) return read(*name);
    }
    return std::nullopt;
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
    for (const std::string_view type : kServedTypes) source->offer(std::string(type));
    if (Latin1::canHold(text)) source->offer(std::string(kLatin1Type));
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

/// The name under which another program offers `type`; null where it does not.
const std::string* WaylandPasteboard::offeredAs(std::string_view type) const {
    if (foreign_.offer == nullptr) return nullptr;
    const auto& offered = foreign_.offer->types();
    const auto found =
        std::ranges::find_if(offered, [&](const std::string& each) { return normalized(each) == normalized(type); });
    return found != offered.end() ? &*found : nullptr;
}

/// All that the program writes as `type`. One that ends in the middle cannot be told from one that is through; that the
/// clipboard has changed by then is told by the counter.
std::optional<std::string> WaylandPasteboard::read(const std::string& type) {
    Patience patience(limits_);
    const std::shared_ptr<DataControl::Offer> offer = foreign_.offer;
    std::optional<Pipe> pipe = openPipe();
    if (!pipe) return std::nullopt;
    offer->receive(type, pipe->writing.get());
    connection_->processEvents();
    pipe->writing.reset();
    std::string bytes;
    PipeState state = PipeState::open;
    while ((state = drain(pipe->reading.get(), bytes, limits_.byteSize)) == PipeState::open && !connection_->isLost()) {
        patience.noteSize(bytes.size());
        const auto deadline = patience.deadline();
        if (Clock::now() >= deadline || !connection_->waitFor(pipe->reading.get(), deadline)) break;
        connection_->processEvents();
        proceedWithTransfers();
    }
    if (state == PipeState::ended) return bytes;
    if (foreign_.offer == offer) foreign_.isSilent = true;
    return std::nullopt;
}

// --- Serving ---------------------------------------------------------------------------------------------------------

/// Writes the text into a pipe, as far as that takes it; the rest follows when it takes more.
void WaylandPasteboard::serve(std::string_view type, int descriptor, const std::shared_ptr<const std::string>& text) {
    std::shared_ptr<const std::string> content = text;
    if (type == kLatin1Type) content = std::make_shared<const std::string>(Latin1::fromUTF8(*text).value_or(""));
    PipeWriter transfer(descriptor, std::move(content));
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
