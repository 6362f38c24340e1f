#include "Views/TransformList.h"

#include "Views/Metrics.h"
#include "Views/PanelScrollBar.h"
#include "Views/QtText.h"
#include "Views/SectionHeader.h"
#include "Views/TextLabel.h"
#include "Views/TransformRow.h"
#include "Views/TransformSection.h"

#include <QCursor>
#include <QEvent>
#include <QKeyEvent>
#include <QWheelEvent>

#include <algorithm>

namespace ravlin {
TransformList::TransformList(QWidget* parent)
    : QScrollArea(parent),
      content_(new QWidget),
      emptyText_(new TextLabel(
          {}, {.style = TextStyle::caption, .color = &PanelColors::secondary, .width = Metrics::kContentWidth},
          content_)) {
    setObjectName(QStringLiteral("transformList"));
    setAccessibleName(QStringLiteral("Transforms"));
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setVerticalScrollBar(new PanelScrollBar(this));
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFixedWidth(Metrics::kContentWidth + Metrics::kScrollBarWidth);

    emptyText_->setObjectName(QStringLiteral("emptyText"));
    for (const TransformCategory category : TransformCategory::allCases())
        sections_[category] = new TransformSection(category, content_);
    setWidget(content_);
    pinnedHeader_ = new SectionHeader(TransformCategory::clean, SectionHeader::Kind::pinned, viewport());
    pinnedHeader_->setObjectName(QStringLiteral("pinnedHeader"));
    QAccessible::installActivationObserver(this);
}

TransformList::~TransformList() {
    QAccessible::removeActivationObserver(this);
}

void TransformList::accessibilityActiveChanged(bool /*isActive*/) {
    showRows();
}

// Inserts the row in the order of the list, in which assistive technology finds the rows, whenever it is made.
TransformRow* TransformList::transformRow(TextTransform transform) {
    if (const auto made = rows_.find(transform); made != rows_.end()) return made->second;
    auto* const row = new TransformRow(transform, sections_.at(transform.category()));
    if (TransformRow* const next = nextRowInSection(transform)) row->stackUnder(next);
    connect(row, &QAbstractButton::clicked, this, [this, transform] { Q_EMIT triggered(transform); });
    connect(row, &TransformRow::pointedAt, this, [this, transform] { pointAt(transform); });
    connect(row, &TransformRow::pointerLeft, this, [this, transform] {
        if (hovered_ == transform) hover(std::nullopt);
    });
    row->setMark(transform == marked_ ? TransformRow::Mark::marked : TransformRow::Mark::none);
    rows_.emplace(transform, row);
    return row;
}

TransformRow* TransformList::nextRowInSection(TextTransform transform) const {
    const auto next = rows_.upper_bound(transform);
    const bool isInSection = next != rows_.end() && next->second->transform().category() == transform.category();
    return isInSection ? next->second : nullptr;
}

void TransformList::showGroups(const std::vector<TransformGroup>& groups, const QString& query) {
    isSearch_ = isSearch(query.toStdString());
    const bool isSame = groups == groups_ && !groups.empty();
    if (!isSame) list(groups, query);
    markFirstMatch();
}

QString TransformList::summary() const {
    const std::size_t count = geometry_.rows().size();
    if (count == 0) return emptyText_->text();
    if (!isSearch_) return QStringLiteral("%1 transforms").arg(count);
    const QString matches = count == 1 ? QStringLiteral("1 match") : QStringLiteral("%1 matches").arg(count);
    return matches + QStringLiteral(", Return runs ") + toQString(geometry_.rows().front().transform.title());
}

void TransformList::list(const std::vector<TransformGroup>& groups, const QString& query) {
    mark(std::nullopt);
    groups_ = groups;
    lastHighlighted_.reset();
    emptyText_->setText(QStringLiteral("No transforms match “") + query + QStringLiteral("”."));
    layOut();
    verticalScrollBar()->setValue(0);
    showRows();
}

void TransformList::layOut() {
    geometry_ = ListGeometry(groups_, SectionHeader::heightFor(font()), [this](TextTransform transform) {
        return TransformRow::heightFor(transform, Metrics::kContentWidth, font());
    });
    placeSections();
    placeRows();
    placeEmptyText();
    const int height = groups_.empty()
                           ? emptyText_->geometry().bottom() + 1 + Metrics::kEmptyPaddingY + Metrics::kListPaddingBottom
                           : geometry_.height();
    content_->resize(Metrics::kContentWidth, height);
    takeRoom();
}

void TransformList::setRoom(int height) {
    room_ = std::clamp(height, Metrics::kListMinHeight, Metrics::kListMaxHeight);
    fitIntoRoom();
}

void TransformList::takeRoom() {
    limit_ = Metrics::kListMaxHeight;
    fitIntoRoom();
}

void TransformList::fitIntoRoom() {
    limit_ = std::min(limit_, room_);
    setFixedHeight(std::min(content_->height(), limit_));
}

void TransformList::placeSections() {
    for (const auto& [category, section] : sections_) {
        const auto found =
            std::ranges::find(geometry_.headers(), TransformCategory(category), &ListGeometry::Header::category);
        const bool isListed = found != geometry_.headers().end();
        section->setVisible(isListed);
        if (isListed) section->setGeometry(0, found->top, Metrics::kContentWidth, found->sectionBottom - found->top);
    }
}

void TransformList::placeRows() {
    for (const auto& [transform, row] : rows_) {
        const std::optional<std::size_t> index = geometry_.indexOf(transform);
        if (index) place(*row, geometry_.rows()[*index]);
        row->setVisible(index.has_value());
    }
}

void TransformList::place(TransformRow& row, const ListGeometry::Row& place) {
    row.setGeometry(0, place.top - row.parentWidget()->y(), Metrics::kContentWidth, place.height);
}

void TransformList::placeEmptyText() {
    emptyText_->setGeometry(QRect(QPoint(0, Metrics::kEmptyPaddingY), emptyText_->sizeHint()));
    emptyText_->setVisible(groups_.empty());
}

void TransformList::showRows() {
    const int top = scrollPosition();
    const auto inView = geometry_.rowsBetween(top, top + viewport()->height());
    for (const ListGeometry::Row& each : QAccessible::isActive() ? geometry_.rows() : inView) {
        TransformRow* const row = transformRow(each.transform);
        place(*row, each);
        row->show();
    }
    updatePinnedHeader();
}

void TransformList::updatePinnedHeader() {
    const std::optional<ListGeometry::PinnedHeader> pinned = geometry_.pinnedHeader(scrollPosition());
    pinnedHeader_->setVisible(pinned.has_value());
    if (!pinned) return;
    pinnedHeader_->setCategory(pinned->category);
    pinnedHeader_->setGeometry(0, pinned->offset, Metrics::kContentWidth, pinnedHeader_->sizeHint().height());
}

void TransformList::markFirstMatch() {
    const bool hasMatch = isSearch_ && !geometry_.rows().empty();
    mark(hasMatch ? std::optional(geometry_.rows().front().transform) : std::nullopt);
}

void TransformList::mark(std::optional<TextTransform> transform) {
    showMark(hovered_, TransformRow::Mark::none);
    showMark(marked_, TransformRow::Mark::none);
    hovered_.reset();
    marked_ = transform;
    showMark(marked_, TransformRow::Mark::marked);
}

void TransformList::hover(std::optional<TextTransform> transform) {
    showMark(hovered_, TransformRow::Mark::none);
    hovered_ = transform;
    showMark(hovered_, TransformRow::Mark::hovered);
}

void TransformList::showMark(std::optional<TextTransform> transform, TransformRow::Mark mark) {
    if (!transform) return;
    if (const auto made = rows_.find(*transform); made != rows_.end()) made->second->setMark(mark);
}

void TransformList::pointAt(TextTransform transform) {
    if (highlighted()) {
        transformRow(transform)->setFocus(Qt::MouseFocusReason);
        lastHighlighted_ = transform;
    }
    if (marked_) {
        mark(transform);
    } else {
        hover(transform);
    }
}

/// The row at a point of the view, none where the pinned header covers it.
TransformRow* TransformList::rowAt(const QPoint& inView) const {
    const bool isCovered = pinnedHeader_->isVisible() && pinnedHeader_->geometry().contains(inView);
    if (isCovered || !viewport()->rect().contains(inView)) return nullptr;
    return qobject_cast<TransformRow*>(content_->childAt(content_->mapFrom(viewport(), inView)));
}

// A row scrolled under a resting pointer is pointed at, as if the pointer had moved.
void TransformList::wheelEvent(QWheelEvent* event) {
    QScrollArea::wheelEvent(event);
    if (const auto* const row = rowAt(viewport()->mapFromGlobal(event->globalPosition().toPoint()))) {
        pointAt(row->transform());
    } else {
        hover(std::nullopt);
    }
}

std::optional<TextTransform> TransformList::highlighted() const {
    const auto* const row = qobject_cast<TransformRow*>(focusWidget());
    return row != nullptr && row->hasFocus() ? std::optional(row->transform()) : std::nullopt;
}

std::optional<std::size_t> TransformList::markedIndex() const {
    return marked_ ? geometry_.indexOf(*marked_) : std::nullopt;
}

void TransformList::bringIntoView(TextTransform transform) {
    const std::optional<std::size_t> index = geometry_.indexOf(transform);
    if (index && transformRow(transform)->visibleRegion().isEmpty())
        verticalScrollBar()->setValue(geometry_.scrollToShow(*index, scrollPosition(), height()));
}

bool TransformList::moveHighlight(Move move) {
    const std::optional<std::size_t> target = targetOf(move);
    if (target) highlight(*target);
    return target.has_value();
}

std::optional<std::size_t> TransformList::targetOf(Move move) const {
    if (geometry_.rows().empty()) return std::nullopt;
    const std::optional<std::size_t> current = markedIndex();
    const std::size_t last = geometry_.rows().size() - 1;
    const bool isAbove = current.value_or(0) == 0;
    switch (move) {
        case Move::up: return isAbove ? std::nullopt : std::optional(*current - 1);
        case Move::pageUp: return isAbove ? std::nullopt : std::optional(geometry_.pageUpFrom(*current, height()));
        case Move::down: return current ? std::min(*current + 1, last) : 0;
        case Move::pageDown: return geometry_.pageDownFrom(current.value_or(0), height());
        case Move::first: return 0;
        case Move::last: return last;
    }
    return std::nullopt;
}

void TransformList::highlight(std::size_t index) {
    verticalScrollBar()->setValue(geometry_.scrollToShow(index, scrollPosition(), height()));
    showRows();
    const TextTransform transform = geometry_.rows()[index].transform;
    transformRow(transform)->setFocus();
    mark(transform);
    lastHighlighted_ = transform;
}

bool TransformList::enter() {
    if (geometry_.rows().empty()) return false;
    if (const auto last = lastHighlighted_ ? geometry_.indexOf(*lastHighlighted_) : std::nullopt) {
        highlight(*last);
        return true;
    }
    const int top = scrollPosition() + SectionHeader::heightFor(font());
    const auto row = std::ranges::find_if(geometry_.rows(), [top](const auto& each) { return each.top >= top; });
    highlight(row == geometry_.rows().end() ? geometry_.rows().size() - 1
                                            : static_cast<std::size_t>(row - geometry_.rows().begin()));
    return true;
}

int TransformList::scrollPosition() const {
    return verticalScrollBar()->value();
}

void TransformList::changeEvent(QEvent* event) {
    QScrollArea::changeEvent(event);
    if (event->type() != QEvent::FontChange) return;
    layOut();
    showRows();
}

void TransformList::keyPressEvent(QKeyEvent* event) {
    event->ignore();  // keys move the highlight, which scrolls the list along; the panel handles them
}

void TransformList::resizeEvent(QResizeEvent* event) {
    QScrollArea::resizeEvent(event);
    showRows();
    keepHighlightInView();
}

// A status that takes its room from the list may hide the row that the keyboard chose. While the pointer is on the
// list, nothing moves.
void TransformList::keepHighlightInView() {
    const std::optional<std::size_t> index = markedIndex();
    const bool isPointedAt = rect().contains(mapFromGlobal(QCursor::pos()));
    if (index && highlighted() && !isPointedAt)
        verticalScrollBar()->setValue(geometry_.scrollToShow(*index, scrollPosition(), height()));
}

void TransformList::scrollContentsBy(int dx, int dy) {
    QScrollArea::scrollContentsBy(dx, dy);
    showRows();
}

// The panel decides where Tab goes; a scroll area would scroll in its own way afterwards.
bool TransformList::focusNextPrevChild(bool next) {
    // NOLINTNEXTLINE(bugprone-parent-virtual-call): the base class is skipped on purpose.
    return QWidget::focusNextPrevChild(next);
}

}  // namespace ravlin
