#include "Views/ListGeometry.h"

#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ravlin {

static std::ostream& operator<<(std::ostream& out, const ListGeometry::PinnedHeader& pinned) {
    return out << pinned.category.title() << " at " << pinned.offset;
}

namespace {

using Pinned = ListGeometry::PinnedHeader;

constexpr int kHeader = 20;
constexpr int kRow = 40;
const std::size_t kLast = TextTransform::allCases().size() - 1;

// Clean: header 0-20, rows 26-66 and 72-112. Case: header 118-138, row 144-184. Padding to 188.
ListGeometry twoSections() {
    const std::vector<TransformGroup> groups = {
        {TransformCategory::clean, {TextTransform::stripTracking, TextTransform::stripFormatting}},
        {TransformCategory::caseGroup, {TextTransform::upperCase}}};
    return {groups, kHeader, [](TextTransform) { return kRow; }};
}

ListGeometry wholeCatalogue() {
    return {groupedTransforms(""), kHeader, [](TextTransform) { return kRow; }};
}

TEST(ListGeometry, HeadersAndRowsStandSixPixelsApartWithFourAtTheBottom) {
    const ListGeometry list = twoSections();
    std::vector<int> tops;
    for (const auto& header : list.headers()) tops.push_back(header.top);
    for (const auto& row : list.rows()) tops.push_back(row.top);
    EXPECT_THAT(tops, testing::ElementsAre(0, 118, 26, 72, 144));
    EXPECT_EQ(list.height(), 188);
}

TEST(ListGeometry, NothingListedHasNoHeightAndNoPinnedHeader) {
    const ListGeometry list;
    EXPECT_EQ(list.height(), 0);
    EXPECT_TRUE(list.rowsBetween(0, 1000).empty());
    EXPECT_EQ(list.pinnedHeader(0), std::nullopt);
}

TEST(ListGeometry, RowsMayDifferInHeight) {
    const std::vector<TransformGroup> groups = {
        {TransformCategory::clean, {TextTransform::stripTracking, TextTransform::stripFormatting}}};
    const ListGeometry list(
        groups, kHeader, [](TextTransform transform) { return transform == TextTransform::stripTracking ? 60 : 40; });
    EXPECT_EQ(list.rows()[1].top, 26 + 60 + 6);
}

TEST(ListGeometry, ARowIsInViewFromItsFirstToItsLastPixel) {
    const ListGeometry list = twoSections();
    const struct {
        int top, bottom;
        std::size_t first, count;
    } vectors[] = {
        {0, 26, 0, 0}, {0, 27, 0, 1}, {65, 72, 0, 1}, {66, 72, 1, 0}, {66, 73, 1, 1}, {0, 188, 0, 3}, {184, 300, 3, 0},
    };
    for (const auto& [top, bottom, first, count] : vectors) {
        const auto rows = list.rowsBetween(top, bottom);
        EXPECT_EQ(rows.size(), count) << top << ".." << bottom;
        EXPECT_EQ(rows.data(), list.rows().data() + first);
    }
}

TEST(ListGeometry, TheHeaderStaysPinnedUntilItsSectionsEndPushesItOut) {
    const ListGeometry list = twoSections();
    const struct {
        int scroll;
        std::optional<Pinned> pinned;
    } vectors[] = {
        {0, Pinned{TransformCategory::clean, 0}},
        {50, Pinned{TransformCategory::clean, 0}},
        {92, Pinned{TransformCategory::clean, 0}},   // the section ends right under the header
        {93, Pinned{TransformCategory::clean, -1}},  // and now pushes it
        {111, Pinned{TransformCategory::clean, -19}},
        {112, std::nullopt},  // the gap between the sections
        {117, std::nullopt},
        {118, Pinned{TransformCategory::caseGroup, 0}},
        {164, Pinned{TransformCategory::caseGroup, 0}},
    };
    for (const auto& [scroll, pinned] : vectors) EXPECT_EQ(list.pinnedHeader(scroll), pinned) << scroll;
}

TEST(ListGeometry, ScrollingToARowGoesNoFartherThanNeeded) {
    const ListGeometry list = wholeCatalogue();
    constexpr int kView = 380;
    EXPECT_EQ(list.scrollToShow(0, 0, kView), 0);
    EXPECT_EQ(list.scrollToShow(1, 5, kView), 5) << "it is in view already";
    EXPECT_EQ(list.scrollToShow(20, 0, kView), list.rows()[20].bottom() - kView) << "from above, to the bottom";
    EXPECT_EQ(list.scrollToShow(20, 5000, kView), list.rows()[20].top - kHeader - 6) << "from below, under the header";
    EXPECT_EQ(list.scrollToShow(kLast, 0, kView), list.height() - kView) << "the last row brings the padding along";
}

TEST(ListGeometry, ScrollingToASectionsFirstRowBringsItsHeaderAlong) {
    const ListGeometry list = wholeCatalogue();
    const std::size_t upperCase = *list.indexOf(TextTransform::upperCase);
    EXPECT_EQ(list.scrollToShow(upperCase, 5000, 380), list.headers()[2].top);
}

TEST(ListGeometry, NoRowThatWasScrolledToIsUnderThePinnedHeader) {
    const ListGeometry list = wholeCatalogue();
    for (std::size_t index = 0; index < list.rows().size(); ++index) {
        for (const int from : {0, 700, 1500, 5000}) {
            const int scroll = list.scrollToShow(index, from, 380);
            const auto pinned = list.pinnedHeader(scroll);
            const int headerBottom = pinned ? scroll + pinned->offset + kHeader : scroll;
            EXPECT_GE(list.rows()[index].top, headerBottom) << index << " from " << from;
            EXPECT_LE(list.rows()[index].bottom(), scroll + 380) << index << " from " << from;
        }
    }
}

TEST(ListGeometry, ARowHigherThanTheViewShowsItsTop) {
    const std::vector<TransformGroup> groups = {{TransformCategory::clean, {TextTransform::stripTracking}}};
    const ListGeometry list(groups, kHeader, [](TextTransform) { return 500; });
    EXPECT_EQ(list.scrollToShow(0, 0, 380), 0);
    EXPECT_EQ(list.scrollToShow(0, 100, 380), 0);
}

TEST(ListGeometry, APageIsWhatFitsUnderThePinnedHeader) {
    const ListGeometry list = wholeCatalogue();
    const std::size_t target = list.pageDownFrom(0, 380);
    EXPECT_EQ(target, 6U);
    EXPECT_LE(list.rows()[target].bottom() - list.rows()[0].top, 380 - kHeader - 6);
    EXPECT_GT(list.rows()[target + 1].bottom() - list.rows()[0].top, 380 - kHeader - 6);
    EXPECT_EQ(list.pageUpFrom(target, 380), 0U);
}

TEST(ListGeometry, PagesEndAtTheEndsAndAlwaysAdvance) {
    const ListGeometry list = wholeCatalogue();
    EXPECT_EQ(list.pageDownFrom(kLast, 380), kLast);
    EXPECT_EQ(list.pageUpFrom(0, 380), 0U);
    EXPECT_EQ(list.pageDownFrom(10, 30), 11U) << "a view lower than a row";
    EXPECT_EQ(list.pageUpFrom(10, 30), 9U);
    std::size_t row = 0;
    int presses = 0;
    for (; row != kLast; ++presses) row = list.pageDownFrom(row, 380);
    EXPECT_LT(presses, 12);
}

}  // namespace
}  // namespace ravlin
