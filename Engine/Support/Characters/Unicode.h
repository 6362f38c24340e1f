#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// The only place that decodes UTF-8. Properties, case mappings and normalisation come from ICU with the root locale.
/// Texts should be well-formed, but need not be: every ill-formed sequence safely counts as one U+FFFD.
namespace ravlin::Unicode {

// --- Bytes and code points -------------------------------------------------------------------------------------------

/// Replaces anything that is not a character.
inline constexpr char16_t kReplacement = 0xFFFD;

/// One code point and the bytes it takes. For an ill-formed sequence (its longest part that could have begun a
/// character, at least one byte) `value` is U+FFFD and `isWellFormed` is false.
struct Scalar {
    char32_t value = 0;
    std::uint8_t byteSize = 0;
    bool isWellFormed = true;
};

constexpr bool isASCII(char byte) noexcept {
    return static_cast<unsigned char>(byte) < 0x80;
}

/// The code point that starts at byte `at`, which lies before the end of `text`.
Scalar decode(std::string_view text, std::size_t at) noexcept;

/// The code point that ends before byte `end`, which lies after the start of `text`.
Scalar decodeBefore(std::string_view text, std::size_t end) noexcept;

/// Appends `scalar` as UTF-8.
void append(std::string& text, char32_t scalar);

/// The first byte of `scalar` in UTF-8.
constexpr unsigned char leadByte(char32_t scalar) noexcept {
    if (scalar < 0x80) return static_cast<unsigned char>(scalar);
    if (scalar < 0x800) return static_cast<unsigned char>(0xC0U | (scalar >> 6U));
    if (scalar < 0x10000) return static_cast<unsigned char>(0xE0U | (scalar >> 12U));
    return static_cast<unsigned char>(0xF0U | (scalar >> 18U));
}

/// Whether `text` is well-formed UTF-8: no overlong forms, no surrogates, nothing above U+10FFFF.
bool isValidUTF8(std::string_view text) noexcept;

/// The end of the run of ASCII bytes that starts at byte `from`; `from` itself if there is none.
///     asciiRunEnd("ab\u00E9", 0)  ->  2
std::size_t asciiRunEnd(std::string_view text, std::size_t from) noexcept;

/// Walks over `text` from byte `from` on: calls `takeASCII` with every run of ASCII and `take` with every other code
/// point and its bytes.
template <typename TakeASCII, typename Take>
void forEachRun(std::string_view text, std::size_t from, TakeASCII takeASCII, Take take) {
    while (from < text.size()) {
        const std::size_t asciiEnd = asciiRunEnd(text, from);
        if (asciiEnd > from) takeASCII(text.substr(from, asciiEnd - from));
        for (from = asciiEnd; from < text.size() && !isASCII(text[from]);) {
            const Scalar scalar = decode(text, from);
            take(scalar.value, text.substr(from, scalar.byteSize));
            from += scalar.byteSize;
        }
    }
}

// --- Properties of code points ---------------------------------------------------------------------------------------

bool isLetter(char32_t scalar) noexcept;         ///< Alphabetic, so also the vowel signs of Indic scripts
bool isNumber(char32_t scalar) noexcept;         ///< has a numeric type, so also U+00BD and U+4E00
bool isDecimalDigit(char32_t scalar) noexcept;   ///< general category Nd, \d of a regular expression
bool isMark(char32_t scalar) noexcept;           ///< general category Mn, Mc or Me
bool isFormat(char32_t scalar) noexcept;         ///< general category Cf: soft hyphen, U+200B, direction marks ...
bool isOther(char32_t scalar) noexcept;          ///< general category C: controls, Cf, private use and unassigned ones
bool isUppercase(char32_t scalar) noexcept;      ///< Uppercase
bool isLowercase(char32_t scalar) noexcept;      ///< Lowercase
bool isCased(char32_t scalar) noexcept;          ///< Cased
bool isCaseIgnorable(char32_t scalar) noexcept;  ///< Case_Ignorable: apostrophes, marks, format characters ...

/// Grapheme_Extend: continues the preceding character without taking up space of its own.
bool isGraphemeExtend(char32_t scalar) noexcept;

/// The zero-width non-joiner and joiner, which writing systems like Persian need inside words.
constexpr bool isJoiner(char32_t scalar) noexcept {
    return scalar == 0x200C || scalar == 0x200D;
}

/// A letter, mark, decimal digit, connector punctuation or a joiner: \w of a regular expression.
bool isWordCharacter(char32_t scalar) noexcept;

/// The tab and the space separators (Zs), U+00A0 included, but no line ends.
bool isWhitespace(char32_t scalar) noexcept;

/// The 25 characters with the property White_Space: the above, U+000A-U+000D, U+0085, U+2028 and U+2029.
bool isWhitespaceOrNewline(char32_t scalar) noexcept;

// --- Characters ------------------------------------------------------------------------------------------------------

/// How many user-perceived characters `text` has: extended grapheme clusters as ICU's root character iterator sees
/// them.
///     characterCount("a\r\nb")  ->  3
std::int64_t characterCount(std::string_view text) noexcept;

/// The end of the character that starts at byte `at`, in bytes. `at` is the start of a character and lies before the
/// end of `text`.
///     characterEnd("\r\nb", 0)  ->  2
std::size_t characterEnd(std::string_view text, std::size_t at) noexcept;

/// Whether a character ends and another starts at byte `at`, the start of a code point. The two ends of the text count.
/// Looks at the two neighbours only, unless they are regional indicators, or joined emoji or Indic consonants.
bool isCharacterBoundary(std::string_view text, std::size_t at) noexcept;

/// A stretch of a text that can be handled at once: one character or, if `isPlain`, ASCII without CR, in which every
/// byte is a character.
struct Piece {
    std::string_view text;
    bool isPlain = false;
};

/// Splits a text into pieces, from its start.
///     "ab\r\nc" followed by U+0301  ->  plain "ab", "\r\n", "c" with its accent
class Pieces {
public:
    explicit Pieces(std::string_view text) noexcept : text_(text) {}

