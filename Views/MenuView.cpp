#include "Views/MenuView.h"

#include "App/UpdaterController.h"
#include "Engine/PasteboardService.h"
#include "Views/Accessibility.h"
#include "Views/Announcer.h"
#include "Views/Divider.h"
#include "Views/Feedback.h"
#include "Views/Footer.h"
#include "Views/GroupedTransforms.h"
#include "Views/Metrics.h"
#include "Views/PanelColors.h"
#include "Views/QtText.h"
#include "Views/SearchField.h"
#include "Views/SearchLine.h"
#include "Views/StatusLine.h"
#include "Views/SymbolView.h"
#include "Views/TextLabel.h"
#include "Views/TransformList.h"

#include <QAbstractButton>
#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

namespace ravlin {
namespace {

// Where Tab stops, in order.
enum Stop { searchStop, clearStop, listStop, checkForUpdatesStop, quitStop, stopCount };

bool isEditing(const QKeyEvent& event) {
    const bool isTyped = !event.text().isEmpty() && event.text().front().isPrint() &&
                         (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) == 0;
    return isTyped || event.key() == Qt::Key_Backspace || event.key() == Qt::Key_Delete ||
           event.matches(QKeySequence::Paste) || event.matches(QKeySequence::SelectAll);
}

std::optional<TransformList::Move> moveFor(int key) {
    switch (key) {
        case Qt::Key_Up: return TransformList::Move::up;
        case Qt::Key_Down: return TransformList::Move::down;
        case Qt::Key_PageUp: return TransformList::Move::pageUp;
        case Qt::Key_PageDown: return TransformList::Move::pageDown;
        case Qt::Key_Home: return TransformList::Move::first;
        case Qt::Key_End: return TransformList::Move::last;
        default: return std::nullopt;
    }
}

}  // namespace

MenuView::MenuView(UpdaterController& updater, QWidget* parent)
    : QWidget(parent, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint), updater_(updater) {
    installAccessibleRoles();
    setObjectName(QStringLiteral("panel"));
    setWindowTitle(QStringLiteral("Ravlin"));
    setAccessibleName(QStringLiteral("Ravlin"));
    setLayoutDirection(Qt::LeftToRight);  // its texts are English in every locale

    auto* const layout = new QVBoxLayout(this);
    // The list's scroll bar is in the padding on the right; everything else is as wide as the content.
    layout->setContentsMargins(Metrics::kPanelPadding, Metrics::kPanelPadding,
                               Metrics::kPanelPadding - Metrics::kScrollBarWidth, Metrics::kPanelPadding);
    layout->setSpacing(Metrics::kPanelSpacing);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    // Created from top to bottom, the order in which assistive technology finds the parts.
    layout->addWidget(header());
    layout->addWidget(hint());
    layout->addWidget(searchField_ = searchField());
    layout->addWidget(new Divider(this));
    layout->addWidget(list_ = new TransformList(this));
    layout->addWidget(statusLine_ = new StatusLine(this));
    layout->addWidget(new Divider(this));
    layout->addWidget(footer_ = footer());
    announcer_ = new Announcer(this);

    connect(searchField_, &SearchField::queryChanged, this, &MenuView::showMatches);
    connect(list_, &TransformList::triggered, this, &MenuView::apply);
    connect(&updater_, &UpdaterController::canCheckForUpdatesChanged, this, &MenuView::refresh);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget* /*old*/, QWidget* now) { followFocus(now); });
    showMatches();
    showStatus();
}

QWidget* MenuView::header() {
    auto* const header = new QWidget(this);
    header->setFixedWidth(Metrics::kContentWidth);
    auto* const layout = new QHBoxLayout(header);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Metrics::kHeaderSpacing);
    layout->addWidget(new SymbolView(
        {.symbol = Symbol::wandAndStars, .style = TextStyle::headline, .color = &PanelColors::accent}, header));
    auto* const title = new TextLabel(QStringLiteral("Ravlin"), {.style = TextStyle::headline}, header);
    title->setObjectName(QStringLiteral("titleLabel"));
    layout->addWidget(title);
    layout->addStretch();
    return header;
}

QWidget* MenuView::hint() {
    auto* const hint = new TextLabel(
        QStringLiteral("Copy text, pick a transform — it's ready to paste with ⌘V."),
        {.style = TextStyle::caption, .color = &PanelColors::secondary, .width = Metrics::kContentWidth}, this);
    hint->setObjectName(QStringLiteral("hintLabel"));
    hint->setAccessibleName(spoken(hint->text()));
    return hint;
}

SearchField* MenuView::searchField() {
    return new SearchField(this);
}

Footer* MenuView::footer() {
    auto* const footer = new Footer(this);
    connect(footer, &Footer::checkForUpdatesRequested, &updater_, &UpdaterController::checkForUpdates);
    connect(footer, &Footer::quitRequested, this, &MenuView::quitRequested);
    return footer;
}

QString MenuView::query() const {
    return searchField_->query();
}

void MenuView::apply(TextTransform transform) {
    const Feedback feedback = feedbackFor(transform, PasteboardService::transformClipboard(transform));
    feedback_ = feedback.text;
    feedbackOK_ = feedback.ok;
    showStatus();
    announcer_->say(toQString(feedback.text));
}

void MenuView::showMatches() {
    list_->showGroups(groupedTransforms(query().toStdString()), query());
    announcer_->saySoon(list_->summary());
    refresh();
}

