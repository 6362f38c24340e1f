// Extended grapheme clusters (UAX #29, with the Indic conjuncts that ICU adds): how text is split into what users see
// as characters. The rules are in `joinOf`, from which a state machine is derived at compile time.

#include "Engine/Support/Characters/Unicode.h"
#include "Engine/Support/LazyTable.h"

#include <unicode/uchar.h>
#include <unicode/uscript.h>

#include <algorithm>
#include <array>

namespace ravlin::Unicode {
namespace {

/// What the rules know about a code point: Grapheme_Cluster_Break, refined where emoji and Indic rules need it.
enum class Class : std::uint8_t {
    unknown,
    other,
    cr,
    lf,
    control,
    extend,     // with combining class 0
    combining,  // Extend with another combining class
    virama,     // of the scripts that form conjuncts
    zwj,
    regionalIndicator,
    prepend,
    spacingMark,
    hangulL,
    hangulV,
    hangulT,
    hangulLV,
    hangulLVT,
    pictograph,        // Extended_Pictographic
    linkingConsonant,  // of the scripts that form conjuncts
};
constexpr std::size_t kClassCount = 19;

/// What decides, besides its neighbour, whether a code point joins the text before it.
enum class Context : std::uint8_t {
    none,
    openFlag,       // an odd number of regional indicators
    pictograph,     // a pictograph and Extend*
    pictographZWJ,  // the same and one ZWJ
    consonant,      // a linking consonant and combining marks
    conjunct,       // the same, a virama among them
};
constexpr std::size_t kContextCount = 6;

enum class Join : std::uint8_t { never, always, inFlag, inEmojiSequence, inConjunct };

template <typename Enum>
constexpr bool isOneOf(Enum value, std::initializer_list<Enum> values) {
    return std::find(values.begin(), values.end(), value) != values.end();
}

constexpr bool isExtend(Class value) {
    return isOneOf(value, {Class::extend, Class::combining, Class::virama});
}

constexpr bool isHangulSyllable(Class previous, Class next) {  // GB6, GB7, GB8
    using enum Class;
    if (previous == hangulL) return isOneOf(next, {hangulL, hangulV, hangulLV, hangulLVT});
    if (isOneOf(previous, {hangulLV, hangulV})) return isOneOf(next, {hangulV, hangulT});
    return isOneOf(previous, {hangulLVT, hangulT}) && next == hangulT;
}

constexpr Join joinOf(Class previous, Class next) {
    using enum Class;
    if (previous == cr && next == lf) return Join::always;                                             // GB3
    if (isOneOf(previous, {cr, lf, control}) || isOneOf(next, {cr, lf, control})) return Join::never;  // GB4, GB5
    if (isHangulSyllable(previous, next)) return Join::always;
    if (isExtend(next) || isOneOf(next, {zwj, spacingMark}) || previous == prepend) return Join::always;  // GB9, 9a, 9b
    if (previous == zwj && next == pictograph) return Join::inEmojiSequence;                              // GB11
    if (previous == regionalIndicator && next == regionalIndicator) return Join::inFlag;                  // GB12, GB13
    // ICU's own rule: consonants joined by a virama, with nothing but combining marks and joiners between them.
    if (isOneOf(previous, {combining, virama, zwj}) && next == linkingConsonant) return Join::inConjunct;
    return Join::never;  // GB999
}

constexpr bool joins(Class previous, Context context, Class next) {
    switch (joinOf(previous, next)) {
        case Join::never: return false;
        case Join::always: return true;
        case Join::inFlag: return context == Context::openFlag;
        case Join::inEmojiSequence: return context == Context::pictographZWJ;
        case Join::inConjunct: return context == Context::conjunct;
    }
    return false;
}

constexpr Context keptIf(bool isKept, Context context) {
    return isKept ? context : Context::none;
}

constexpr Context contextAfter(Context context, Class next) {
    const bool isEmoji = context == Context::pictograph;
    const bool isIndic = isOneOf(context, {Context::consonant, Context::conjunct});
    switch (next) {
        case Class::regionalIndicator: return keptIf(context != Context::openFlag, Context::openFlag);
        case Class::pictograph: return Context::pictograph;
        case Class::linkingConsonant: return Context::consonant;
        case Class::zwj: return isEmoji ? Context::pictographZWJ : keptIf(isIndic, context);
        case Class::virama: return isIndic ? Context::conjunct : keptIf(isEmoji, context);
        case Class::combining: return keptIf(isIndic || isEmoji, context);
        case Class::extend: return keptIf(isEmoji, context);
        default: return Context::none;
    }
}

/// The state machine: a state is the class of the last code point with its context. `kStart` is a state after which a
/// character is sure to end.
using State = std::uint8_t;
constexpr std::size_t kStateCount = kClassCount * kContextCount;
constexpr State kBoundary = 0x80;  // flag in a transition: a character ends before this code point
static_assert(kStateCount <= kBoundary);

constexpr State stateOf(Class last, Context context) {
    return static_cast<State>(static_cast<std::size_t>(last) * kContextCount + static_cast<std::size_t>(context));
}
constexpr State kStart = stateOf(Class::control, Context::none);
constexpr State kAfterOther = stateOf(Class::other, Context::none);

constexpr bool isBoundary(State transition) {
    return transition >= kBoundary;
}
constexpr State stateAfter(State transition) {
    return transition % kBoundary;
}

using Transitions = std::array<std::array<State, kClassCount>, kStateCount>;

consteval Transitions makeTransitions() {
    Transitions transitions = {};
    for (std::size_t state = 0; state < kStateCount; ++state) {
        const auto last = static_cast<Class>(state / kContextCount);
        const auto context = static_cast<Context>(state % kContextCount);
        for (std::size_t i = 0; i < kClassCount; ++i) {
            const auto next = static_cast<Class>(i);
            const bool isJoined = joins(last, context, next);
            // A character's first code point starts with a clean slate.
            const State reached = stateOf(next, contextAfter(isJoined ? context : Context::none, next));
            transitions[state][i] = static_cast<State>(reached | (isJoined ? State{0} : kBoundary));
        }
    }
    return transitions;
}
constexpr Transitions kTransitions = makeTransitions();

Class indicClass(UChar32 scalar) noexcept {
    UErrorCode status = U_ZERO_ERROR;
    switch (uscript_getScript(scalar, &status)) {
        case USCRIPT_BENGALI:
        case USCRIPT_DEVANAGARI:
        case USCRIPT_GUJARATI:
        case USCRIPT_MALAYALAM:
        case USCRIPT_ORIYA:
        case USCRIPT_TELUGU: break;
        default: return Class::other;
    }
    switch (u_getIntPropertyValue(scalar, UCHAR_INDIC_SYLLABIC_CATEGORY)) {
        case U_INSC_CONSONANT: return Class::linkingConsonant;
        case U_INSC_VIRAMA: return Class::virama;
        default: return Class::other;
    }
}

Class classOfOther(UChar32 scalar) noexcept {
    if (u_hasBinaryProperty(scalar, UCHAR_EXTENDED_PICTOGRAPHIC) != 0) return Class::pictograph;
    return indicClass(scalar);
}

Class classOfExtend(UChar32 scalar) noexcept {
    if (indicClass(scalar) == Class::virama) return Class::virama;
    return u_getCombiningClass(scalar) == 0 ? Class::extend : Class::combining;
}

Class computeClass(char32_t character) noexcept {
    const auto scalar = static_cast<UChar32>(character);
    switch (u_getIntPropertyValue(scalar, UCHAR_GRAPHEME_CLUSTER_BREAK)) {
        case U_GCB_CONTROL: return Class::control;
        case U_GCB_CR: return Class::cr;
        case U_GCB_EXTEND: return classOfExtend(scalar);
        case U_GCB_L: return Class::hangulL;
        case U_GCB_LF: return Class::lf;
        case U_GCB_LV: return Class::hangulLV;
        case U_GCB_LVT: return Class::hangulLVT;
        case U_GCB_T: return Class::hangulT;
        case U_GCB_V: return Class::hangulV;
        case U_GCB_SPACING_MARK: return Class::spacingMark;
        case U_GCB_PREPEND: return Class::prepend;
        case U_GCB_REGIONAL_INDICATOR: return Class::regionalIndicator;
        case U_GCB_ZWJ: return Class::zwj;
        default: return classOfOther(scalar);
    }
}

Class classOf(char32_t scalar) noexcept {
    static constinit LazyTable<Class, 0x110000, computeClass> classes;
    return classes[scalar];
}

State transition(State state, char32_t scalar) noexcept {
    return kTransitions[state][static_cast<std::size_t>(classOf(scalar))];
}

/// 1 or 0, without a branch, so that a loop over it is vectorised.
constexpr std::size_t isCRLF(char first, char second) noexcept {
    return std::size_t{first == '\r'} & std::size_t{second == '\n'};
}

/// Counts boundaries as it is fed a text from the start.
class Counter {
public:
    /// Bytes [`from`, `to`), code point by code point. Returns where it stopped: a code point may reach beyond `to`.
    std::size_t feed(std::string_view text, std::size_t from, std::size_t to) noexcept {
        while (from < to) {
            const Scalar scalar = decode(text, from);
            const Class next = classOf(scalar.value);
            from += scalar.byteSize;
            // By far the most common case: the branch is predicted, while the table look-up would stall.
            if (next == Class::other && state_ == kAfterOther) {
                ++count_;
                continue;
            }
            const State reached = kTransitions[state_][static_cast<std::size_t>(next)];
            count_ += static_cast<std::int64_t>(isBoundary(reached));
            state_ = stateAfter(reached);
        }
        return from;
    }

