#include "tests/engine/oracles/PlainCases.h"

#include "tests/engine/oracles/Oracle.h"

#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <sstream>

namespace ravlin::tests {
namespace {

bool hasProperty(char32_t scalar, UProperty property) {
    return u_hasBinaryProperty(static_cast<UChar32>(scalar), property) != 0;
}

struct Character {
    std::string text;
    bool isLetter = false, isNumber = false, isUpper = false, isLower = false;
    bool isSeparator() const { return !isLetter && !isNumber; }
};

Character classified(const std::string& text) {
    const std::vector<char32_t> scalars = Oracle::scalars(text);
    const bool isSingle = scalars.size() == 1;
    const std::string upper = Oracle::upperCased(text);
    const std::string lower = Oracle::lowerCased(text);
    const auto has = [&](UProperty property) { return isSingle && hasProperty(scalars.front(), property); };
    Character character = {.text = text};
    character.isLetter = hasProperty(scalars.front(), UCHAR_ALPHABETIC);
    character.isNumber = u_getIntPropertyValue(static_cast<UChar32>(scalars.front()), UCHAR_NUMERIC_TYPE) != U_NT_NONE;
    character.isUpper = has(UCHAR_UPPERCASE) || (upper == text && (lower != text || has(UCHAR_CASED)));
    character.isLower = has(UCHAR_LOWERCASE) || (lower == text && (upper != text || has(UCHAR_CASED)));
    return character;
}

std::vector<Character> classifiedCharacters(std::string_view text) {
    std::vector<Character> result;
    for (const std::string& character : Oracle::characters(text)) result.push_back(classified(character));
    return result;
}

std::string plainCapitalised(const std::string& word) {
    const std::vector<std::string> characters = Oracle::characters(Oracle::lowerCased(word));
    std::string result = Oracle::upperCased(characters.front());
    for (std::size_t i = 1; i < characters.size(); ++i) result += characters[i];
    return result;
}

template <typename MapFirst, typename Map>
std::string plainJoined(std::string_view text, std::string_view separator, MapFirst mapFirst, Map map) {
    std::string result;
    const std::vector<std::string> words = plainWords(text);
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (i > 0) result += separator;
        result += i == 0 ? mapFirst(words[i]) : map(words[i]);
    }
    return result;
}

/// The folding rule, with ICU's own decomposition.
std::string plainFolded(std::string_view text) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* const nfd = icu::Normalizer2::getNFDInstance(status);
    const std::vector<char32_t> scalars = Oracle::scalars(text);
    std::vector<char32_t> result;
    for (std::size_t i = 0; i < scalars.size();) {
        const char32_t c = scalars[i++];
        const auto first =
            static_cast<char32_t>(nfd->normalize(icu::UnicodeString(static_cast<UChar32>(c)), status).char32At(0));
        const char32_t base = first < 0x510 ? first : c;
        result.push_back(base);
        for (; i < scalars.size(); ++i) {
            const bool isMark = hasProperty(scalars[i], UCHAR_GRAPHEME_EXTEND);
            const bool isSkinTone = scalars[i] >= 0x1F3FB && scalars[i] <= 0x1F3FF;
            if (!isMark && !(base < 0x510 && isSkinTone)) break;
            if (base >= 0x510 && scalars[i] >= 0x510) result.push_back(scalars[i]);
        }
    }
    return Oracle::utf8(result);
}

}  // namespace

