#pragma once

#include "Engine/Support/Characters/Unicode.h"

#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <span>
#include <string>
#include <string_view>

/// What the fuzz targets share.
namespace ravlin::Fuzz {

inline std::string_view text(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

/// The same bytes as valid text: every ill-formed sequence becomes U+FFFD.
inline std::string validText(std::string_view bytes) {
    std::string result;
    for (std::size_t at = 0; at < bytes.size();) {
        const Unicode::Scalar scalar = Unicode::decode(bytes, at);
        Unicode::append(result, scalar.value);
        at += scalar.byteSize;
    }
    return result;
}

/// A text of tokens, one for each byte.
inline std::string tokens(std::string_view bytes, std::span<const std::string_view> alphabet) {
    std::string result;
    for (const char byte : bytes) result += alphabet[static_cast<unsigned char>(byte) % alphabet.size()];
    return result;
}

/// Ends the run, which libFuzzer then reports with its input, unless `isTrue`.
inline void expect(bool isTrue, const char* what) {
    if (isTrue) return;
    std::cerr << "broken: " << what << '\n';
    std::abort();
}

}  // namespace ravlin::Fuzz
