#pragma once

#include "Engine/Support/NonCopyable.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

struct UConverter;

namespace ravlin {

/// One of the character sets that documents older than Unicode are written in.
class CodePage {
public:
    /// Western European, the default.
    static const CodePage kWindows1252;

    /// The encoding of Adobe's Symbol font, in which "a" is an alpha and B7 a bullet.
    static const CodePage kSymbol;

    /// The code page with this Windows number, such as 65001 for UTF-8; nothing if it is unknown.
    static std::optional<CodePage> numbered(int number) noexcept;

    /// The code page of a font's character set, by its Windows number; nothing for one that implies no code page.
    ///     forCharset(204)  ->  code page 1251, Cyrillic
    static std::optional<CodePage> forCharset(int charset) noexcept;

    friend constexpr bool operator==(CodePage, CodePage) noexcept = default;

private:
    friend class CodePageDecoder;
    constexpr explicit CodePage(std::uint8_t index) noexcept : index_(index) {}

    std::uint8_t index_;  // in the table of converters
};

inline constexpr CodePage CodePage::kWindows1252{0};
inline constexpr CodePage CodePage::kSymbol{1};

/// Appends bytes in changing code pages to a text, as UTF-8. Bytes that are not part of a character become U+FFFD.
class CodePageDecoder : NonCopyable {
public:
    CodePageDecoder();
    ~CodePageDecoder();

    /// Appends `bytes`. The last ones are held back until the next call or `finish`: they may be the start of a
    /// character.
    void append(std::string& text, CodePage page, std::string_view bytes);

    /// Appends what is held back. Call it before anything else is appended to the same text.
    void finish(std::string& text) {
        if (isHolding_) convert(text, /*isLast=*/true);
    }

private:
    static constexpr std::size_t kHeldSize = 1024;  // bytes
    static constexpr std::size_t kPageLimit = 64;

    void hold(std::string& text, std::string_view bytes);
    void convert(std::string& text, bool isLast);
    UConverter* converter();

    struct Close {
        void operator()(UConverter* converter) const noexcept;
    };
    std::array<std::unique_ptr<UConverter, Close>, kPageLimit> converters_;  // opened when first asked for
    std::array<char, kHeldSize> held_;
    std::size_t heldSize_ = 0;
    bool isHolding_ = false;  // in `held_` or within the converter
    CodePage page_ = CodePage::kWindows1252;
};

}  // namespace ravlin
