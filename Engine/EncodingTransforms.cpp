#include "Engine/EncodingTransforms.h"

#include "Engine/Support/Replace.h"
#include "Engine/Support/Unicode.h"

#include <algorithm>
#include <array>
#include <optional>

namespace ravlin::TextTransforms {
namespace {

constexpr unsigned byteAt(std::string_view text, std::size_t at) noexcept {
    return static_cast<unsigned char>(text[at]);
}

// --- Base64 ----------------------------------------------------------------------------------------------------------

constexpr std::string_view kBase64Digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
static_assert(kBase64Digits.size() == 64);

/// The two digits of every 12 bits: half as many look-ups as with single digits.
constexpr auto kBase64Pairs = [] {
    std::array<std::array<char, 2>, 4096> pairs = {};
    for (std::size_t bits = 0; bits < pairs.size(); ++bits)
        pairs[bits] = {kBase64Digits[bits / 64], kBase64Digits[bits % 64]};
    return pairs;
}();

/// The last one or two bytes of a text as four digits, the missing ones padded.
std::array<char, 4> base64Tail(std::string_view bytes) {
    const unsigned bits = (byteAt(bytes, 0) << 16U) | (bytes.size() == 2 ? byteAt(bytes, 1) << 8U : 0U);
    const auto first = kBase64Pairs[bits >> 12U];
    const auto second = kBase64Pairs[bits & 0xFFFU];
    return {first[0], first[1], bytes.size() == 2 ? second[0] : '=', '='};
}

// --- Percent escapes -------------------------------------------------------------------------------------------------

/// The unreserved characters of RFC 3986, section 2.3.
constexpr auto kIsUnreserved = [] {
    std::array<bool, 256> table = {};
    for (const char c : std::string_view("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_.~"))
        table[static_cast<unsigned char>(c)] = true;
    return table;
}();

constexpr std::string_view kHexDigits = "0123456789ABCDEF";

constexpr bool isUnreserved(char byte) noexcept {
    return kIsUnreserved[static_cast<unsigned char>(byte)];
}

constexpr std::optional<unsigned> hexValue(char digit) noexcept {
    if (digit >= '0' && digit <= '9') return static_cast<unsigned>(digit - '0');
    if (digit >= 'A' && digit <= 'F') return static_cast<unsigned>(digit - 'A' + 10);
    if (digit >= 'a' && digit <= 'f') return static_cast<unsigned>(digit - 'a' + 10);
    return std::nullopt;
}

/// The byte that the escape at the start of `text`, which starts with "%", stands for.
std::optional<char> unescape(std::string_view text) noexcept {
    if (text.size() < 3) return std::nullopt;
    const std::optional<unsigned> high = hexValue(text[1]);
    const std::optional<unsigned> low = hexValue(text[2]);
    if (!high || !low) return std::nullopt;
    return static_cast<char>(static_cast<unsigned char>(*high * 16 + *low));
}

std::size_t plainRunEnd(std::string_view text, std::size_t from) noexcept {
    while (from < text.size() && text[from] != '%' && text[from] != '+') ++from;
    return from;
}

/// The bytes that `text` stands for, or nothing where an escape is broken.
std::optional<std::string> percentDecoded(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        if (text[at] == '+') {
            result += Replace::isWhole(text, at, 1) ? ' ' : '+';
            at += 1;
        } else if (text[at] != '%') {
            const std::size_t end = plainRunEnd(text, at);
            result += text.substr(at, end - at);
            at = end;
        } else {
            const std::optional<char> byte = unescape(text.substr(at));
            if (!byte) return std::nullopt;
            result += *byte;
            at += 3;
        }
    }
    return result;
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
    std::string result((text.size() + 2) / 3 * 4, '=');
    char* to = result.data();
    std::size_t at = 0;
    for (; text.size() - at >= 3; at += 3) {
        const unsigned bits = (byteAt(text, at) << 16U) | (byteAt(text, at + 1) << 8U) | byteAt(text, at + 2);
        to = std::copy_n(kBase64Pairs[bits >> 12U].data(), 2, to);
        to = std::copy_n(kBase64Pairs[bits & 0xFFFU].data(), 2, to);
    }
    if (at < text.size()) std::copy_n(base64Tail(text.substr(at)).data(), 4, to);
    return result;
}

std::string urlEncode(std::string_view text) {
    const auto kept = static_cast<std::size_t>(std::count_if(text.begin(), text.end(), isUnreserved));
    std::string result;
    result.reserve(kept + 3 * (text.size() - kept));
    for (const char byte : text) {
        if (isUnreserved(byte)) {
            result += byte;
            continue;
        }
        const auto bits = static_cast<unsigned char>(byte);
        const std::array<char, 3> escape = {'%', kHexDigits[bits / 16], kHexDigits[bits % 16]};
        result.append(escape.data(), escape.size());
    }
    return result;
}

std::string urlDecode(std::string_view text) {
    std::optional<std::string> decoded = percentDecoded(text);
    if (!decoded || !Unicode::isValidUTF8(*decoded)) return std::string(text);
    return *std::move(decoded);
}

std::string htmlEntitiesEncode(std::string_view text) {
    return Replace::each(text, kEntities);
}

}  // namespace ravlin::TextTransforms