    bool isAtEnd() const noexcept { return at_ == text_.size(); }

    /// The next piece; there must be one.
    Piece next() noexcept;

private:
    std::string_view text_;
    std::size_t at_ = 0;
    std::size_t asciiEnd_ = 0;
};

/// The first place at or after byte `from` where `text` can be split so that mapping the case of both parts or
/// splitting them into characters gives the same as for the whole; the end of the text if there is none.
std::size_t independentPartEnd(std::string_view text, std::size_t from) noexcept;

// --- Case and normalisation ------------------------------------------------------------------------------------------

/// Room to reserve for case-mapping a text of `size` bytes, so that the few characters that grow in some language do
/// not cause a reallocation.
constexpr std::size_t roomForMapped(std::size_t size) noexcept {
    return size + size / 16 + 16;
}

/// The full, locale-independent lower-case mapping of the whole text, final sigma included.
std::string lowerCased(std::string_view text);

/// The full, locale-independent upper-case mapping of the whole text.
///     upperCased("stra\u00DFe")  ->  "STRASSE"
std::string upperCased(std::string_view text);

/// Appends the lower-case mapping of the bytes [`from`, `to`) of `text`. Their context in `text` decides about final
/// sigma, so mapping a text piece by piece gives the same as mapping it at once.
void appendLowerCased(std::string& result, std::string_view text, std::size_t from, std::size_t to);

/// Appends the upper-case mapping of `text`, which does not depend on its context.
void appendUpperCased(std::string& result, std::string_view text);

/// Appends the full title-case mapping of one code point: "Ss" for U+00DF.
void appendTitleCased(std::string& result, char32_t scalar);

/// Whether the full mapping of any code point of `text` differs from it.
bool isChangedByLowerCasing(std::string_view text) noexcept;
bool isChangedByUpperCasing(std::string_view text) noexcept;

/// The first code point of the canonical decomposition: "e" for U+00E9, `scalar` itself if it does not decompose.
char32_t decompositionStart(char32_t scalar) noexcept;

/// `text` in normalisation form C (UAX #15).
std::string nfc(std::string_view text);

/// Whether `text` is in normalisation form C. Free for texts that are entirely below U+0300.
bool isNFC(std::string_view text);

/// The longest run of combining marks that ICU may be given. It takes quadratic time for marks out of order and for
/// some contractions; no language comes near this number, which is more than twice the limit of the Stream-Safe Text
/// Format (UAX #15).
inline constexpr std::size_t kLongestMarkRun = 64;  // code points

/// Whether `text` has a run of more than `kLongestMarkRun` combining marks.
bool hasLongMarkRun(std::string_view text) noexcept;

/// `text` with every run of combining marks cut to `kLongestMarkRun`.
std::string withShortMarkRuns(std::string_view text);

// --- Trimming --------------------------------------------------------------------------------------------------------

/// `text` without the tabs and Unicode space separators (Zs) at its two ends. The view points into `text`.
std::string_view trimWhitespaces(std::string_view text) noexcept;

/// `text` without the White_Space characters at its two ends, line ends included. The view points into `text`.
std::string_view trimWhitespacesAndNewlines(std::string_view text) noexcept;

// --- Fast paths ------------------------------------------------------------------------------------------------------

namespace detail {
Scalar decodeByRules(std::string_view text, std::size_t at) noexcept;
std::size_t characterEndByRules(std::string_view text, std::size_t at) noexcept;

constexpr bool isTrail(char byte) noexcept {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80;
}

constexpr char32_t bits(char byte, unsigned mask, unsigned shift) noexcept {
    return (static_cast<unsigned char>(byte) & mask) << shift;
}
}  // namespace detail

inline Scalar decode(std::string_view text, std::size_t at) noexcept {
    using detail::bits;
    using detail::isTrail;
    const char* const bytes = text.data() + at;
    const std::size_t size = text.size() - at;
    const auto lead = static_cast<unsigned char>(*bytes);
    if (lead < 0x80) return {.value = lead, .byteSize = 1};
    if (lead >= 0xC2 && lead < 0xE0 && size >= 2 && isTrail(bytes[1]))
        return {.value = bits(bytes[0], 0x1F, 6) | bits(bytes[1], 0x3F, 0), .byteSize = 2};
    // The second byte is restricted after E0, ED, F0 and F4: the rules handle the rare ones among these.
    const auto second = static_cast<unsigned char>(size >= 2 ? bytes[1] : 0);
    if (lead >= 0xE0 && lead < 0xED && second >= (lead == 0xE0 ? 0xA0 : 0x80) && isTrail(bytes[1]) && size >= 3 &&
        isTrail(bytes[2]))
        return {.value = bits(bytes[0], 0x0F, 12) | bits(bytes[1], 0x3F, 6) | bits(bytes[2], 0x3F, 0), .byteSize = 3};
    if (lead == 0xF0 && second >= 0x90 && isTrail(bytes[1]) && size >= 4 && isTrail(bytes[2]) && isTrail(bytes[3]))
        return {.value = bits(bytes[1], 0x3F, 12) | bits(bytes[2], 0x3F, 6) | bits(bytes[3], 0x3F, 0), .byteSize = 4};
    return detail::decodeByRules(text, at);
}

inline std::size_t characterEnd(std::string_view text, std::size_t at) noexcept {
    // Two ASCII neighbours are two characters, unless they are CR and LF.
    const std::size_t next = at + 1;
    if (isASCII(text[at]) && text[at] != '\r' && (next == text.size() || isASCII(text[next]))) return next;
    return detail::characterEndByRules(text, at);
}

}  // namespace ravlin::Unicode