void MenuView::showStatus() {
    if (feedback_) statusLine_->setFeedback({*feedback_, feedbackOK_});
    statusLine_->setVisible(feedback_.has_value());
    refresh();
}

void MenuView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() != QEvent::FontChange || layout() == nullptr) return;
    // The parts have adopted the new font by now, but the layout of a panel that was never shown does not know it yet.
    layout()->invalidate();
    refresh();
}

// Ensures what must be true whenever the panel is seen.
void MenuView::refresh() {
    footer_->setCanCheckForUpdates(updater_.canCheckForUpdates());
    list_->setRoom(room_ - heightBesideTheList());
    layout()->activate();
}

int MenuView::heightBesideTheList() const {
    return layout()->totalSizeHint().height() - list_->height();
}

int MenuView::fullHeight() const {
    return heightBesideTheList() + Metrics::kListMaxHeight;
}

void MenuView::setRoom(int height) {
    room_ = height;
    refresh();
    list_->takeRoom();
    layout()->activate();
}

bool MenuView::event(QEvent* event) {
    const bool handled = QWidget::event(event);
    if (event->type() == QEvent::WindowDeactivate) dismissForFocusLoss();
    return handled;
}

void MenuView::setVisible(bool visible) {
    isHiding_ = !visible;
    if (isHiding_) announcer_->silence();  // else it would speak again when the panel opens
    QWidget::setVisible(visible);
    isHiding_ = false;
}

// A window also loses the focus while it is being hidden, and the search field's own menu is not another window.
void MenuView::dismissForFocusLoss() {
    if (!isVisible() || isHiding_ || QApplication::activePopupWidget() != nullptr) return;
    hide();
    Q_EMIT dismissedByFocusLoss();
}

void MenuView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    refresh();
    searchField_->line().setFocus();
    searchField_->line().selectAll();
    list_->markFirstMatch();
}

// Whatever Return would activate stands out: a button that has the focus, the chosen row, or the first match.
void MenuView::followFocus(QWidget* now) {
    if (now == nullptr || !isAncestorOf(now)) return;
    if (now == &searchField_->line()) return list_->markFirstMatch();
    const auto* const row = qobject_cast<TransformRow*>(now);
    list_->mark(row != nullptr ? std::optional(row->transform()) : std::nullopt);
    if (row != nullptr) list_->bringIntoView(row->transform());  // where assistive technology moved the focus
}

void MenuView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (isVisible()) Q_EMIT resized();
}

void MenuView::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setPen(PanelColors(palette()).border);
    constexpr qreal kHalf = 0.5;  // the middle of a one-pixel line, so that it is one at every screen scale
    painter.setRenderHint(QPainter::Antialiasing);
    painter.drawRect(QRectF(rect()).adjusted(kHalf, kHalf, -kHalf, -kHalf));
}

void MenuView::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            // Holding the key down runs a transform once, not until it is released.
            if (!event->isAutoRepeat()) runMarked();
            return;
        case Qt::Key_Escape: return clearOrClose();
        default: break;
    }
    if (!chooseRow(event->key()) && !typeIntoSearch(*event)) event->ignore();
}

bool MenuView::chooseRow(int key) {
    const std::optional<TransformList::Move> move = moveFor(key);
    const bool isForRowsOnly = key == Qt::Key_Home || key == Qt::Key_End;
    if (!move || (isForRowsOnly && !list_->highlighted())) return false;
    if (!list_->moveHighlight(*move)) searchField_->line().setFocus();
    return true;
}

void MenuView::runMarked() {
    if (auto* const button = qobject_cast<QAbstractButton*>(focusWidget())) {
        button->click();
    } else if (const std::optional<TextTransform> marked = list_->marked()) {
        apply(*marked);
    }
}

void MenuView::clearOrClose() {
    if (query().isEmpty()) {
        hide();
    } else {
        searchField_->clear();
    }
}

bool MenuView::typeIntoSearch(const QKeyEvent& event) {
    SearchLine& line = searchField_->line();
    if (line.hasFocus() || !isEditing(event)) return false;
    line.setFocus();
    QKeyEvent copy(event.type(), event.key(), event.modifiers(), event.text(), event.isAutoRepeat());
    return QApplication::sendEvent(&line, &copy);
}

bool MenuView::focusNextPrevChild(bool next) {
    int stop = currentStop();
    for (int tries = 0; tries < stopCount; ++tries) {
        stop = (stop + (next ? 1 : stopCount - 1)) % stopCount;
        if (focusStop(stop)) return true;
    }
    return false;
}

int MenuView::currentStop() const {
    const QWidget* const focus = focusWidget();
    if (focus == &searchField_->clearButton()) return clearStop;
    if (focus == &footer_->checkForUpdatesButton()) return checkForUpdatesStop;
    if (focus == &footer_->quitButton()) return quitStop;
    return list_->highlighted() ? listStop : searchStop;
}

bool MenuView::focusStop(int stop) {
    const auto focusOn = [](QWidget& widget) {
        const bool canHaveFocus = widget.isVisible() && widget.isEnabled();
        if (canHaveFocus) widget.setFocus(Qt::TabFocusReason);
        return canHaveFocus;
    };
    switch (stop) {
        case searchStop: return focusOn(searchField_->line());
        case clearStop: return focusOn(searchField_->clearButton());
        case listStop: return list_->enter();
        case checkForUpdatesStop: return focusOn(footer_->checkForUpdatesButton());
        case quitStop: return focusOn(footer_->quitButton());
        default: return false;
    }
}

}  // namespace ravlin
