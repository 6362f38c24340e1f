#pragma once

#include "Views/ListGeometry.h"
#include "Views/Metrics.h"
#include "Views/TransformRow.h"

#include <QAccessible>
#include <QScrollArea>

#include <cstddef>
#include <map>
#include <optional>
#include <vector>

namespace ravlin {

class SectionHeader;
class TextLabel;
class TransformSection;

/// The scrolling list of transforms in their sections. Rows are made when they first come into view, so that the panel
/// opens at once; where assistive technology is in use, which has to find every row, all of them are made.
///
/// At most one row stands out, the one that the pointer or the keyboard chose, whichever moved last. While there is a
/// marked row, which Return runs, the pointer moves the mark; otherwise it only hovers. The row that the keyboard
/// chose, the highlighted one, is marked and has the keyboard focus.
class TransformList final : public QScrollArea, QAccessible::ActivationObserver {
    Q_OBJECT

public:
    enum class Move : std::uint8_t { up, down, pageUp, pageDown, first, last };

    explicit TransformList(QWidget* parent = nullptr);
    ~TransformList() override;

    /// Lists `groups` from the top; if there are none, says that nothing matches `query` (as typed).
    void showGroups(const std::vector<TransformGroup>& groups, const QString& query);

    /// What is listed, in a few words.
    ///     "54 transforms", "2 matches, Return runs UPPERCASE", "No transforms match “xyz”."
    QString summary() const;

    /// The transform that Return runs, or nothing.
    std::optional<TextTransform> marked() const { return marked_; }

    /// Marks what Return runs while the focus is in the search field: the first match, or nothing without a search.
    void markFirstMatch();

    /// Marks the row of `transform`, or none.
    void mark(std::optional<TextTransform> transform);

    /// The highlighted transform, or nothing.
    std::optional<TextTransform> highlighted() const;

    /// Scrolls to the row of `transform` if it is out of view.
    void bringIntoView(TextTransform transform);

    /// Moves the highlight and scrolls along. Without a highlight, moving down or to an end enters the list. False, and
    /// nothing changes, if that would leave the list at its top or nothing is listed.
    bool moveHighlight(Move move);

    /// Highlights the row that was highlighted last, or else the first one in view. False if nothing is listed.
    bool enter();

    /// Limits the list to `height`. A list that shrinks while it is shown grows again only with its next content: at
    /// its end, growing would move rows down.
    void setRoom(int height);

    /// Lets it grow as high as its room allows.
    void takeRoom();

    /// How many rows have been made so far.
    std::size_t madeRowCount() const { return rows_.size(); }

Q_SIGNALS:
    /// A row was pressed.
    void triggered(ravlin::TextTransform transform);

protected:
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    bool focusNextPrevChild(bool next) override;

private:
    TransformRow* transformRow(TextTransform transform);
    TransformRow* nextRowInSection(TextTransform transform) const;

    void list(const std::vector<TransformGroup>& groups, const QString& query);
    void layOut();
    void fitIntoRoom();
    void placeSections();
    void placeRows();
    static void place(TransformRow& row, const ListGeometry::Row& place);
    void placeEmptyText();
    void showRows();
    void accessibilityActiveChanged(bool isActive) override;
    void keepHighlightInView();
    void updatePinnedHeader();

    void pointAt(TextTransform transform);
    void hover(std::optional<TextTransform> transform);
    TransformRow* rowAt(const QPoint& inView) const;
    void showMark(std::optional<TextTransform> transform, TransformRow::Mark mark);
    std::optional<std::size_t> markedIndex() const;
    std::optional<std::size_t> targetOf(Move move) const;
    void highlight(std::size_t index);
    int scrollPosition() const;

    std::vector<TransformGroup> groups_;
    ListGeometry geometry_;
    QWidget* content_;
    TextLabel* emptyText_;
    SectionHeader* pinnedHeader_ = nullptr;
    std::map<TransformCategory::Case, TransformSection*> sections_;
    std::map<TextTransform::Case, TransformRow*> rows_;
    bool isSearch_ = false;
    std::optional<TextTransform> marked_;
    std::optional<TextTransform> hovered_;
    std::optional<TextTransform> lastHighlighted_;
    int room_ = Metrics::kListMaxHeight;
    int limit_ = Metrics::kListMaxHeight;  // of the height: the least room since it was last taken
};

}  // namespace ravlin
