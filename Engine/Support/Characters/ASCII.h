#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Mapping ASCII bytes one to one, which most of most texts is.
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

constexpr bool isAlphanumeric(char byte) noexcept {
    return isDigit(byte) || (toLower(byte) >= 'a' && toLower(byte) <= 'z');
}

/// Appends `map(byte)` for every byte in order: a piece is copied and mapped while the processor's cache holds it.
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
