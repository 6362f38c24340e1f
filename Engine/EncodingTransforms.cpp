#include "Engine/EncodingTransforms.h"

#include "Engine/JSONReformatter.h"
#include "Engine/Support/Bytes.h"
#include "Engine/Support/Characters/ASCII.h"
#include "Engine/Support/Characters/Unicode.h"
#include "Engine/Support/PercentEncoding.h"
#include "Engine/Support/Replace.h"
#include "Engine/Support/Scan.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>

namespace ravlin::TextTransforms {
namespace {

// --- Backslash escapes -----------------------------------------------------------------------------------------------

/// The letter after the backslash in each character's escape, NUL for characters that are not escaped.
constexpr auto kEscapeLetters = [] {
    std::array<char, 256> letters = {};
    letters['\\'] = '\\';
    letters['\n'] = 'n';
    letters['\t'] = 't';
    letters['\r'] = 'r';
    letters['"'] = '"';
    letters['\b'] = 'b';
    letters['\f'] = 'f';
    letters['\0'] = '0';
    return letters;
}();

/// The character that a byte after a backslash stands for, nothing for bytes that no escape has. Escaped single quotes
/// are read, though never written: other languages escape them.
constexpr auto kEscapedCharacters = [] {
    std::array<std::optional<char>, 256> characters = {};
    for (std::size_t byte = 0; byte < kEscapeLetters.size(); ++byte)
        if (const char letter = kEscapeLetters[byte]; letter != '\0')
            characters[static_cast<unsigned char>(letter)] = static_cast<char>(byte);
    characters['\''] = '\'';
    return characters;
}();

constexpr char escapeLetter(char byte) noexcept {
    return kEscapeLetters[static_cast<unsigned char>(byte)];
}

/// Whether the ASCII byte at `at` is a user-perceived character: it has no accent and is not half of CR LF.
bool isCharacter(std::string_view text, std::size_t at) noexcept {
    const char previous = at > 0 ? text[at - 1] : '\0';
    const char next = Scan::peek(text, at + 1);
    if ((text[at] == '\r' && next == '\n') || (text[at] == '\n' && previous == '\r')) return false;
    return (Unicode::isASCII(previous) && Unicode::isASCII(next)) || Replace::isWhole(text, at, 1);
}

/// The first character at or after `at` that must be escaped, or the end.
std::size_t findEscaped(std::string_view text, std::size_t at) noexcept {
    while (at < text.size() && (escapeLetter(text[at]) == '\0' || !isCharacter(text, at))) ++at;
    return at;
}

std::size_t countEscaped(std::string_view text) noexcept {
    std::size_t count = 0;
    for (std::size_t at = findEscaped(text, 0); at < text.size(); at = findEscaped(text, at + 1)) ++count;
    return count;
}

/// The character that the escape at `at` stands for, or nothing if the backslash there starts no escape.
std::optional<char> escapedCharacter(std::string_view text, std::size_t at) noexcept {
    if (at + 1 == text.size() || !isCharacter(text, at) || !isCharacter(text, at + 1)) return std::nullopt;
    return kEscapedCharacters[static_cast<unsigned char>(text[at + 1])];
}

// --- Hexadecimal digits ----------------------------------------------------------------------------------------------

bool isHexPrefix(std::string_view text, std::size_t at) noexcept {
    return text[at] == '0' && (Scan::peek(text, at + 1) == 'x' || Scan::peek(text, at + 1) == 'X');
}

/// The first byte at or after `at` that is not white space or a prefix "0x".
std::size_t skipToHexDigit(std::string_view text, std::size_t at) noexcept {
    for (;;) {
        at = Scan::skipWhiteSpace(text, at);
        if (at == text.size() || !isHexPrefix(text, at)) return at;
        at += 2;
    }
}

/// Appends the bytes for the pairs of digits from `at` on that have nothing between them; returns where they end.
std::size_t appendAdjacentPairs(std::string& bytes, std::string_view text, std::size_t at) {
    for (; at + 1 < text.size(); at += 2) {
        const std::optional<unsigned> byte = Bytes::hexByte(text[at], text[at + 1]);
        // The second digit may be the "0" of a prefix within a pair.
        if (!byte || isHexPrefix(text, at + 1)) break;
        bytes += static_cast<char>(*byte);
    }
    return at;
}

/// The bytes that pairs of digits stand for, or nothing if there is anything else or half a pair.
std::optional<std::string> hexBytes(std::string_view text) {
    std::string bytes;
    bytes.reserve(text.size() / 2);
    for (std::size_t at = 0;; ++at) {
        at = skipToHexDigit(text, appendAdjacentPairs(bytes, text, at));
        if (at == text.size()) return bytes;
        const char high = text[at];
        at = skipToHexDigit(text, at + 1);
        const std::optional<unsigned> byte = Bytes::hexByte(high, Scan::peek(text, at));
        if (!byte) return std::nullopt;
        bytes += static_cast<char>(*byte);
    }
}

// --- Letters ---------------------------------------------------------------------------------------------------------

// Without branches or remainders, so that many letters are rotated at once.
constexpr char rotated(char byte) noexcept {
    const char lower = static_cast<char>(byte | 0x20);
    const int distance = lower < 'n' ? 13 : -13;
    return static_cast<char>(byte + (lower >= 'a' && lower <= 'z' ? distance : 0));
}

// --- Tokens ----------------------------------------------------------------------------------------------------------

/// The two parts of a token that are shown; the signature is not.
struct Token {
    std::string_view header;
    std::string_view payload;
};

/// `text` as a token, or nothing if it does not have two or three parts between dots.
std::optional<Token> tokenIn(std::string_view text) noexcept {
    std::array<std::string_view, 3> parts = {};
    std::size_t count = 0;
    std::size_t start = 0;
    for (std::size_t dot = text.find('.'); dot != std::string_view::npos; dot = text.find('.', dot + 1)) {
        if (!Replace::isWhole(text, dot, 1)) continue;
        if (count == 2) return std::nullopt;
        parts[count++] = Scan::between(text, start, dot);
        start = dot + 1;
    }
    if (count == 0) return std::nullopt;
    parts[count] = text.substr(start);
    return Token{.header = parts[0], .payload = parts[1]};
}

/// The decoded text of one part of a token, indented if it is JSON. Tokens omit the padding.
std::optional<std::string> b64urlToJSON(std::string_view part) {
    const std::optional<std::string> bytes = Bytes::fromBase64(part, Bytes::Padding::optional);
    if (!bytes || !Unicode::isValidUTF8(*bytes)) return std::nullopt;
    return jsonReformat(*bytes, /*pretty=*/true);
}

// --- Entities --------------------------------------------------------------------------------------------------------

constexpr Replace::Table kEntities(std::to_array<Replace::Literal>({
    {"&", "&amp;"},
    {"<", "&lt;"},
    {">", "&gt;"},
    {"\"", "&quot;"},
    {"'", "&#39;"},
}));

}  // namespace

std::string base64Encode(std::string_view text) {
    return Bytes::toBase64(text);
}

std::string base64Decode(std::string_view text) {
    const std::string_view trimmed = Unicode::trimWhitespacesAndNewlines(text);
    std::optional<std::string> decoded = Bytes::fromBase64(trimmed);
    if (trimmed.empty() || !decoded || !Unicode::isValidUTF8(*decoded)) return std::string(text);
    return *std::move(decoded);
}

std::string urlEncode(std::string_view text) {
    return PercentEncoding::encode(text);
}

std::string urlDecode(std::string_view text) {
    std::optional<std::string> decoded = PercentEncoding::decode(text);
    return decoded ? *std::move(decoded) : std::string(text);
}

std::string htmlEntitiesEncode(std::string_view text) {
    return Replace::each(text, kEntities);
}

std::string backslashEscape(std::string_view text) {
    std::string result;
    result.reserve(text.size() + countEscaped(text));
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = findEscaped(text, at);
        result += Scan::between(text, at, end);
        at = end;
        if (at == text.size()) break;
        const std::array<char, 2> escape = {'\\', escapeLetter(text[at++])};
        result.append(escape.data(), escape.size());
    }
    return result;
}