    /// The same for ASCII bytes only: every byte is a character, except the LF of a CR LF.
    void feedASCII(std::string_view bytes) noexcept {
        feed(bytes, 0, 1);  // the first byte may join what precedes it
        std::size_t pairs = 0;
        for (std::size_t i = 1; i < bytes.size(); ++i) pairs += isCRLF(bytes[i - 1], bytes[i]);
        count_ += static_cast<std::int64_t>(bytes.size() - 1 - pairs);
        state_ = stateAfter(transition(kStart, static_cast<unsigned char>(bytes.back())));
    }

    std::int64_t count() const noexcept { return count_; }

private:
    State state_ = kStart;
    std::int64_t count_ = 0;
};

bool isAllASCII(std::string_view bytes) noexcept {
    unsigned char any = 0;
    for (const char byte : bytes) any |= static_cast<unsigned char>(byte);
    return any < 0x80;
}

}  // namespace

std::int64_t characterCount(std::string_view text) noexcept {
    constexpr std::size_t kBlockSize = 1024;  // bytes
    Counter counter;
    for (std::size_t at = 0; at < text.size();) {
        const std::string_view block = text.substr(at, kBlockSize);
        if (isAllASCII(block)) {
            counter.feedASCII(block);
            at += block.size();
        } else {
            at = counter.feed(text, at, at + block.size());
        }
    }
    return counter.count();
}

std::size_t detail::characterEndByRules(std::string_view text, std::size_t at) noexcept {
    State state = kStart;
    do {
        const Scalar scalar = decode(text, at);
        state = stateAfter(transition(state, scalar.value));
        at += scalar.byteSize;
    } while (at < text.size() && !isBoundary(transition(state, decode(text, at).value)));
    return at;
}

Piece Pieces::next() noexcept {
    if (at_ >= asciiEnd_) asciiEnd_ = asciiRunEnd(text_, at_);
    // The last byte before other text may carry a mark.
    const std::size_t end = asciiEnd_ == text_.size() || asciiEnd_ == at_ ? asciiEnd_ : asciiEnd_ - 1;
    const std::string_view run = text_.substr(at_, end - at_);
    const std::size_t size = std::min(run.find('\r'), run.size());
    const std::size_t start = at_;
    at_ = size > 0 ? start + size : characterEnd(text_, start);
    return {.text = text_.substr(start, at_ - start), .isPlain = size > 0};
}

std::size_t independentPartEnd(std::string_view text, std::size_t from) noexcept {
    const auto isPlain = [](char32_t scalar) { return classOf(scalar) == Class::other; };
    while (from < text.size() && detail::isTrail(text[from])) ++from;
    if (from == 0 || from >= text.size()) return std::min(from, text.size());
    char32_t before = decodeBefore(text, from).value;
    while (from < text.size()) {
        const Scalar next = decode(text, from);
        const bool endsContext = before == '\n' || (isPlain(before) && !isCased(before) && !isCaseIgnorable(before));
        if (endsContext && isPlain(next.value)) break;
        before = next.value;
        from += next.byteSize;
    }
    return from;
}

bool isCharacterBoundary(std::string_view text, std::size_t at) noexcept {
    if (at == 0 || at == text.size()) return true;
    const Class next = classOf(decode(text, at).value);
    Scalar before = decodeBefore(text, at);
    switch (joinOf(classOf(before.value), next)) {
        case Join::never: return true;
        case Join::always: return false;
        default: break;
    }
    // The rest depends on earlier text: go back to a certain boundary, and forward again by the rules.
    std::size_t start = at - before.byteSize;
    while (start > 0) {
        const Scalar previous = decodeBefore(text, start);
        if (joinOf(classOf(previous.value), classOf(before.value)) == Join::never) break;
        before = previous;
        start -= previous.byteSize;
    }
    while (start < at) start = characterEnd(text, start);
    return start == at;
}

}  // namespace ravlin::Unicode
