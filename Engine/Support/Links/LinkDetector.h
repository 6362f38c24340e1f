#pragma once

#include "Engine/Support/Links/LinkWalk.h"

#include <cstddef>
#include <optional>
#include <string_view>

namespace ravlin {

/// A web link: bytes [`begin`, `end`) of a text.
struct Link {
    std::size_t begin = 0;
    std::size_t end = 0;
    bool hasScheme = true;  // "http://" or "https://", in any case
    /// Whether the link is complete and literal. It is not if its "&" are written as "&amp;", or if what follows is a
    /// part of it after all: an escape as in "?a=1\u0026b=2", a placeholder as in "?a={{ a }}".
    bool isWhole = true;
};

/// Finds the web links in free text, from left to right and in linear time.
///
/// A link is
/// - "http://" or "https://" and a host of any kind, or
/// - a host that starts with "www." and ends with a top-level domain, or
/// - another ASCII host that ends with a top-level domain, if there is a query with a named value: without one there is
///   nothing to clean, and too many names of files, packages and companies look like hosts. If the query follows the
///   host directly, only a few domains are trusted.
///
/// Anything around a link is left out: brackets, quotation marks, sentence punctuation, Markdown marks, character
/// references, a second link joined to it by a comma. E-mail addresses and links with other schemes are skipped.
///
/// Where a link ends is ultimately a guess. A wrong one does harm only if it makes a removed query item take foreign
/// text with it, so the detector asks which items will be removed, and ends links more readily there.
class LinkDetector {
public:
    explicit LinkDetector(std::string_view text, Links::IsRemoved isRemoved) noexcept
        : text_(text), isRemoved_(isRemoved) {}

    /// The next link, after all those found before.
    std::optional<Link> next();

private:
    std::optional<Link> linkAt(std::size_t trigger);
    std::optional<Link> linkWithScheme(std::size_t colon);
    std::optional<Link> linkWithWWW(std::size_t lastW);
    std::optional<Link> linkWithQuery(std::size_t question);
    std::size_t bareHostBefore(std::size_t question) const;
    std::size_t runBegin(std::size_t at) const noexcept;
    bool skipMail(std::size_t colon);
    Link walkFrom(std::size_t begin, std::size_t from, bool hasScheme);

    std::string_view text_;
    Links::IsRemoved isRemoved_;
    std::size_t at_ = 0;     // where the search continues
    std::size_t floor_ = 0;  // no further link begins before this byte
};

}  // namespace ravlin
