#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

/// Fast byte-wise mapping and comparison, since most text is mostly ASCII.
namespace ravlin::ASCII {

constexpr char toLower(char byte) noexcept {
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte + ('a' - 'A')) : byte;
}

constexpr char toUpper(char byte) noexcept {
    return byte >= 'a' && byte <= 'z' ? static_cast<char>(byte - ('a' - 'A')) : byte;
}

constexpr bool isDigit(char byte) noexcept {
    return byte >= '0' && byte <= '9';
}

constexpr bool isLetter(char byte) noexcept {
    return toLower(byte) >= 'a' && toLower(byte) <= 'z';
}

constexpr bool isAlphanumeric(char byte) noexcept {
    return isDigit(byte) || isLetter(byte);
}

/// The space, the tab and what ends a line or a page.
constexpr bool isWhitespaceOrNewline(char byte) noexcept {
    return byte == ' ' || (byte >= '\t' && byte <= '\r');
}

/// Whether `word`, given in lower case, is at byte `at` of `text`, in any case.
constexpr bool hasWordAt(std::string_view text, std::size_t at, std::string_view word) noexcept {
    return at <= text.size() && text.size() - at >= word.size() &&
           std::equal(word.begin(), word.end(), text.begin() + static_cast<std::ptrdiff_t>(at),
                      [](char a, char b) { return a == toLower(b); });
}

/// Whether `text` is `word`, given in lower case, in any case.
constexpr bool isWord(std::string_view text, std::string_view word) noexcept {
    return text.size() == word.size() && hasWordAt(text, 0, word);
}

/// The end of the run of small letters that starts at byte `at` of ASCII text. It takes eight bytes at a time: a loop
/// that ends after a different number of bytes for every word is mispredicted every time.
inline std::size_t smallLettersEnd(std::string_view text, std::size_t at) noexcept {
    if constexpr (std::endian::native == std::endian::little) {
        constexpr std::uint64_t kOnes = 0x0101010101010101U;
        for (std::uint64_t bytes = 0; text.size() - at >= sizeof(bytes); at += sizeof(bytes)) {
            std::memcpy(&bytes, text.data() + at, sizeof(bytes));
            // The highest bit of each sum shows whether the byte is at least 'a', or beyond 'z'.
            const std::uint64_t letters = (bytes + kOnes * (0x80 - 'a')) & ~(bytes + kOnes * (0x80 - 'z' - 1));
            const std::uint64_t others = ~letters & (kOnes * 0x80);
            if (others != 0) return at + static_cast<std::size_t>(std::countr_zero(others)) / 8;
        }
    }
    while (at < text.size() && text[at] >= 'a' && text[at] <= 'z') ++at;
    return at;
}

/// Appends `map(byte)` for every byte in order, in pieces that are mapped while still in the processor's cache.
template <typename Map>
void appendMapped(std::string& result, std::string_view bytes, Map map) {
    constexpr std::size_t kPieceSize = 4096;
    while (!bytes.empty()) {
        const std::string_view piece = bytes.substr(0, kPieceSize);
        const std::size_t start = result.size();
        result += piece;
        char* const to = result.data() + start;
        for (std::size_t i = 0; i < piece.size(); ++i) to[i] = map(piece[i]);
        bytes.remove_prefix(piece.size());
    }
}

}  // namespace ravlin::ASCII
