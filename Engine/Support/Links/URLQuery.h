#pragma once

#include <string>
#include <string_view>

namespace ravlin {

/// One item of a query, as written.
class QueryItem {
public:
    explicit constexpr QueryItem(std::string_view text) noexcept : text_(text) {}

    constexpr std::string_view text() const noexcept { return text_; }

    /// The part before the first "=", or everything.
    constexpr std::string_view rawName() const noexcept { return text_.substr(0, text_.find('=')); }

    /// Whether there is a value, which may be empty.
    constexpr bool hasValue() const noexcept { return text_.find('=') != std::string_view::npos; }

private:
    std::string_view text_;
};

/// The query of a URL as an ordered list of items: the part between the first "?" and the first "#", split at every
/// "&". Everything points into the URL, which is neither checked nor changed.
class URLQuery {
public:
    explicit URLQuery(std::string_view url) noexcept;

    /// Scheme, host and path.
    std::string_view head() const noexcept { return head_; }

    /// The "#" and what follows it.
    std::string_view fragment() const noexcept { return fragment_; }

    /// Whether there is an item. A "?" with nothing after it has none; "?&" has two.
    bool hasItems() const noexcept { return !items_.empty(); }

    /// Calls `visit` with every QueryItem in order.
    template <typename Visit>
    void forEachItem(Visit visit) const {
        if (!hasItems()) return;
        std::string_view rest = items_;
        for (std::size_t end = rest.find('&'); end != std::string_view::npos; end = rest.find('&')) {
            visit(QueryItem(rest.substr(0, end)));
            rest.remove_prefix(end + 1);
        }
        visit(QueryItem(rest));
    }

    /// The name with its percent escapes decoded; "" if they are broken or do not decode to UTF-8.
    ///     decodedName("utm%5Fsource")  ->  "utm_source"
    static std::string decodedName(std::string_view rawName);

private:
    std::string_view head_;
    std::string_view items_;
    std::string_view fragment_;
};

}  // namespace ravlin
