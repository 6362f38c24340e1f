#include "Views/ListGeometry.h"

#include "Views/Metrics.h"

#include <algorithm>

namespace ravlin {

ListGeometry::ListGeometry(std::span<const TransformGroup> groups, int headerHeight,
                           const std::function<int(TextTransform)>& rowHeight)
    : headerHeight_(headerHeight) {
    int y = 0;
    for (const TransformGroup& group : groups) {
        headers_.push_back({.category = group.category, .top = y});
        y += headerHeight + Metrics::kListSpacing;
        for (const TextTransform transform : group.items) {
            rows_.push_back({.transform = transform, .top = y, .height = rowHeight(transform)});
            y = rows_.back().bottom() + Metrics::kListSpacing;
        }
        headers_.back().sectionBottom = y - Metrics::kListSpacing;
    }
    if (!headers_.empty()) height_ = headers_.back().sectionBottom + Metrics::kListPaddingBottom;
}

std::span<const ListGeometry::Row> ListGeometry::rowsBetween(int top, int bottom) const {
    const auto first = std::ranges::partition_point(rows_, [top](const Row& row) { return row.bottom() <= top; });
    const auto last = std::partition_point(first, rows_.end(), [bottom](const Row& row) { return row.top < bottom; });
    return {first, last};
}

std::optional<std::size_t> ListGeometry::indexOf(TextTransform transform) const {
    const auto found = std::ranges::find(rows_, transform, &Row::transform);
    if (found == rows_.end()) return std::nullopt;
    return static_cast<std::size_t>(found - rows_.begin());
}

std::optional<ListGeometry::PinnedHeader> ListGeometry::pinnedHeader(int scroll) const {
    const auto next =
        std::ranges::partition_point(headers_, [scroll](const Header& each) { return each.top <= scroll; });
    if (next == headers_.begin()) return std::nullopt;
    const Header& header = *std::prev(next);
    const int offset = std::min(0, header.sectionBottom - scroll - headerHeight_);
    if (offset <= -headerHeight_) return std::nullopt;
    return PinnedHeader{.category = header.category, .offset = offset};
}

int ListGeometry::scrollToShow(std::size_t index, int scroll, int viewHeight) const {
    const Row& row = rows_[index];
    const bool isLast = index + 1 == rows_.size();
    const int lowest = row.bottom() + (isLast ? Metrics::kListPaddingBottom : 0) - viewHeight;
    const int highest = row.top - headerHeight_ - Metrics::kListSpacing;
    return std::clamp(scroll, std::min(lowest, highest), highest);
}

// The height of a page without the pinned header.
int ListGeometry::pageHeight(int viewHeight) const {
    return viewHeight - headerHeight_ - Metrics::kListSpacing;
}

std::size_t ListGeometry::pageDownFrom(std::size_t index, int viewHeight) const {
    const int limit = rows_[index].top + pageHeight(viewHeight);
    std::size_t target = std::min(index + 1, rows_.size() - 1);
    while (target + 1 < rows_.size() && rows_[target + 1].bottom() <= limit) ++target;
    return target;
}

std::size_t ListGeometry::pageUpFrom(std::size_t index, int viewHeight) const {
    const int limit = rows_[index].bottom() - pageHeight(viewHeight);
    std::size_t target = index == 0 ? 0 : index - 1;
    while (target > 0 && rows_[target - 1].top >= limit) --target;
    return target;
}

}  // namespace ravlin
