#include "tests/engine/oracles/Oracle.h"

#include <unicode/brkiter.h>
#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/locid.h>
#include <unicode/stringoptions.h>
#include <unicode/unistr.h>
#include <unicode/utext.h>

#include <memory>
#include <set>

namespace ravlin::Oracle {
namespace {

icu::StringPiece piece(std::string_view text) {
    return {text.data(), static_cast<std::int32_t>(text.size())};
}

icu::BreakIterator& iterator() {
    static const std::unique_ptr<icu::BreakIterator> instance = [] {
        UErrorCode status = U_ZERO_ERROR;
        return std::unique_ptr<icu::BreakIterator>(
            icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    }();
    return *instance;
}

}  // namespace

std::vector<std::string> characters(std::string_view text) {
    UErrorCode status = U_ZERO_ERROR;
    UText* const utext = utext_openUTF8(nullptr, text.data(), static_cast<std::int64_t>(text.size()), &status);
    iterator().setText(utext, status);
    std::vector<std::string> result;
    std::int32_t from = 0;
    for (std::int32_t to = iterator().next(); to != icu::BreakIterator::DONE; to = iterator().next()) {
        result.emplace_back(text.substr(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from)));
        from = to;
    }
    utext_close(utext);
    return result;
}

std::vector<char32_t> scalars(std::string_view text) {
    const icu::UnicodeString units = icu::UnicodeString::fromUTF8(piece(text));
    std::vector<char32_t> result;
    for (std::int32_t i = 0; i < units.length(); i = units.moveIndex32(i, 1))
        result.push_back(static_cast<char32_t>(units.char32At(i)));
    return result;
}

std::string utf8(std::span<const char32_t> scalars) {
    icu::UnicodeString units;
    for (const char32_t scalar : scalars) units.append(static_cast<UChar32>(scalar));
    std::string result;
    return units.toUTF8String(result);
}

std::string utf8(char32_t scalar) {
    return utf8(std::span(&scalar, 1));
}

std::string lowerCased(std::string_view text) {
    std::string result;
    icu::StringByteSink<std::string> sink(&result);
    UErrorCode status = U_ZERO_ERROR;
    icu::CaseMap::utf8ToLower("", 0, piece(text), sink, nullptr, status);
    return result;
}

std::string upperCased(std::string_view text) {
    std::string result;
    icu::StringByteSink<std::string> sink(&result);
    UErrorCode status = U_ZERO_ERROR;
    icu::CaseMap::utf8ToUpper("", 0, piece(text), sink, nullptr, status);
    return result;
}

std::string titleCased(char32_t scalar) {
    std::string result;
    icu::StringByteSink<std::string> sink(&result);
    UErrorCode status = U_ZERO_ERROR;
    icu::CaseMap::utf8ToTitle("", U_TITLECASE_WHOLE_STRING | U_TITLECASE_NO_BREAK_ADJUSTMENT, nullptr,
                              piece(utf8(scalar)), sink, nullptr, status);
    return result;
}

std::string replaceAll(std::string_view text, std::string_view from, std::string_view to) {
    std::set<std::size_t> boundaries = {0};
    for (std::size_t at = 0; const std::string& character : characters(text)) {
        if (character == "\r\n") boundaries.insert(at + 1);
        boundaries.insert(at += character.size());
    }
    std::string result;
    for (std::size_t at = 0; at < text.size();) {
        const bool isMatch =
            text.substr(at).starts_with(from) && boundaries.contains(at) && boundaries.contains(at + from.size());
        result += isMatch ? to : text.substr(at, 1);
        at += isMatch ? from.size() : 1;
    }
    return result;
}
}  // namespace ravlin::Oracle
