#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Slow and plain versions of what the engine does fast, built on ICU's own services.
namespace ravlin::Oracle {

/// The user-perceived characters of `text`, by ICU's root character iterator.
std::vector<std::string> characters(std::string_view text);

/// The code points of `text`, which is well-formed.
std::vector<char32_t> scalars(std::string_view text);

std::string utf8(std::span<const char32_t> scalars);
std::string utf8(char32_t scalar);

/// Passes every code point that can be in a text to `check`, with its UTF-8.
template <typename Check>
void forEveryScalar(Check check) {
    constexpr char32_t kLastScalar = 0x10FFFF;
    for (char32_t scalar = 0; scalar <= kLastScalar; ++scalar) {
        const bool isSurrogate = scalar >= 0xD800 && scalar <= 0xDFFF;
        if (!isSurrogate) check(scalar, utf8(scalar));
    }
}

/// Whole-text case mapping by ICU.
std::string lowerCased(std::string_view text);
std::string upperCased(std::string_view text);

/// One code point mapped to title case by ICU.
std::string titleCased(char32_t scalar);

/// Every occurrence of `from` that begins and ends at whole characters, as ICU's iterator finds them, replaced by `to`;
/// the point between CR and LF counts as such an end.
std::string replaceAll(std::string_view text, std::string_view from, std::string_view to);

}  // namespace ravlin::Oracle
