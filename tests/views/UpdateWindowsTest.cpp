#include "Views/TextLabel.h"
#include "Views/UpdateWindows.h"

#include <QApplication>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

namespace ravlin {
namespace {

class UpdateWindowsTest : public testing::Test {
protected:
    static QList<QDialog*> openWindows() {
        QList<QDialog*> windows;
        for (QWidget* const widget : QApplication::topLevelWidgets())
            if (auto* const dialog = qobject_cast<QDialog*>(widget); dialog != nullptr && dialog->isVisible())
                windows.append(dialog);
        return windows;
    }
    QDialog& show() {
        windows.showUpdatesComeWithSystem();
        EXPECT_EQ(openWindows().size(), 1);
        return *openWindows().constFirst();
    }

    UpdateWindows windows;
};

TEST_F(UpdateWindowsTest, TellsThatUpdatesComeWithTheSystem) {
    const QDialog& window = show();
    EXPECT_EQ(window.windowTitle().toStdString(), "Software Update");
    EXPECT_EQ(window.findChild<QLabel*>(QStringLiteral("headingLabel"))->text().toStdString(),
              "Updates come with your system");
    EXPECT_EQ(window.findChild<QLabel*>(QStringLiteral("textLabel"))->text().toStdString(),
              "This copy of Ravlin is updated by your system’s software updater, together with your other software.");
    EXPECT_FALSE(window.isModal());
}

TEST_F(UpdateWindowsTest, LabelsArePlainTextAndNotClipped) {
    const QDialog& window = show();
    const auto labels = window.findChildren<TextLabel*>();
    EXPECT_EQ(labels.size(), 2);
    for (const TextLabel* const label : labels) {
        EXPECT_EQ(label->textFormat(), Qt::PlainText);
        EXPECT_LE(label->block().height(), label->height());
        EXPECT_LE(label->block().naturalWidth(), label->width());
        EXPECT_TRUE(window.rect().contains(label->geometry()));
    }
}

TEST_F(UpdateWindowsTest, AskedAgainTheSameWindowComesToTheFront) {
    QDialog* const first = &show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(first));
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    EXPECT_EQ(&show(), first);
    EXPECT_TRUE(QTest::qWaitForWindowActive(first));
}

TEST_F(UpdateWindowsTest, OKAndEscapeCloseItAndItOpensAgain) {
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
        QDialog& window = show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        QTest::keyClick(&window, key);
        EXPECT_FALSE(window.isVisible());
    }
    auto* const ok = show().findChild<QPushButton*>(QStringLiteral("okButton"));
    QTest::mouseClick(ok, Qt::LeftButton);
    EXPECT_TRUE(openWindows().isEmpty());
}

TEST_F(UpdateWindowsTest, IsNamedForAssistiveTechnology) {
    const QDialog& window = show();
    EXPECT_EQ(window.accessibleName().toStdString(), "Updates come with your system");
    EXPECT_EQ(window.findChild<QPushButton*>(QStringLiteral("okButton"))->accessibleName().toStdString(), "OK");
}

}  // namespace
}  // namespace ravlin
