#pragma once

#include "Views/Footer.h"
#include "Views/Icon.h"
#include "Views/MenuView.h"
#include "Views/PanelColors.h"
#include "Views/QtText.h"
#include "Views/SearchLine.h"
#include "Views/SectionHeader.h"
#include "Views/SymbolView.h"
#include "Views/TextLabel.h"
#include "Views/TextStyle.h"
#include "Views/TransformList.h"
#include "Views/TransformRow.h"
#include "Views/TransformSection.h"
#include "tests/support/FakePasteboard.h"
#include "tests/views/FakeUpdater.h"
#include "tests/views/Palettes.h"

#include <QApplication>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace ravlin::tests {

/// The panel with the test's own clipboard and updater, and what a user does to it and sees of it.
class PanelFixture : public testing::Test {
protected:
    PanelFixture() : appFont_(QApplication::font()), appPalette_(QApplication::palette()) {
        FakeUpdater::reset();
        panel = std::make_unique<MenuView>(updater);
    }
    ~PanelFixture() override {
        panel.reset();
        QApplication::setFont(appFont_);
        QApplication::setPalette(appPalette_);
    }

    // What a user does.
    void open() {
        panel->show();
        panel->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(panel.get()));
    }
    void close() {
        panel->hide();
        goElsewhere();
    }
    void goElsewhere() {
        elsewhere_.show();
        elsewhere_.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&elsewhere_));
    }
    void press(Qt::Key key, int times = 1, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        for (int i = 0; i < times; ++i) QTest::keyClick(panel->focusWidget(), key, modifiers);
    }
    void type(const char* text) {
        for (const QChar character : QString::fromUtf8(text)) {
            QKeyEvent event(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, QString(character));
            QApplication::sendEvent(panel->focusWidget(), &event);
        }
    }
    void scrollTo(int position) { list().verticalScrollBar()->setValue(position); }
    void click(QWidget* widget) { QTest::mouseClick(widget, Qt::LeftButton); }

    // What a user sees.
    template <class Widget>
    Widget& find(const char* name) const {
        auto* const found = panel->findChild<Widget*>(QString::fromUtf8(name));
        if (found == nullptr) throw std::runtime_error(std::string("no such widget: ") + name);
        return *found;
    }
    SearchLine& search() const { return find<SearchLine>("searchField"); }
    QAbstractButton& clearButton() const { return find<QAbstractButton>("clearButton"); }
    TextLabel& status() const { return find<TextLabel>("statusLabel"); }
    QPushButton& checkForUpdatesButton() const { return find<QPushButton>("checkForUpdatesButton"); }
    QPushButton& quitButton() const { return find<QPushButton>("quitButton"); }
    TransformList& list() const { return find<TransformList>("transformList"); }
    TransformRow& row(TextTransform transform) const {
        return find<TransformRow>(("row." + std::string(transform.id())).c_str());
    }
    bool has(TextTransform transform) const {
        auto* const found = panel->findChild<TransformRow*>(QStringLiteral("row.") + toQString(transform.id()));
        return found != nullptr && found->isVisible();
    }

    /// The part of `widget` that is in view, in the list's view's coordinates.
    QRect inView(const QWidget& widget) const {
        const QPoint topLeft = widget.mapTo(list().viewport(), QPoint());
        return QRect(topLeft, widget.size()).intersected(list().viewport()->rect());
    }

    int topInList(const QWidget& widget) const { return widget.mapTo(list().widget(), QPoint()).y(); }

    /// The titles of the section headers and rows in the list, from top to bottom, collected by scrolling through all
    /// of it.
    std::vector<std::string> listed() {
        for (int y = 0; y <= list().verticalScrollBar()->maximum(); y += list().height() / 2) scrollTo(y);
        scrollTo(list().verticalScrollBar()->maximum());
        std::vector<std::pair<int, std::string>> parts;
        for (const auto* const header : list().widget()->findChildren<SectionHeader*>())
            if (header->isVisible()) parts.emplace_back(topInList(*header), header->text().toStdString());
        for (const auto* const each : list().widget()->findChildren<TransformRow*>())
            if (each->isVisible()) parts.emplace_back(topInList(*each), each->transform().title());
        std::ranges::sort(parts);
        std::vector<std::string> titles;
        for (const auto& [y, title] : parts) titles.push_back(title);
        scrollTo(0);
        return titles;
    }

    std::string statusText() const { return status().isVisible() ? status().text().toStdString() : ""; }

    FakePasteboard pasteboard;
    SilentUserDriver driver;
    UpdaterController updater{driver};
    std::unique_ptr<MenuView> panel;

private:
    QFont appFont_;
    QPalette appPalette_;
    QWidget elsewhere_;
};

}  // namespace ravlin::tests
