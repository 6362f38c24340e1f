#pragma once

#include "Views/ListGeometry.h"

#include <QScrollArea>

#include <cstddef>
#include <map>
#include <optional>
#include <vector>

namespace ravlin {

class SectionHeader;
class TextLabel;
class TransformRow;

/// The scrolling list of transforms in their sections. Rows are made when they first come into view, so that the panel
/// opens at once. The row that the keyboard chose, the highlighted one, is the row with the keyboard focus.
class TransformList final : public QScrollArea {
    Q_OBJECT

public:
    enum class Move : std::uint8_t { up, down, pageUp, pageDown, first, last };

    explicit TransformList(QWidget* parent = nullptr);

    /// Lists `groups` from the top; without any, says that nothing matches `query` (as typed).
    void showGroups(const std::vector<TransformGroup>& groups, const QString& query);

    /// The first listed transform, or nothing.
    std::optional<TextTransform> firstMatch() const;

    /// The highlighted transform, or nothing.
    std::optional<TextTransform> highlighted() const;

    /// Moves the highlight and scrolls along. Without a highlight, moving down or to an end enters the list. False,
    /// and nothing changes, where that leads out of the list at its top or nothing is listed.
    bool moveHighlight(Move move);

    /// Highlights the row that was highlighted last, or else the first one in view. False where nothing is listed.
    bool enter();

    /// How many rows have been made so far.
    std::size_t madeRowCount() const { return rows_.size(); }

Q_SIGNALS:
    /// A row was pressed.
    void triggered(ravlin::TextTransform transform);

protected:
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    bool focusNextPrevChild(bool next) override;

private:
    SectionHeader* sectionHeader(TransformCategory category);
    TransformRow* transformRow(TextTransform transform);
    QWidget* firstWidgetAfter(TextTransform transform) const;

    void layOut();
    void placeHeaders();
    void placeRows();
    void placeEmptyText();
    void showWhatIsInView();
    void updatePinnedHeader();

    std::optional<std::size_t> highlightedIndex() const;
    std::optional<std::size_t> targetOf(Move move) const;
    void highlight(std::size_t index);
    int scrollPosition() const;

    std::vector<TransformGroup> groups_;
    ListGeometry geometry_;
    QWidget* content_;
    TextLabel* emptyText_;
    SectionHeader* pinnedHeader_ = nullptr;
    std::map<TransformCategory::Case, SectionHeader*> headers_;
    std::map<TextTransform::Case, TransformRow*> rows_;
    std::optional<TextTransform> lastHighlighted_;
};

}  // namespace ravlin
