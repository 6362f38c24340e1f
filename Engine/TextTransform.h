#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace ravlin {

/// One of the six groups of the panel, in menu order. It behaves like its `Case`: it compares and switches like one.
class TransformCategory {
public:
    enum Case : std::uint8_t { clean, convert, caseGroup, lines, spacing, encode };

    constexpr TransformCategory(Case value) noexcept : case_(value) {}  // NOLINT(google-explicit-constructor)
    constexpr operator Case() const noexcept { return case_; }          // NOLINT(google-explicit-constructor)

    /// The six categories in menu order.
    static std::span<const TransformCategory> allCases() noexcept;

    /// The category whose raw value equals `rawValue` byte for byte, or nothing.
    static std::optional<TransformCategory> fromRawValue(std::string_view rawValue) noexcept;

    /// The display string, for example "Encode / Dev". `id()` and `title()` are the same string.
    std::string_view rawValue() const noexcept;
    std::string_view id() const noexcept { return rawValue(); }
    std::string_view title() const noexcept { return rawValue(); }

private:
    Case case_;
};

/// One of the transforms of the catalogue, in catalogue order. It behaves like its `Case`: it compares and switches
/// like one, so a `switch (transform)` without a `default` that misses a case is an error.
class TextTransform {
public:
    enum Case : std::uint8_t {
        stripTracking,
        stripFormatting,
        removeInvisibles,
        stripHTML,
        htmlToMarkdown,
        markdownToHTML,
        jsonPretty,
        jsonMinify,
        upperCase,
        lowerCase,
        titleCase,
        sentenceCase,
        capitalizeWords,
        camelCase,
        pascalCase,
        snakeCase,
        kebabCase,
        constantCase,
        slugify,
        bulletList,
        numberedList,
        sortLinesAsc,
        sortLinesDesc,
        reverseLines,
        shuffleLines,
        removeDuplicateLines,
        removeEmptyLines,
        trimEachLine,
        numberLines,
        joinLines,
        quoteLines,
        straightenQuotes,
        smartQuotes,
        collapseSpaces,
        removeAllSpaces,
        tabsToSpaces,
        spacesToTabs,
        normalizeDashes,
        reverseCharacters,
        base64Encode,
        base64Decode,
        urlEncode,
        urlDecode,
        htmlEntitiesEncode,
        htmlEntitiesDecode,
        backslashEscape,
        backslashUnescape,
        hexEncode,
        hexDecode,
        md5,
        sha1,
        sha256,
        jwtDecode,
        rot13,
    };

    constexpr TextTransform(Case value) noexcept : case_(value) {}  // NOLINT(google-explicit-constructor)
    constexpr operator Case() const noexcept { return case_; }      // NOLINT(google-explicit-constructor)

    /// All transforms in catalogue order, which is the order of the panel's rows within a category.
    static std::span<const TextTransform> allCases() noexcept;

    /// The transform whose identifier equals `rawValue` byte for byte, or nothing: "md5" is one, "MD5" and " md5" are
    /// not.
    static std::optional<TextTransform> fromRawValue(std::string_view rawValue) noexcept;

    /// The stable identifier: the case's own name, for example "jsonPretty".
    std::string_view rawValue() const noexcept;
    std::string_view id() const noexcept { return rawValue(); }

    /// The row's label in the panel, and the transform's name in the status line (UTF-8).
    std::string_view title() const noexcept;

    /// The one-line explanation under the title (UTF-8).
    std::string_view subtitle() const noexcept;

    /// The group that lists the transform.
    TransformCategory category() const noexcept;

    /// Runs the transform on `text`; the same as `TextTransforms::apply(*this, text)`.
    std::string apply(std::string_view text) const;

private:
    Case case_;
};

}  // namespace ravlin

template <>
struct std::hash<ravlin::TransformCategory> {
    std::size_t operator()(ravlin::TransformCategory category) const noexcept { return category; }
};

template <>
struct std::hash<ravlin::TextTransform> {
    std::size_t operator()(ravlin::TextTransform transform) const noexcept { return transform; }
};
