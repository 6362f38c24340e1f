#include "Engine/Support/RichText/RTFTokenizer.h"

#include "Engine/Support/Bytes.h"
#include "Engine/Support/Characters/ASCII.h"
#include "Engine/Support/Scan.h"

#include <algorithm>
#include <array>
#include <limits>
#include <optional>

namespace ravlin {
namespace {

using Scan::peek;

constexpr bool isIgnored(char byte) noexcept {
    return byte == '\r' || byte == '\n' || byte == '\0';
}

constexpr std::array<bool, 256> kIsPlain = [] {
    std::array<bool, 256> isPlain = {};
    isPlain.fill(true);
    for (const char byte : {'{', '}', '\\', '\r', '\n', '\0'}) isPlain[static_cast<unsigned char>(byte)] = false;
    return isPlain;
}();

constexpr std::string_view kHexMark = "\\'";
constexpr std::size_t kDigitsPerByte = 2;

/// The byte that the two hexadecimal digits at byte `at` stand for; nothing if there are none.
std::optional<unsigned> byteValue(std::string_view text, std::size_t at) noexcept {
    return Bytes::hexByte(peek(text, at), peek(text, at + 1));
}

}  // namespace

RTFToken RTFTokenizer::next() noexcept {
    while (at_ < rtf_.size() && isIgnored(rtf_[at_])) ++at_;
    if (at_ == rtf_.size()) return {};
    switch (rtf_[at_]) {
        case '{': ++at_; return {.kind = RTFToken::Kind::groupStart};
        case '}': ++at_; return {.kind = RTFToken::Kind::groupEnd};
        case '\\': ++at_; return escapedToken();
        default: return bytesToken();
    }
}

RTFToken RTFTokenizer::bytesToken() noexcept {
    const std::size_t from = at_;
    while (at_ < rtf_.size() && kIsPlain[static_cast<unsigned char>(rtf_[at_])]) ++at_;
    return {.kind = RTFToken::Kind::bytes, .text = Scan::between(rtf_, from, at_)};
}

/// The token after a backslash.
RTFToken RTFTokenizer::escapedToken() noexcept {
    if (at_ == rtf_.size()) return {};
    if (ASCII::isLetter(rtf_[at_])) return wordToken();
    const std::string_view character = rtf_.substr(at_++, 1);
    switch (character.front()) {
        case '\'': return hexToken();
        case '\\':
        case '{':
        case '}': return {.kind = RTFToken::Kind::bytes, .text = character};
        default: return {.kind = RTFToken::Kind::symbol, .text = character};
    }
}

/// Adjacent bytes in hexadecimal, as are common in text that is not English. Without two digits the token is a symbol
/// that means nothing, as is NUL, which is not a character here.
RTFToken RTFTokenizer::hexToken() noexcept {
    std::size_t count = 0;
    for (at_ -= kHexMark.size(); count < hexBytes_.size() && rtf_.substr(at_).starts_with(kHexMark); ++count) {
        const unsigned byte = byteValue(rtf_, at_ + kHexMark.size()).value_or(0);
        if (byte == 0) break;
        hexBytes_[count] = static_cast<char>(byte);
        at_ += kHexMark.size() + kDigitsPerByte;
    }
    if (count > 0) return {.kind = RTFToken::Kind::bytes, .text = {hexBytes_.data(), count}};
    at_ += kHexMark.size();
    if (byteValue(rtf_, at_) == 0) at_ += kDigitsPerByte;
    return {.kind = RTFToken::Kind::symbol, .text = "'"};
}

RTFToken RTFTokenizer::wordToken() noexcept {
    const std::size_t from = at_;
    while (ASCII::isLetter(peek(rtf_, at_))) ++at_;
    RTFToken word = {.kind = RTFToken::Kind::word, .text = Scan::between(rtf_, from, at_)};
    readNumber(word);
    if (peek(rtf_, at_) == ' ') ++at_;
    if (word.text == "bin" && word.number > 0)
        at_ += std::min(rtf_.size() - at_, static_cast<std::size_t>(word.number));
    return word;
}

/// Numbers too large for their type become the largest.
void RTFTokenizer::readNumber(RTFToken& word) noexcept {
    constexpr std::int64_t kLimit = std::numeric_limits<int>::max();
    const bool isNegative = peek(rtf_, at_) == '-';
    std::size_t at = at_ + (isNegative ? 1 : 0);
    if (!ASCII::isDigit(peek(rtf_, at))) return;
    std::int64_t number = 0;
    for (; ASCII::isDigit(peek(rtf_, at)); ++at) number = std::min(number * 10 + (rtf_[at] - '0'), kLimit);
    word.number = static_cast<int>(isNegative ? -number : number);
    word.hasNumber = true;
    at_ = at;
}

}  // namespace ravlin
