#pragma once

#include <QtGlobal>

/// Every size of the panel, in logical pixels.
namespace ravlin::Metrics {

inline constexpr int kPanelWidth = 340;
inline constexpr int kPanelPadding = 12;
inline constexpr int kPanelSpacing = 10;
inline constexpr int kContentWidth = kPanelWidth - 2 * kPanelPadding;
inline constexpr int kDividerHeight = 1;

inline constexpr int kHeaderSpacing = 8;
inline constexpr int kStatusSpacing = 5;
inline constexpr int kStatusMaxLines = 2;
inline constexpr int kFooterSpacing = 10;
inline constexpr int kFooterButtonPaddingX = 10;
inline constexpr qreal kFooterRadius = 3;

inline constexpr int kSearchSpacing = 6;
inline constexpr int kSearchPaddingX = 8;
inline constexpr int kSearchPaddingY = 6;
inline constexpr qreal kSearchRadius = 8;
inline constexpr int kLineEditMargin = 2;      // what QLineEdit leaves free on either side of its text
inline constexpr int kLineEditMarginY = 1;     // ... and above and below it
inline constexpr int kSymbolButtonMargin = 2;  // around the pictogram, for the focus ring and for fingers

inline constexpr int kListMaxHeight = 380;
inline constexpr int kListMinHeight = 64;  // on a screen that has no room for more
inline constexpr int kListSpacing = 6;
inline constexpr int kListPaddingBottom = 4;
inline constexpr int kEmptyPaddingY = 8;
inline constexpr int kScrollBarWidth = kPanelPadding - 1;  // beside the rows; the panel's border stays free
inline constexpr qreal kScrollHandleWidth = 5;

inline constexpr int kSectionPaddingX = 6;
inline constexpr int kSectionPaddingY = 3;

inline constexpr int kRowPaddingX = 6;
inline constexpr int kRowPaddingY = 5;
inline constexpr int kRowSpacing = 10;
inline constexpr int kRowTextSpacing = 1;
inline constexpr qreal kRowRadius = 6;
inline constexpr qreal kMarkBarWidth = 2;
inline constexpr qreal kFocusRingWidth = 1.5;

// The windows other than the panel.
inline constexpr int kNoticePadding = 20;
inline constexpr int kNoticeSpacing = 16;
inline constexpr int kNoticeIconSize = 56;
inline constexpr int kNoticeTextWidth = 340;
inline constexpr int kNotesHeight = 160;

}  // namespace ravlin::Metrics
