#include "Platform/Clipboard/Wayland/WaylandPasteboard.h"

#include "Platform/Clipboard/Patience.h"
#include "Platform/Clipboard/Polling.h"
#include "Platform/Clipboard/TextFormats.h"
#include "Platform/Clipboard/Wayland/PipeReader.h"

#include <algorithm>
#include <chrono>

namespace ravlin {
namespace {

using WaylandSelection::Offer;
using WaylandSelection::Protocol;

}  // namespace

// --- Connection and seats --------------------------------------------------------------------------------------------

std::unique_ptr<WaylandPasteboard> WaylandPasteboard::open(const char* displayName, std::string& whyNot,
                                                           ReadLimits limits) {
    std::unique_ptr<WaylandPasteboard> pasteboard(
        new WaylandPasteboard({Protocol::extDataControl, Protocol::zwlrDataControl}, "data control", limits));
    auto connection = WaylandConnection::open(displayName, pasteboard->globals(), whyNot);
    return connection && pasteboard->start(std::move(connection), whyNot) ? std::move(pasteboard) : nullptr;
}

WaylandConnection::Globals WaylandPasteboard::globals() {
    return {.appeared = [this](std::uint32_t name, std::string_view interface,
                               std::uint32_t version) { noteGlobal(name, interface, version); },
            .removed = [this](std::uint32_t name) { noteRemoval(name); }};
}

bool WaylandPasteboard::start(std::unique_ptr<WaylandConnection> connection, std::string& whyNot) {
    surviveBrokenPipes();
    connection_ = std::move(connection);
    transfers_.emplace(*connection_, limits_.reader);
    const bool isAnswering = connection_->synchronise();
    if (isAnswering && !bindManager()) {
        whyNot = "the compositor offers no " + std::string(name_);
        return false;
    }
    // Content that is there already is reported like a change.
    if (!isAnswering || !synchronise()) {
        whyNot = "the compositor does not answer in time";
        return false;
    }
    forgetChanges();
    return true;
}

void WaylandPasteboard::close() {
    own_.reset();
    foreign_ = {};
    leaveSeat();
    seatNames_.clear();
    manager_.reset();
    connection_->close();
    transfers_->clear();  // which a forked process may continue as well: it must not be told that they are not watched
}

void WaylandPasteboard::noteGlobal(std::uint32_t name, std::string_view interface, std::uint32_t version) {
    if (interface == wl_seat_interface.name) seatNames_.push_back(name);
    for (const Protocol each : protocols_) {
        const bool isOfUse = version >= WaylandSelection::versionOf(each);
        if (isOfUse && interface == WaylandSelection::managerName(each)) managerNames_.emplace_back(name, each);
    }
}

void WaylandPasteboard::noteRemoval(std::uint32_t name) {
    std::erase(seatNames_, name);
    if (seat_ && seat_->name == name) isSeatFinished_ = true;
}

bool WaylandPasteboard::bindManager() {
    const auto best = std::ranges::min_element(managerNames_, {}, [](const auto& each) { return each.second; });
    if (best == managerNames_.end()) return false;
    manager_ = std::make_unique<WaylandSelection::Manager>(connection_->registry(), best->first, best->second);
    return true;
}

bool WaylandPasteboard::chooseSeat() {
    if (seat_ || seatNames_.empty()) return false;
    const std::uint32_t name = seatNames_.front();
    auto* const registry = reinterpret_cast<wl_registry*>(connection_->registry());
    auto* const seat = static_cast<wl_proxy*>(wl_registry_bind(registry, name, &wl_seat_interface, 1));
    seat_ = Seat{.name = name,
                 .proxy = std::unique_ptr<wl_proxy, WaylandSelection::ProxyDeleter>(seat),
                 .device = manager_->deviceOf(
                     seat, {.selection = [this](std::shared_ptr<Offer> offer) { noteSelection(std::move(offer)); },
                            .finished = [this] { isSeatFinished_ = true; }})};
    followSeat(reinterpret_cast<wl_seat*>(seat));
    return true;
}

void WaylandPasteboard::leaveSeat() {
    followSeat(nullptr);
    seat_.reset();
}

void WaylandPasteboard::noteSelection(std::shared_ptr<Offer> offer) {
    noteChange();
    foreign_ = {.offer = std::move(offer), .isTold = true};
    if (!own_ || own_->mark.empty()) return;
    own_->isAccepted = foreign_.offer && std::ranges::count(foreign_.offer->types(), own_->mark) > 0;
}

// --- Writing ---------------------------------------------------------------------------------------------------------

bool WaylandPasteboard::write(const Text& text, std::int64_t count) {
    if (connection_->isLost()) return false;
    std::unique_ptr<Own> copy = copyOf(text);
    // The input that this responds to may not have been handled here yet, and preparing a long text leaves time for
    // another program's copy. A copy made from here on is overwritten, which no protocol can prevent.
    if (!synchronise() || !seat_ || !mayCopy() || isOvertaken(count)) return false;
    const std::uint32_t seatName = seat_->name;
    std::unique_ptr<Own> before = std::exchange(own_, std::move(copy));
    seat_->device->setSelection(own_->source.get(), inputSerial());
    const bool isAnswered = synchronise();
    if (isAnswered && ownText() != nullptr) return true;
    // If the compositor refused, our previous text, if any, is still there.
    if (isAnswered && seat_ && seat_->name == seatName) own_ = std::move(before);
    return false;
}

std::unique_ptr<WaylandPasteboard::Own> WaylandPasteboard::copyOf(const Text& text) {
    const std::string mark = nextMark();
    auto own = std::make_unique<Own>(Own{.source = nullptr, .text = text, .mark = mark, .isAccepted = mark.empty()});
    own->source = manager_->createSource(
        {.send = [this, text](std::string_view type, int descriptor) { serve(type, descriptor, text); },
         .cancelled = [self = own.get()] { self->text = nullptr; }});
    for (const TextFormat& each : TextFormats::kAll) {
        if (text->isOfferedIn(each)) own->source->offer(std::string(each.name));
    }
    if (text->passwordHint() != nullptr) own->source->offer(std::string(TextFormats::kPasswordHint));
    if (!mark.empty()) own->source->offer(mark);
    return own;
}

void WaylandPasteboard::clear() {
    own_.reset();
    // Without access, only our own text can be withdrawn.
    if (seat_ && hasAccess()) seat_->device->setSelection(nullptr, inputSerial());
}

// --- Events ----------------------------------------------------------------------------------------------------------

void WaylandPasteboard::handleEvents() {
    connection_->processEvents();
    update();
    transfers_->proceed();
}

bool WaylandPasteboard::awaitAnswer() {
    bool isAnswered = connection_->synchronise();
    while (update() && isAnswered) isAnswered = connection_->synchronise();
    return isAnswered;
}

/// Acts on events once libwayland has dispatched them: the objects that they are addressed to must not be destroyed
/// before. True if more events are due: the content of another seat is reported like a change.
bool WaylandPasteboard::update() {
    if (own_ && !own_->text) own_.reset();
    if (isSeatFinished_) {
        isSeatFinished_ = false;
        noteChange();
        own_.reset();
        foreign_ = {};
        if (seat_) std::erase(seatNames_, seat_->name);
        leaveSeat();
    }
    return chooseSeat() || hasAskedSeat();
}

// --- Reading ---------------------------------------------------------------------------------------------------------

std::optional<std::string> WaylandPasteboard::read(Type type) {
    if (type == Type::string) {
        foreign_.isSilent = false;
        readingTimeLeft_ = limits_.total;
    }
    if (foreign_.offer == nullptr || foreign_.isSilent) return std::nullopt;
    const std::optional<TextFormats::Match> match = TextFormats::best(type, foreign_.offer->types());
    std::optional<std::string> bytes = match ? receive(match->name, limits_.byteSize) : std::nullopt;
    if (!bytes || type != Type::string) return bytes;
    return TextFormats::decodedUntyped(match->format, std::move(*bytes));
}

OfferedText::Bytes WaylandPasteboard::readPasswordHint() {
    const std::string name(TextFormats::kPasswordHint);
    const bool isOffered =
        foreign_.offer && !foreign_.isSilent && std::ranges::count(foreign_.offer->types(), name) > 0;
    const auto hint = isOffered ? receive(name, TextFormats::kMaximumPasswordHintSize) : std::nullopt;
    return hint ? std::make_shared<const std::string>(*hint) : nullptr;
}

/// Everything the program writes as the type `name`. A program that ends in the middle cannot be distinguished from one
/// that has finished; the change count shows that the clipboard has changed by then.
std::optional<std::string> WaylandPasteboard::receive(const std::string& name, std::size_t byteLimit) {
    Patience patience(limits_, readingTimeLeft_);
    const std::shared_ptr<Offer> offer = foreign_.offer;  // which may have been replaced by the end
    PipeReader pipe(byteLimit);
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
        transfers_->proceed();
    }
    if (state == PipeReader::State::ended) return std::move(pipe.bytes());
    if (foreign_.offer == offer) foreign_.isSilent = true;
    return std::nullopt;
}

// --- Serving ---------------------------------------------------------------------------------------------------------

void WaylandPasteboard::serve(std::string_view type, int descriptor, const Text& text) {
    const auto* const format = std::ranges::find(TextFormats::kAll, type, &TextFormat::name);
    const bool isHint = type == TextFormats::kPasswordHint && text->passwordHint() != nullptr;
    transfers_->begin(descriptor, isHint                              ? text->passwordHint()
                                  : format != TextFormats::kAll.end() ? text->bytesIn(*format)
                                                                      : text->bytesIn(TextFormats::kUTF8String));
}

std::vector<int> WaylandPasteboard::servingDescriptors() const {
    std::vector<int> descriptors = connection_->descriptors();
    const std::vector<int> pipes = transfers_->descriptors();
    descriptors.insert(descriptors.end(), pipes.begin(), pipes.end());
    return descriptors;
}

}  // namespace ravlin
