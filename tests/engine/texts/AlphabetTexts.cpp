#include "tests/engine/texts/AlphabetTexts.h"

#include <unicode/unistr.h>

namespace ravlin::tests {

const std::u32string_view kClusterAlphabet =
    U"a1 \t\r\n\u0001\u00ad\u200b\u2028"
    U"\u0300\u0301\u034f\u0345\u0ebb\u200c\u200d\ufe0f\u20e3\U000e0061"  // Extend of several combining classes
    U"\U0001f1e6\U0001f1e7"                                              // regional indicators
    U"\u0600\u06dd\u0d4e\U000110bd\U000111c2"                            // Prepend
    U"\u0903\u093e\u0e33\u0eb3"                                          // SpacingMark and what looks like it
    U"\u1100\u115f\ua960\u1161\ud7b0\u11a8\ud7cb\uac00\uac01"            // Hangul
    U"\u00a9\u2764\u231a\U0001f468\U0001f3fb\U0001f9d1\U0001fffd"        // pictographs and a modifier
    U"\u0915\u0937\u093c\u094d\u0951\u09b7\u09cd\u0a95\u0acd\u0b15\u0b4d\u0c15\u0c4d\u0d15\u0d4d\u0d3b"  // conjuncts
    U"\u0a15\u0a4d\u0b95\u0bcd\u0c95\u0ccd\u1000\u1039"  // Indic scripts without them
    U"\u00e9\u0416\u4e2d\ufffd\U0010ffff";

const std::u32string_view kTextAlphabet =
    U"abzABZ0129  \t\n\r_-.:!?,;'\"`^&<>+%#/()[]{}*|~\\$@="
    U"\u00a0\u2003\u3000\u0085\u2028\u000b\u000c\u200b\ufeff\u00ad\u180e\u2060"
    U"\u0301\u0338\u0345\u200d\u200c\ufe0f\u0903\u0600"
    U"\u00e9\u00c9\u00df\u1e9e\u0130\u0131\u0149\u01c4\u01c5\u01c6\u01f0\u0390\u03a3\u03c3\u03c2\u039f\u1f88\u1fb3"
    U"\ufb00\ufb05\u00aa\u00ba\u02b0\u2160\u2170\u24b6\u24d0\u00bd\u2460\u0587\u10d0\u1c90\u13a0\uab70\U0001d400"
    U"\U00010400\U00010428\u0416\u0439\u4e00\u3042\u304c\u0915\u094d\u0937\u093e\uac00\u1100\u1161"
    U"\u2018\u2019\u201a\u201c\u201d\u201e\u00ab\u00bb\u2012\u2013\u2014\u2015\u2026\u2010\u2212"
    U"\U0001f600\U0001f468\U0001f3fd\U0001f1eb\U0001f1f7\u2764";

std::string AlphabetTexts::next() {
    const std::size_t length = std::uniform_int_distribution<std::size_t>(0, maxLength_)(random_);
    std::uniform_int_distribution<std::size_t> position(0, alphabet_.size() - 1);
    icu::UnicodeString units;
    for (std::size_t i = 0; i < length; ++i) units.append(static_cast<UChar32>(alphabet_[position(random_)]));
    std::string text;
    return units.toUTF8String(text);
}

}  // namespace ravlin::tests
