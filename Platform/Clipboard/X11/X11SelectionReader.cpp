#include "Platform/Clipboard/X11/X11SelectionReader.h"

#include "Engine/Support/Characters/Unicode.h"
#include "Platform/Clipboard/Latin1.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

namespace ravlin {
namespace {

// The best first. STRING is Latin-1; TEXT is in whatever encoding the type of the answer tells.
constexpr std::array kPlainTargets = {X11Atom::utf8String, X11Atom::plainUTF8, X11Atom::plain, X11Atom::latin1String,
                                      X11Atom::text};

constexpr int kByteFormat = 8;
constexpr int kAtomFormat = 32;

}  // namespace

X11SelectionReader::X11SelectionReader(X11Connection& connection, ReadLimits limits, Pump pump)
    : connection_(connection), limits_(limits), pump_(std::move(pump)) {
    takeNewProperty();
}

std::optional<std::string> X11SelectionReader::plainText(Source source) {
    knowledge_ = {};
    Patience patience(limits_);
    if (!learnTargets(source, patience)) return std::nullopt;
    for (const X11Atom target : kPlainTargets) {
        if (knowledge_.isSilent) return std::nullopt;
        if (knowledge_.targets && !mayOffer(target)) continue;
        std::optional<Answer> answer = ask(source, target, patience);
        if (!answer) continue;
        if (auto text = decoded(target, std::move(*answer))) return Unicode::isValidUTF8(*text) ? text : std::nullopt;
    }
    return std::nullopt;
}

std::optional<std::string> X11SelectionReader::bytes(Source source, std::span<const X11Atom> targets) {
    Patience patience(limits_);
    if (!learnTargets(source, patience)) return std::nullopt;
    for (const X11Atom target : targets) {
        // An owner too old to list its targets is too old for these.
        if (knowledge_.isSilent || !mayOffer(target)) continue;
        if (std::optional<Answer> answer = ask(source, target, patience)) return std::move(answer->bytes);
    }
    return std::nullopt;
}

/// Asks for the list of targets, once for each change of the clipboard. False where there is nobody who answers.
bool X11SelectionReader::learnTargets(Source source, Patience& patience) {
    if (knowledge_.changeCount != source.changeCount) knowledge_ = {};
    knowledge_.changeCount = source.changeCount;
    if (source.owner == XCB_WINDOW_NONE) return false;
    if (knowledge_.isSilent || knowledge_.isAsked) return !knowledge_.isSilent;
    knowledge_.isAsked = true;
    const std::optional<Answer> answer = ask(source, X11Atom::targets, patience);
    if (answer && answer->format == kAtomFormat) {
        knowledge_.targets.emplace(answer->bytes.size() / sizeof(xcb_atom_t));
        std::memcpy(knowledge_.targets->data(), answer->bytes.data(), knowledge_.targets->size() * sizeof(xcb_atom_t));
    }
    return !knowledge_.isSilent;
}

bool X11SelectionReader::mayOffer(X11Atom target) const {
    return knowledge_.targets && std::ranges::count(*knowledge_.targets, connection_.atom(target)) > 0;
}

/// The owner's content as `target`, or nothing: because it has no such target, or because it does not answer.
std::optional<X11SelectionReader::Answer> X11SelectionReader::ask(Source source, X11Atom target, Patience& patience) {
    conversion_.emplace(connection_, X11Conversion::Question{.owner = source.owner,
                                                             .target = connection_.atom(target),
                                                             .property = property_,
                                                             .maximumSize = limits_.byteSize});
    while (!conversion_->isDone() && pump_(patience.deadline())) {
        if (target != X11Atom::targets) patience.noteSize(conversion_->bytes().size());
    }
    std::optional<Answer> answer;
    if (conversion_->state() == X11Conversion::State::answered) {
        answer = {conversion_->type(), conversion_->format(), std::move(conversion_->bytes())};
    } else if (conversion_->state() != X11Conversion::State::refused) {
        knowledge_.isSilent = true;
        takeNewProperty();
    }
    conversion_.reset();
    return answer;
}

/// The text of a plain target's answer as UTF-8, not yet checked; nothing where its type is none that we understand.
std::optional<std::string> X11SelectionReader::decoded(X11Atom target, Answer answer) const {
    // An empty answer may come without a format of its own.
    if (answer.format != kByteFormat && !answer.bytes.empty()) return std::nullopt;
    if (answer.bytes.ends_with('\0')) answer.bytes.pop_back();
    const bool isNamedUTF8 = target == X11Atom::utf8String || target == X11Atom::plainUTF8;
    if (isNamedUTF8 || answer.type == connection_.atom(X11Atom::utf8String)) return std::move(answer.bytes);
    if (answer.type == connection_.atom(X11Atom::latin1String)) return Latin1::toUTF8(answer.bytes);
    // text/plain without a character set: every toolkit of today means UTF-8.
    if (target == X11Atom::plain) return std::move(answer.bytes);
    return std::nullopt;
}

/// An owner that was given up may still answer, into the property that it was told. Nothing else is put there any more.
void X11SelectionReader::takeNewProperty() {
    const xcb_atom_t property = connection_.intern("RAVLIN_TRANSFER_" + std::to_string(++propertyNumber_));
    if (property != XCB_ATOM_NONE) property_ = property;
}

void X11SelectionReader::handle(const xcb_generic_event_t& event) {
    if (conversion_) conversion_->handle(event);
    discardLateAnswer(event);
}

/// Deleting what comes too late frees the server's memory, and lets an owner that sends increments come to its end.
void X11SelectionReader::discardLateAnswer(const xcb_generic_event_t& event) {
    if (x11EventType(event) != XCB_PROPERTY_NOTIFY) return;
    const auto& change = x11EventAs<xcb_property_notify_event_t>(event);
    if (change.window != connection_.window() || change.state != XCB_PROPERTY_NEW_VALUE) return;
    if (change.atom == connection_.atom(X11Atom::clock) || (conversion_ && change.atom == property_)) return;
    xcb_delete_property(connection_.get(), connection_.window(), change.atom);
}

}  // namespace ravlin
