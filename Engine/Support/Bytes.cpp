#include "Engine/Support/Bytes.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace ravlin::Bytes {
namespace {

constexpr unsigned byteAt(std::string_view bytes, std::size_t at) noexcept {
    return static_cast<unsigned char>(bytes[at]);
}

/// Calculates the digit instead of looking it up, so that the compiler can vectorise loops over bytes.
constexpr char hexDigit(unsigned value) noexcept {
    return static_cast<char>(value + (value < 10 ? '0' : 'a' - 10));
}

constexpr std::string_view kBase64Digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
static_assert(kBase64Digits.size() == 64);

/// The two digits for each 12-bit value: half as many look-ups as with single digits.
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

constexpr std::uint32_t kNoDigits = 0xFFFFFFFFU;

/// What each byte contributes to the 24 bits of its group as the first, second, third and fourth digit; `kNoDigits` if
/// it is not a digit.
constexpr auto kBase64Values = [] {
    std::array<std::array<std::uint32_t, 256>, 4> values = {};
    for (std::size_t place = 0; place < values.size(); ++place) {
        values[place].fill(kNoDigits);
        const auto shift = static_cast<std::uint32_t>(6 * (3 - place));
        for (std::uint32_t value = 0; value < kBase64Digits.size(); ++value)
            values[place][static_cast<unsigned char>(kBase64Digits[value])] = value << shift;
        values[place]['-'] = values[place]['+'];
        values[place]['_'] = values[place]['/'];
    }
    return values;
}();

/// The 24 bits of the four digits at `at`, or more than 24 bits if any is not a digit.
std::uint32_t base64Group(std::string_view text, std::size_t at) noexcept {
    return kBase64Values[0][byteAt(text, at)] | kBase64Values[1][byteAt(text, at + 1)] |
           kBase64Values[2][byteAt(text, at + 2)] | kBase64Values[3][byteAt(text, at + 3)];
}

constexpr std::array<char, 3> bytesOf(std::uint32_t group) noexcept {
    return {static_cast<char>(group >> 16U), static_cast<char>(group >> 8U), static_cast<char>(group)};
}

}  // namespace

std::string toHex(std::string_view bytes) {
    std::string result(2 * bytes.size(), '\0');
    char* const to = result.data();
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        to[2 * i] = hexDigit(byteAt(bytes, i) / 16);
        to[2 * i + 1] = hexDigit(byteAt(bytes, i) % 16);
    }
    return result;
}

std::string toBase64(std::string_view bytes) {
    std::string result((bytes.size() + 2) / 3 * 4, '=');
    char* to = result.data();
    std::size_t at = 0;
    for (; bytes.size() - at >= 3; at += 3) {
        const unsigned bits = (byteAt(bytes, at) << 16U) | (byteAt(bytes, at + 1) << 8U) | byteAt(bytes, at + 2);
        to = std::copy_n(kBase64Pairs[bits >> 12U].data(), 2, to);
        to = std::copy_n(kBase64Pairs[bits & 0xFFFU].data(), 2, to);
    }
    if (at < bytes.size()) std::copy_n(base64Tail(bytes.substr(at)).data(), 4, to);
    return result;
}

std::optional<std::string> fromBase64(std::string_view text, Padding padding) {
    if (text.empty()) return std::string();
    if (padding == Padding::required && text.size() % 4 != 0) return std::nullopt;

    // The last group is decoded with zeros in place of its padding.
    const std::size_t lastStart = (text.size() - 1) / 4 * 4;
    std::array<char, 4> last = {'=', '=', '=', '='};
    std::copy(text.begin() + static_cast<std::ptrdiff_t>(lastStart), text.end(), last.begin());
    const std::size_t paddingSize = last[3] != '=' ? 0 : last[2] != '=' ? 1 : 2;
    std::fill_n(last.rbegin(), paddingSize, 'A');

    std::string result(lastStart / 4 * 3 + 3 - paddingSize, '\0');
    char* to = result.data();
    for (std::size_t at = 0; at < lastStart; at += 4) {
        const std::uint32_t group = base64Group(text, at);
        if (group > 0xFFFFFFU) return std::nullopt;
        to = std::copy_n(bytesOf(group).data(), 3, to);
    }
    const std::uint32_t group = base64Group({last.data(), last.size()}, 0);
    if (group > 0xFFFFFFU) return std::nullopt;
    std::copy_n(bytesOf(group).data(), 3 - paddingSize, to);
    return result;
}

}  // namespace ravlin::Bytes
