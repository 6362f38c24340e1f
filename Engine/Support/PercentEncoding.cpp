#include "Engine/Support/PercentEncoding.h"

#include "Engine/Support/Bytes.h"
#include "Engine/Support/Characters/Unicode.h"
#include "Engine/Support/Replace.h"
#include "Engine/Support/Scan.h"

#include <algorithm>
#include <array>

namespace ravlin::PercentEncoding {
namespace {

constexpr std::string_view kHexDigits = "0123456789ABCDEF";

/// The unreserved characters of RFC 3986, section 2.3.
constexpr auto kIsUnreserved = [] {
    std::array<bool, 256> table = {};
    for (const char c : std::string_view("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_.~"))
        table[static_cast<unsigned char>(c)] = true;
    return table;
}();

constexpr bool isUnreserved(char byte) noexcept {
    return kIsUnreserved[static_cast<unsigned char>(byte)];
}

std::size_t plainRunEnd(std::string_view text, std::size_t from) noexcept {
    while (from < text.size() && text[from] != '%' && text[from] != '+') ++from;
    return from;
}

/// The bytes that `text` stands for, or nothing if an escape is broken.
std::optional<std::string> bytesOf(std::string_view text) {
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
            const std::optional<unsigned> byte = Bytes::hexByte(Scan::peek(text, at + 1), Scan::peek(text, at + 2));
            if (!byte) return std::nullopt;
            result += static_cast<char>(*byte);
            at += 3;
        }
    }
    return result;
}

}  // namespace

std::string encode(std::string_view text) {
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

std::optional<std::string> decode(std::string_view text) {
    std::optional<std::string> bytes = bytesOf(text);
    if (bytes && !Unicode::isValidUTF8(*bytes)) bytes.reset();
    return bytes;
}

}  // namespace ravlin::PercentEncoding
