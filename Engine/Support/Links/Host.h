#pragma once

#include "Engine/Support/Scan.h"

#include <cstddef>
#include <string_view>

/// Hosts in free text: labels between dots, the last of them a top-level domain.
namespace ravlin::Links {

/// The result of reading a host of two or more labels.
struct Host {
    std::size_t end = Scan::kNone;  // kNone if not a host: no top-level domain, or part of a mail address
    std::size_t readEnd = 0;        // the end of what was read as labels
};

/// The host of ASCII letters, digits and hyphens that starts at byte `begin`.
///     asciiHost("see a.com.", 4)  ->  end 9        asciiHost("e.g. this", 0)  ->  none
Host asciiHost(std::string_view text, std::size_t begin);

/// The same, but labels may have underscores and letters of all scripts, and may be joined by a full stop U+3002. If
/// text in a script without spaces follows the top-level domain, the host ends before it.
Host internationalHost(std::string_view text, std::size_t begin);

/// Whether the labels that start at byte `begin` end at byte `at`, with a full stop U+3002, which browsers take for a
/// ".", and another host directly after them: then the two are one.
bool isJoinedAt(std::string_view text, std::size_t begin, std::size_t at);

/// Whether a host without a scheme may start at byte `at`: not in the middle of a name, path, address or assignment.
bool mayStartHost(std::string_view text, std::size_t at) noexcept;

/// Stricter, since there is no "www." to show that this is a host.
bool mayStartBareHost(std::string_view text, std::size_t at) noexcept;

/// Whether a URL continues at byte `at`, after its host.
bool goesOnAfterHost(std::string_view text, std::size_t at) noexcept;

/// Whether what follows the host of bytes [`begin`, `end`) may lead to a query.
bool mayPrecedeQuery(std::string_view text, std::size_t begin, std::size_t end);

/// Whether a URL of any kind that people recognise without a scheme starts at byte `at`.
bool startsURLWithoutScheme(std::string_view text, std::size_t at);

/// The host, port included, in the part of a URL after its "://".
///     hostOf("user@a.test:80/x")  ->  "a.test:80"
std::string_view hostOf(std::string_view rest) noexcept;

}  // namespace ravlin::Links
