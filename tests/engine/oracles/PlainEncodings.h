#pragma once

#include "Engine/Support/Characters/Unicode.h"
#include "tests/engine/oracles/Oracle.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

/// The decoders again, slow and plain: step by step, as they are described.
namespace ravlin::tests {

/// The characters of `text` as the engine sees them.
inline std::vector<std::string> engineCharacters(std::string_view text) {
    std::vector<std::string> characters;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = Unicode::characterEnd(text, at);
        characters.emplace_back(text.substr(at, end - at));
        at = end;
    }
    return characters;
}

inline std::string plainBackslashEscape(const std::vector<std::string>& characters) {
    std::string result;
    for (const std::string& character : characters) {
        if (character == "\\")
            result += "\\\\";
        else if (character == "\n")
            result += "\\n";
        else if (character == "\t")
            result += "\\t";
        else if (character == "\r")
            result += "\\r";
        else if (character == "\"")
            result += "\\\"";
        else if (character == "\b")
            result += "\\b";
        else if (character == "\f")
            result += "\\f";
        else if (character == std::string(1, '\0'))
            result += "\\0";
        else
            result += character;
    }
    return result;
}

inline std::string plainBackslashUnescape(const std::vector<std::string>& characters) {
    const std::string letters = "ntr\"\\'bf0";
    const std::string meanings("\n\t\r\"\\'\b\f\0", 9);
    std::string result;
    for (std::size_t i = 0; i < characters.size(); ++i) {
        const std::string next = i + 1 < characters.size() ? characters[i + 1] : "";
        const std::size_t letter = next.size() == 1 ? letters.find(next) : std::string::npos;
        if (characters[i] == "\\" && letter != std::string::npos) {
            result += meanings[letter];
            ++i;
        } else {
            result += characters[i];
        }
    }
    return result;
}

/// `bytes` if they are valid text, otherwise `text`.
inline std::string textOr(const std::string& bytes, std::string_view text) {
    return Unicode::isValidUTF8(bytes) ? bytes : std::string(text);
}

inline std::string plainHexDecode(std::string_view text) {
    std::string lowered(text);
    for (char& byte : lowered) byte = byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte + 32) : byte;
    std::string withoutPrefixes;
    for (std::size_t at = 0; at < lowered.size();) {
        const bool isPrefix = lowered.compare(at, 2, "0x") == 0;
        if (!isPrefix) withoutPrefixes += lowered[at];
        at += isPrefix ? 2 : 1;
    }
    std::string digits;
    for (std::size_t at = 0; at < withoutPrefixes.size();) {
        const Unicode::Scalar scalar = Unicode::decode(withoutPrefixes, at);
        if (!Unicode::isWhitespaceOrNewline(scalar.value)) digits += withoutPrefixes.substr(at, scalar.byteSize);
        at += scalar.byteSize;
    }
    if (digits.empty() || digits.size() % 2 != 0) return std::string(text);
    if (digits.find_first_not_of("0123456789abcdef") != std::string::npos) return std::string(text);
    std::string bytes;
    for (std::size_t at = 0; at < digits.size(); at += 2)
        bytes += static_cast<char>(std::strtol(digits.substr(at, 2).c_str(), nullptr, 16));
    return textOr(bytes, text);
}

/// The bytes that `digits` encode, bit by bit; `isValid` becomes false if they are not Base64.
inline std::string plainBase64Bytes(std::string digits, bool& isValid) {
    const std::string alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::replace(digits.begin(), digits.end(), '-', '+');
    std::replace(digits.begin(), digits.end(), '_', '/');
    isValid = digits.size() % 4 == 0;
    for (int padding = 0; padding < 2 && digits.ends_with('='); ++padding) digits.pop_back();
    isValid = isValid && digits.find_first_not_of(alphabet) == std::string::npos && digits.size() % 4 != 1;
    if (!isValid) return {};
    std::string bytes;
    unsigned bits = 0;
    unsigned count = 0;
    for (const char digit : digits) {
        bits = bits * 64 + static_cast<unsigned>(alphabet.find(digit));
        count += 6;
        if (count < 8) continue;
        count -= 8;
        bytes += static_cast<char>(bits >> count);
        bits &= (1U << count) - 1;
    }
    return bytes;
}

inline std::string plainBase64Decode(std::string_view text) {
    bool isValid = false;
    const std::string digits(Unicode::trimWhitespacesAndNewlines(text));
    const std::string bytes = plainBase64Bytes(digits, isValid);
    return isValid && !digits.empty() ? textOr(bytes, text) : std::string(text);
}

/// Pluses in whole characters first, then escapes, then the check.
inline std::string plainURLDecode(const std::string& text) {
    const std::string spaced = Oracle::replaceAll(text, "+", " ");
    std::string bytes;
    for (std::size_t at = 0; at < spaced.size(); ++at) {
        if (spaced[at] != '%') {
            bytes += spaced[at];
            continue;
        }
        const std::string digits = spaced.substr(at + 1, 2);
        if (digits.size() != 2 || digits.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos) return text;
        bytes += static_cast<char>(std::stoi(digits, nullptr, 16));
        at += 2;
    }
    return textOr(bytes, text);
}

}  // namespace ravlin::tests
