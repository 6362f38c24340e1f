#pragma once

#include "Views/GroupedTransforms.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <vector>

namespace ravlin {

/// Where the list's headers and rows are, from the list's top, in logical pixels, and everything that follows from
/// that: the pinned header, what is in view, and where to scroll. It draws nothing.
class ListGeometry {
public:
    struct Header {
        TransformCategory category;
        int top = 0;
        int sectionBottom = 0;  // the bottom of the section's last row
    };
    struct Row {
        TextTransform transform;
        int top = 0;
        int height = 0;
        int bottom() const { return top + height; }
    };
    struct PinnedHeader {
        TransformCategory category;
        int offset = 0;  // from the view's top; negative while the section's end pushes the header out
        friend bool operator==(const PinnedHeader&, const PinnedHeader&) = default;
    };

    ListGeometry() = default;
    ListGeometry(std::span<const TransformGroup> groups, int headerHeight,
                 const std::function<int(TextTransform)>& rowHeight);

    /// The whole list's height, the padding at its bottom included; 0 without groups.
    int height() const { return height_; }
    std::span<const Header> headers() const { return headers_; }
    std::span<const Row> rows() const { return rows_; }

    /// The rows with at least one pixel between `top` and `bottom`.
    std::span<const Row> rowsBetween(int top, int bottom) const;

    /// The position of `transform` among the rows, or nothing if it is not listed.
    std::optional<std::size_t> indexOf(TextTransform transform) const;

    /// The header that stays at the top of a view scrolled by `scroll`; nothing in the gap between two sections.
    std::optional<PinnedHeader> pinnedHeader(int scroll) const;

    /// The scroll position nearest to `scroll` at which the row `index` is wholly in a view of `viewHeight`, and not
    /// under the pinned header. A section's first row brings its header along.
    int scrollToShow(std::size_t index, int scroll, int viewHeight) const;

    /// The row that is one page down (or up) from the row `index` in a view of `viewHeight`: at least one row away, and
    /// never beyond the ends.
    std::size_t pageDownFrom(std::size_t index, int viewHeight) const;
    std::size_t pageUpFrom(std::size_t index, int viewHeight) const;

private:
    int pageHeight(int viewHeight) const;

    std::vector<Header> headers_;
    std::vector<Row> rows_;
    int headerHeight_ = 0;
    int height_ = 0;
};

}  // namespace ravlin
