#include "Platform/Clipboard/X11/X11SelectionReader.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace ravlin {
namespace {

constexpr int kByteFormat = 8;
constexpr int kAtomFormat = 32;

}  // namespace

X11SelectionReader::X11SelectionReader(X11Connection& connection, ReadLimits limits, Pump pump)
    : connection_(connection), limits_(limits), pump_(std::move(pump)), timeLeft_(limits.total) {
    takeNewProperty();
}

std::optional<std::string> X11SelectionReader::read(Source source, Pasteboard::Type type) {
    const bool isText = type == Pasteboard::Type::string;
    if (isText) {
        knowledge_ = {};
        timeLeft_ = limits_.total;
    }
    Patience patience(limits_, timeLeft_);
    if (!learnTargets(source, patience)) return std::nullopt;
    for (const TextFormat& format : TextFormats::kAll) {
        const xcb_atom_t target = format.type == type && !knowledge_.isSilent ? targetOf(format) : xcb_atom_t{};
        if (target == XCB_ATOM_NONE) continue;
        std::optional<Answer> answer = ask(source, target, patience);
        if (!answer || !isInBytes(*answer)) continue;
        if (!isText) return std::move(answer->bytes);
        const auto encoding = encodingOf(format, *answer);
        if (encoding) return TextFormats::decoded(*encoding, std::move(answer->bytes));
    }
    return std::nullopt;
}

/// Text of any kind is. An empty answer may come without a format.
bool X11SelectionReader::isInBytes(const Answer& answer) {
    return answer.format == kByteFormat || answer.bytes.empty();
}

std::optional<std::string> X11SelectionReader::readPasswordHint(Source source) {
    const xcb_atom_t target = connection_.atom(X11Atom::passwordHint);
    if (knowledge_.changeCount != source.changeCount || knowledge_.isSilent || !isListed(target)) return std::nullopt;
    Patience patience(limits_, timeLeft_);
    const std::optional<Answer> answer = ask({.owner = source.owner,
                                              .target = target,
                                              .property = property_,
                                              .maximumSize = TextFormats::kMaximumPasswordHintSize},
                                             patience);
    return answer && answer->format == kByteFormat ? std::optional(answer->bytes) : std::nullopt;
}

/// Asks for the list of targets, once for each change of the clipboard. False if there is no owner that answers.
bool X11SelectionReader::learnTargets(Source source, Patience& patience) {
    if (knowledge_.changeCount != source.changeCount) knowledge_ = {};
    knowledge_.changeCount = source.changeCount;
    if (source.owner == XCB_WINDOW_NONE) return false;
    if (knowledge_.isSilent || knowledge_.isAsked) return !knowledge_.isSilent;
    knowledge_.isAsked = true;
    const std::optional<Answer> answer = ask(source, connection_.atom(X11Atom::targets), patience);
    if (answer && answer->format == kAtomFormat) {
        std::vector<xcb_atom_t> targets(answer->bytes.size() / sizeof(xcb_atom_t));
        // An empty vector has no place to copy anything to, not even nothing.
        if (!targets.empty()) std::memcpy(targets.data(), answer->bytes.data(), targets.size() * sizeof(xcb_atom_t));
        knowledge_.targets = std::move(targets);
    }
    return !knowledge_.isSilent;
}

/// The target under which the owner has `format`; XCB_ATOM_NONE if it does not.
xcb_atom_t X11SelectionReader::targetOf(const TextFormat& format) {
    const xcb_atom_t usual = connection_.atom(format);
    // An owner too old to list its targets is too old for anything but plain text.
    if (!knowledge_.targets) return format.type == Pasteboard::Type::string ? usual : xcb_atom_t{XCB_ATOM_NONE};
    if (isListed(usual)) return usual;
    if (!knowledge_.names) learnNames();
    const auto isMeant = [&format](const auto& each) { return TextFormats::isNameOf(each.first, format); };
    const auto found = std::ranges::find_if(*knowledge_.names, isMeant);
    return found != knowledge_.names->end() ? found->second : xcb_atom_t{XCB_ATOM_NONE};
}

bool X11SelectionReader::isListed(xcb_atom_t target) const {
    return knowledge_.targets && std::ranges::count(*knowledge_.targets, target) > 0;
}

/// A format's name may differ in letter case or blanks, and is then another atom. Most owners have the best format
/// under its usual name, so that no names have to be requested.
void X11SelectionReader::learnNames() {
    std::vector<xcb_atom_t> unknown;
    for (const xcb_atom_t each : *knowledge_.targets) {
        if (unknown.size() == kMaximumNames) break;
        if (connection_.formatOf(each) == nullptr) unknown.push_back(each);
    }
    std::vector<std::string> names = connection_.namesOf(unknown);
    knowledge_.names.emplace();
    for (std::size_t i = 0; i < names.size(); ++i) knowledge_.names->emplace_back(std::move(names[i]), unknown[i]);
}

/// The owner's content as `target`, or nothing if it has no such target or does not answer.
std::optional<X11SelectionReader::Answer> X11SelectionReader::ask(Source source, xcb_atom_t target,
                                                                  Patience& patience) {
    return ask({.owner = source.owner, .target = target, .property = property_, .maximumSize = limits_.byteSize},
               patience);
}

std::optional<X11SelectionReader::Answer> X11SelectionReader::ask(X11Conversion::Question question,
                                                                  Patience& patience) {
    conversion_.emplace(connection_, question);
    while (!conversion_->isDone() && pump_(patience.deadline())) {
        if (question.target != connection_.atom(X11Atom::targets)) patience.noteSize(conversion_->bytes().size());
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

/// Nothing if the encoding is not one we understand.
std::optional<TextFormat::Encoding> X11SelectionReader::encodingOf(const TextFormat& format,
                                                                   const Answer& answer) const {
    return TextFormats::encodingOf(format, connection_.formatOf(answer.type));
}

/// An owner that was given up may still answer, into the property that it was given. Nothing else is put there from now
/// on.
void X11SelectionReader::takeNewProperty() {
    const xcb_atom_t property = connection_.intern("RAVLIN_TRANSFER_" + std::to_string(++propertyNumber_));
    if (property != XCB_ATOM_NONE) property_ = property;
}

void X11SelectionReader::handle(const xcb_generic_event_t& event) {
    if (conversion_) conversion_->handle(event);
    discardLateAnswer(event);
}

/// Deleting what comes too late frees the server's memory, and lets an owner that sends increments finish.
void X11SelectionReader::discardLateAnswer(const xcb_generic_event_t& event) {
    if (x11EventType(event) != XCB_PROPERTY_NOTIFY) return;
    const auto& change = x11EventAs<xcb_property_notify_event_t>(event);
    if (change.window != connection_.window() || change.state != XCB_PROPERTY_NEW_VALUE) return;
    if (change.atom == connection_.atom(X11Atom::clock) || (conversion_ && change.atom == property_)) return;
    xcb_delete_property(connection_.get(), connection_.window(), change.atom);
}

}  // namespace ravlin
