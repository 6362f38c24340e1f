#pragma once

#include "Engine/Support/NonCopyable.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace ravlin {

/// A piece of rich text.
struct RTFToken {
    enum class Kind : std::uint8_t {
        end,  // of the data
        groupStart,
        groupEnd,
        bytes,   // of the document's text, in some code page: literal, escaped or in hexadecimal
        word,    // \name, \name5
        symbol,  // \ and one character that is not a letter
    };

    Kind kind = Kind::end;
    std::string_view text = {};  // the bytes, the name of the word, or the symbol's character
    int number = 0;
    bool hasNumber = false;
};

/// Cuts rich text into tokens. Line ends and NULs between them, and the binary data after \bin, are left out.
class RTFTokenizer : NonCopyable {
public:
    explicit RTFTokenizer(std::string_view rtf) noexcept : rtf_(rtf) {}

    /// The next token; its views are valid until the next call. At the end, every call returns `end`.
    RTFToken next() noexcept;

private:
    RTFToken bytesToken() noexcept;
    RTFToken escapedToken() noexcept;
    RTFToken wordToken() noexcept;
    RTFToken hexToken() noexcept;
    void readNumber(RTFToken& word) noexcept;

    std::string_view rtf_;
    std::size_t at_ = 0;
    std::array<char, 64> hexBytes_ = {};  // the bytes of a hexadecimal token
};

}  // namespace ravlin