/// The rule taken literally, code point by code point.
std::string plainTitleCase(std::string_view text) {
    static const std::u32string ends =
        U"\u002e\u003a\u00b7\u0387\u055f\u05f4\u2018\u2024\u2027\ufe13\ufe52\ufe55\uff07\uff0e\uff1a";
    const std::string lower = Oracle::lowerCased(text);
    std::string result;
    bool isInWord = false;
    std::size_t inLower = 0;
    for (const char32_t scalar : Oracle::scalars(text)) {
        const auto character = static_cast<UChar32>(scalar);
        const std::string itself = Oracle::utf8(scalar);
        const std::string lowered = lower.substr(inLower, Oracle::lowerCased(itself).size());
        inLower += lowered.size();
        const bool isMark = (U_GET_GC_MASK(character) & U_GC_M_MASK) != 0;
        const bool isLetterOrNumber = !isMark && (hasProperty(scalar, UCHAR_ALPHABETIC) ||
                                                  u_getIntPropertyValue(character, UCHAR_NUMERIC_TYPE) != U_NT_NONE);
        const bool goesOn = isMark || isLetterOrNumber ||
                            (hasProperty(scalar, UCHAR_CASE_IGNORABLE) && ends.find(scalar) == std::u32string::npos);
        const bool starts = !isInWord && isLetterOrNumber;
        isInWord = starts || (isInWord && goesOn);
        if (starts)
            result += Oracle::titleCased(scalar);
        else
            result += isInWord ? lowered : itself;
    }
    return result;
}

std::string plainSentenceCase(std::string_view text) {
    const std::vector<Character> characters = classifiedCharacters(Oracle::lowerCased(text));
    bool capitalisesNext = true;
    std::string result;
    for (std::size_t i = 0; i < characters.size(); ++i) {
        const Character& c = characters[i];
        if (capitalisesNext && c.isLetter) {
            result += Oracle::upperCased(c.text);
            capitalisesNext = false;
            continue;
        }
        if (c.text == "." || c.text == "!" || c.text == "?") {
            const std::string next = i + 1 < characters.size() ? characters[i + 1].text : " ";
            if (next == " " || next == "\n" || next == "\t") capitalisesNext = true;
        }
        result += c.text;
    }
    return result;
}

std::string plainCapitalizeWords(std::string_view text) {
    std::string result;
    bool isAfterSeparator = true;
    for (const Character& c : classifiedCharacters(text)) {
        result += isAfterSeparator && c.isLetter ? Oracle::upperCased(c.text) : c.text;
        isAfterSeparator = c.isSeparator();
    }
    return result;
}

/// The rules one after another.
std::vector<std::string> plainWords(std::string_view text) {
    const std::vector<Character> characters = classifiedCharacters(text);
    std::vector<std::string> words;
    std::vector<Character> current;
    const auto flush = [&] {
        if (current.empty()) return;
        words.emplace_back();
        for (const Character& character : current) words.back() += character.text;
        current.clear();
    };
    for (std::size_t i = 0; i < characters.size(); ++i) {
        const Character& c = characters[i];
        if (c.isSeparator()) {
            flush();
            continue;
        }
        if (c.isUpper && !current.empty() && (current.back().isLower || current.back().isNumber)) flush();
        if (c.isUpper && !current.empty() && current.back().isUpper && i + 1 < characters.size() &&
            characters[i + 1].isLower)
            flush();
        current.push_back(c);
    }
    flush();
    return words;
}

std::string plainCamelCase(std::string_view text) {
    return plainJoined(text, "", Oracle::lowerCased, plainCapitalised);
}

std::string plainPascalCase(std::string_view text) {
    return plainJoined(text, "", plainCapitalised, plainCapitalised);
}

std::string plainSnakeCase(std::string_view text) {
    return plainJoined(text, "_", Oracle::lowerCased, Oracle::lowerCased);
}

std::string plainKebabCase(std::string_view text) {
    return plainJoined(text, "-", Oracle::lowerCased, Oracle::lowerCased);
}

std::string plainConstantCase(std::string_view text) {
    return plainJoined(text, "_", Oracle::upperCased, Oracle::upperCased);
}

std::string plainSlug(std::string_view text) {
    std::string spaced;
    for (const Character& c : classifiedCharacters(Oracle::lowerCased(plainFolded(text))))
        spaced += c.isSeparator() ? " " : c.text;
    std::istringstream words(spaced);
    std::string slug;
    for (std::string word; std::getline(words, word, ' ');)
        if (!word.empty()) slug += (slug.empty() ? "" : "-") + word;
    return slug;
}

}  // namespace ravlin::tests
