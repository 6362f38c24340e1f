#pragma once

#include <algorithm>
#include <array>
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

/// Appends `map(byte)` for every byte in order, by way of a small buffer that stays in the processor's cache.
template <typename Map>
void appendMapped(std::string& result, std::string_view bytes, Map map) {
    std::array<char, 4096> buffer;  // NOLINT(cppcoreguidelines-pro-type-member-init): written before it is read
    while (!bytes.empty()) {
        const std::size_t size = std::min(bytes.size(), buffer.size());
        for (std::size_t i = 0; i < size; ++i) buffer[i] = map(bytes[i]);
        result.append(buffer.data(), size);
        bytes.remove_prefix(size);
    }
}

}  // namespace ravlin::ASCII