std::string backslashUnescape(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    std::size_t copied = 0;
    for (std::size_t at = text.find('\\'); at != std::string_view::npos; at = text.find('\\', at)) {
        const std::optional<char> character = escapedCharacter(text, at);
        if (!character) {
            ++at;
            continue;
        }
        result += Scan::between(text, copied, at);
        result += *character;
        at += 2;
        copied = at;
    }
    result += text.substr(copied);
    return result;
}

std::string hexEncode(std::string_view text) {
    return Bytes::toHex(text);
}

std::string hexDecode(std::string_view text) {
    std::optional<std::string> bytes = hexBytes(text);
    if (!bytes || bytes->empty() || !Unicode::isValidUTF8(*bytes)) return std::string(text);
    return *std::move(bytes);
}

std::string jwtDecode(std::string_view text) {
    const std::optional<Token> token = tokenIn(Unicode::trimWhitespacesAndNewlines(text));
    if (!token) return std::string(text);
    const std::optional<std::string> header = b64urlToJSON(token->header);
    std::optional<std::string> payload = header ? b64urlToJSON(token->payload) : std::nullopt;
    if (!payload) return std::string(text);
    // The payload usually has room for more, and this way it is not copied.
    payload->insert(0, "// Header\n" + *header + "\n\n// Payload\n");
    return *std::move(payload);
}

std::string rot13(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    ASCII::appendMapped(result, text, rotated);
    return result;
}

}  // namespace ravlin::TextTransforms
