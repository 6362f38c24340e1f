#include "Views/Accessibility.h"
#include "Views/ReleaseNotes.h"
#include "Views/TextLabel.h"
#include "Views/UpdatePage.h"
#include "Views/UpdateProgressPage.h"
#include "Views/UpdateWindow.h"
#include "Views/UpdateWindows.h"

#include <QAccessible>
#include <QApplication>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>

#include <algorithm>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ravlin {
namespace {

using testing::ElementsAre;

class UpdateWindowsTest : public testing::Test {
protected:
    static QList<UpdateWindow*> openWindows() {
        QList<UpdateWindow*> open;
        for (QWidget* const widget : QApplication::topLevelWidgets())
            if (auto* const window = qobject_cast<UpdateWindow*>(widget); window != nullptr && window->isVisible())
                open.append(window);
        return open;
    }
    /// The only window that is open.
    static UpdateWindow& window() {
        const auto open = openWindows();
        if (open.size() != 1) throw std::runtime_error(std::to_string(open.size()) + " windows are open");
        return *open.constFirst();
    }
    static UpdatePage& page() { return *window().page(); }
    static UpdateWindow& windowOnceShown() {
        if (!QTest::qWaitFor([] { return !openWindows().isEmpty(); }, 30'000)) throw std::runtime_error("no window");
        return window();
    }
    static std::string text(const char* label) {
        const auto* const found = page().findChild<QLabel*>(QString::fromUtf8(label));
        return found == nullptr ? "" : found->text().toStdString();
    }
    static std::string heading() { return text("headingLabel"); }
    static std::string text() { return text("textLabel"); }
    static std::vector<std::string> buttons() {
        std::vector<std::string> texts;
        for (const QPushButton* const each : page().findChildren<QPushButton*>())
            texts.push_back((each->isDefault() ? "*" : "") + each->text().toStdString());
        return texts;
    }
    static QPushButton& button(const char* name) { return *page().findChild<QPushButton*>(QString::fromUtf8(name)); }
    static void click(const char* name) {
        QCoreApplication::processEvents();  // lays out what has just been shown
        QTest::mouseClick(&button(name), Qt::LeftButton);
    }

    static FoundUpdate update() {
        return {.version = QStringLiteral("1.1.0"),
                .currentVersion = QStringLiteral("1.0.0"),
                .notes = QStringLiteral("# New\n\nIt is *faster*."),
                .notesAreMarkdown = true,
                .link = QUrl(QStringLiteral("https://ravlin.example/"))};
    }
    void showFound(const FoundUpdate& found, bool wasAskedFor = true) {
        windows.showFound(found, wasAskedFor, [this](UpdateAnswer answer) { answers.push_back(answer); });
    }
    void showAllOf(const std::function<void()>& look) {
        const std::vector<std::function<void()>> all = {
            [this] { windows.askForPermission([](auto) {}); },
            [this] { windows.showDownloading([] {}); },
            [this] {
                windows.showDownloading([] {});
                windows.showProgress(1'200'000, 3'400'000);
            },
            [this] { windows.showInstalling(); },
            [this] { showFound(update()); },
            [this] { windows.showUpToDate(QStringLiteral("1.1.0")); },
            [this] { windows.showSystemTooOld(QStringLiteral("1.1.0")); },
            [this] { windows.showUpdatesComeWithSystem(QStringLiteral("Debian")); },
            [this] { windows.showFailure({.error = UpdateError::notGenuine, .detail = {}}); },
            [this] {
                windows.showFailure({.error = UpdateError::mayNotReplace,
                                     .detail = QStringLiteral("/opt/") + QString(80, QLatin1Char('x'))});
            },
        };
        for (const auto& show : all) {
            show();
            QApplication::processEvents();
            // A window manager gives an open window its new size in its own time.
            EXPECT_TRUE(QTest::qWaitFor([] { return window().size() == window().sizeHint(); })) << heading();
            look();
        }
    }

    /// Waits as long as a check may take before it shows a window, and closes the window that showed this.
    static void waitUntilAnotherCheckShowsItself() {
        UpdateWindows clock;
        clock.showChecking([] {});
        const auto isShown = [](UpdateWindow* each) {
            return each->windowTitle() == QStringLiteral("Updating Ravlin");
        };
        EXPECT_TRUE(QTest::qWaitFor([&] { return std::ranges::any_of(openWindows(), isShown); }, 30'000));
    }

    UpdateWindows windows;
    std::vector<UpdateAnswer> answers;
};

// What they say

TEST_F(UpdateWindowsTest, AsksWhetherToCheckAutomatically) {
    windows.askForPermission([](auto) {});
    EXPECT_EQ(window().windowTitle().toStdString(), "Software Update");
    EXPECT_EQ(heading(), "Check for updates automatically?");
    EXPECT_EQ(text(),
              "Should Ravlin automatically check for updates? You can always check for updates yourself in Ravlin’s "
              "panel.");
    EXPECT_THAT(buttons(), ElementsAre("Don’t Check", "*Check Automatically"));
}

TEST_F(UpdateWindowsTest, OffersAnUpdateWithItsNotes) {
    showFound(update());
    EXPECT_EQ(heading(), "A new version of Ravlin is available!");
    EXPECT_EQ(text(), "Ravlin 1.1.0 is now available — you have 1.0.0. Would you like to install it now?");
    EXPECT_EQ(text("notesLabel"), "Release Notes:");
    EXPECT_EQ(page().findChild<ReleaseNotes*>()->toPlainText().toStdString(), "New\nIt is faster.");
    EXPECT_THAT(buttons(), ElementsAre("Skip This Version", "Remind Me Later", "*Install and Relaunch"));
}

TEST_F(UpdateWindowsTest, AnImportantUpdateCannotBeSkipped) {
    FoundUpdate important = update();
    important.isCritical = true;
    important.canBeSkipped = false;
    showFound(important);
    EXPECT_EQ(text(),
              "Ravlin 1.1.0 is now available — you have 1.0.0. This is an important update; would you like to install "
              "it now?");
    EXPECT_THAT(buttons(), ElementsAre("Remind Me Later", "*Install and Relaunch"));
}

TEST_F(UpdateWindowsTest, AnUpdateThatCannotBeInstalledCanBeReadAbout) {
    FoundUpdate elsewhere = update();
    elsewhere.canBeInstalled = false;
    elsewhere.notes.clear();
    showFound(elsewhere);
    EXPECT_EQ(text(),
              "Ravlin 1.1.0 is now available — you have 1.0.0. Would you like to learn more about this update on the "
              "web?");
    EXPECT_EQ(text("notesLabel"), "");
    EXPECT_THAT(buttons(), ElementsAre("Skip This Version", "Remind Me Later", "*Learn More…"));
}

TEST_F(UpdateWindowsTest, TellsHowFarItIs) {
    windows.showDownloading([] {});
    EXPECT_EQ(window().windowTitle().toStdString(), "Updating Ravlin");
    EXPECT_EQ(heading(), "Downloading update…");
    EXPECT_THAT(buttons(), ElementsAre("Cancel"));
    windows.showProgress(1'200'000, 3'400'000);
    EXPECT_EQ(text("amountLabel"), "1.2 MB of 3.4 MB");
    EXPECT_EQ(page().findChild<QProgressBar*>()->value(), 352);
    windows.showInstalling();
    EXPECT_EQ(heading(), "Installing update…");
    EXPECT_FALSE(button("cancelButton").isEnabled());
}

TEST_F(UpdateWindowsTest, AmountsAreTheSameInEveryLocale) {
    EXPECT_EQ(progressText(0, 3'400'000).toStdString(), "0 bytes of 3.4 MB");
    EXPECT_EQ(progressText(512 << 20, 512 << 20).toStdString(), "536.9 MB of 536.9 MB");
    EXPECT_EQ(progressText(12'345, 0).toStdString(), "12.3 kB");
}

TEST_F(UpdateWindowsTest, TellsResults) {
    windows.showUpToDate(QStringLiteral("1.1.0"));
    EXPECT_EQ(heading() + " " + text(), "You’re up to date! Ravlin 1.1.0 is currently the newest version available.");
    windows.showSystemTooOld(QStringLiteral("1.1.0"));
    EXPECT_EQ(heading() + " " + text(),
              "Your system is too old Ravlin 1.1.0 is available, but it needs a newer system than this one.");
    windows.showUpdatesComeWithSystem({});
    EXPECT_EQ(
        heading() + " " + text(),
        "Updates come with your system This copy of Ravlin is updated by your system’s software updater, together "
        "with your other software.");
    windows.showUpdatesComeWithSystem(QStringLiteral("Debian"));
    EXPECT_EQ(text(),
              "This copy of Ravlin comes from Debian and is updated by your system’s software updater, together with "
              "your other software.");
    EXPECT_THAT(buttons(), ElementsAre("*OK"));
}

TEST_F(UpdateWindowsTest, TellsWhatWentWrong) {
    const struct {
        UpdateError error;
        const char* detail;
        const char* heading;
        const char* text;
    } cases[] = {
        {UpdateError::notFetched, "", "Update Error",
         "Update information could not be fetched. Please try again later."},
        {UpdateError::notGenuine, "", "Update Error",
         "The update information is not genuine or is damaged, and was not used."},
        {UpdateError::olderThanBefore, "", "Update Error",
         "The server offered older update information than it did before. It was not used."},
        {UpdateError::outOfDate, "", "Update Error",
         "The server’s update information is out of date. Please try again later."},
        {UpdateError::notDownloaded, "", "Update Error", "The update could not be downloaded. Please try again later."},
        {UpdateError::signatureIsWrong, "", "Update Error",
         "The update is not signed by Ravlin’s makers and was thrown away. Ravlin is unchanged."},
        {UpdateError::notInstalled, "", "Update Error", "The update could not be installed. Ravlin is unchanged."},
        {UpdateError::notInstalled, "there is not enough free space", "Update Error",
         "The update could not be installed. Ravlin is unchanged. (there is not enough free space)"},
        {UpdateError::mayNotReplace, "/opt/Ravlin.AppImage", "Ravlin Can’t Be Updated Here",
         "You may not replace the file “/opt/Ravlin.AppImage”."},
        {UpdateError::notFromASingleFile, "", "Ravlin Can’t Be Updated Here", "It was not started from its AppImage."},
    };
    for (const auto& each : cases) {
        windows.showFailure({.error = each.error, .detail = QString::fromUtf8(each.detail)});
        EXPECT_EQ(heading(), each.heading);
        EXPECT_EQ(text(), each.text);
    }
}

TEST_F(UpdateWindowsTest, LabelsArePlainTextAndNotClipped) {
    showAllOf([] {
        for (const TextLabel* const label : page().findChildren<TextLabel*>()) {
            if (!label->isVisible()) continue;
            EXPECT_EQ(label->textFormat(), Qt::PlainText);
            EXPECT_LE(label->block().height(), label->height()) << label->text().toStdString();
            EXPECT_LE(label->block().naturalWidth(), label->width()) << label->text().toStdString();
            EXPECT_TRUE(page().rect().contains(label->geometry())) << label->text().toStdString();
        }
    });
}

TEST_F(UpdateWindowsTest, EverythingIsNamedForAssistiveTechnology) {
    showAllOf([] {
        EXPECT_EQ(window().accessibleName().toStdString(), heading());
        for (const QPushButton* const each : page().findChildren<QPushButton*>())
            EXPECT_EQ(each->accessibleName(), each->text());
        for (const QProgressBar* const each : page().findChildren<QProgressBar*>())
            EXPECT_FALSE(each->accessibleName().isEmpty());
    });
}

// What they do

TEST_F(UpdateWindowsTest, ReturnPressesTheMarkedButton) {
    showAllOf([this] {
        if (qobject_cast<UpdateProgressPage*>(&page()) != nullptr) return;
        windows.bringToFront();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window()));
        const auto* const focus = qobject_cast<QPushButton*>(window().focusWidget());
        ASSERT_NE(focus, nullptr) << heading();
        EXPECT_TRUE(focus->isDefault()) << heading();
    });
}

TEST_F(UpdateWindowsTest, ThePartThatTheKeyboardIsInIsSeenAndPressesNothingByAccident) {
    showAllOf([this] {
        windows.bringToFront();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window()));
        const QWidget* const focus = window().focusWidget();
        ASSERT_NE(focus, nullptr) << heading();
        EXPECT_TRUE(focus->isVisible()) << heading();
        if (qobject_cast<UpdateProgressPage*>(&page()) == nullptr) return;
        EXPECT_NE(qobject_cast<const QProgressBar*>(focus), nullptr) << heading();
        for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return}) QTest::keyClick(window().focusWidget(), key);
        EXPECT_TRUE(window().isVisible()) << heading();
    });
}

TEST_F(UpdateWindowsTest, EscapeClosesWhateverHasTheKeyboard) {
    showFound(update());
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window()));
    page().findChild<ReleaseNotes*>()->setFocus();
    QTest::keyClick(window().focusWidget(), Qt::Key_Escape);
    EXPECT_TRUE(openWindows().isEmpty());
    EXPECT_THAT(answers, ElementsAre(UpdateAnswer::later));
    windows.showDownloading([] {});
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window()));
    QTest::keyClick(window().focusWidget(), Qt::Key_Escape);
    EXPECT_TRUE(openWindows().isEmpty());
}

TEST_F(UpdateWindowsTest, TheWindowHasTheProgramsIcon) {
    windows.showUpToDate(QStringLiteral("1.1.0"));
    for (const int size : {16, 32, 48, 64}) {
        const QImage icon = window().windowIcon().pixmap(QSize(size, size), /*devicePixelRatio=*/1).toImage();
        EXPECT_EQ(icon.size(), QSize(size, size));
        const QColor body = icon.pixelColor(size / 2, size * 9 / 10);
        EXPECT_GT(body.blue(), body.green() + 60) << "the violet of its square";
        EXPECT_EQ(icon.pixelColor(0, 0).alpha(), 0) << "whose corners are round";
    }
}

TEST_F(UpdateWindowsTest, EachAnswerIsGivenOnceAndClosesTheWindow) {
    const struct {
        const char* button;
        UpdateAnswer answer;
    } cases[] = {{"skipButton", UpdateAnswer::skip},
                 {"laterButton", UpdateAnswer::later},
                 {"installButton", UpdateAnswer::install}};
    for (const auto& each : cases) {
        answers.clear();
        showFound(update());
        click(each.button);
        EXPECT_THAT(answers, ElementsAre(each.answer)) << each.button;
        EXPECT_TRUE(openWindows().isEmpty());
    }
}

TEST_F(UpdateWindowsTest, ClosingAnOfferPutsItOff) {
    showFound(update());
    window().close();
    showFound(update());
    QTest::keyClick(&window(), Qt::Key_Escape);
    EXPECT_THAT(answers, ElementsAre(UpdateAnswer::later, UpdateAnswer::later));
}

TEST_F(UpdateWindowsTest, ClosingTheQuestionIsNoAnswerToIt) {
    std::vector<std::optional<bool>> given;
    const auto ask = [&] { windows.askForPermission([&](std::optional<bool> answer) { given.push_back(answer); }); };
    ask();
    click("checkAutomaticallyButton");
    ask();
    click("doNotCheckButton");
    ask();
    window().close();
    EXPECT_THAT(given, ElementsAre(true, false, std::nullopt));
}

TEST_F(UpdateWindowsTest, CancellingIsTold) {
    int cancelled = 0;
    windows.showDownloading([&] { ++cancelled; });
    click("cancelButton");
    windows.showDownloading([&] { ++cancelled; });
    QTest::keyClick(&window(), Qt::Key_Escape);
    EXPECT_EQ(cancelled, 2);
}

TEST_F(UpdateWindowsTest, InstallingCannotBeCancelled) {
    int cancelled = 0;
    windows.showDownloading([&] { ++cancelled; });
    windows.showInstalling();
    QTest::keyClick(&window(), Qt::Key_Escape);
    click("cancelButton");
    EXPECT_EQ(cancelled, 0);
    EXPECT_EQ(heading(), "Installing update…");
}

TEST_F(UpdateWindowsTest, AnotherWindowTakesThePlaceWithoutAnAnswer) {
    showFound(update());
    windows.showUpToDate(QStringLiteral("1.1.0"));
    EXPECT_EQ(heading(), "You’re up to date!");
    windows.dismiss();
    EXPECT_TRUE(openWindows().isEmpty());
    EXPECT_TRUE(answers.empty());
}

TEST_F(UpdateWindowsTest, ACheckShowsItselfWhereItTakesAWhile) {
    int cancelled = 0;
    windows.showChecking([&] { ++cancelled; });
    EXPECT_TRUE(openWindows().isEmpty());
    EXPECT_EQ(windowOnceShown().windowTitle().toStdString(), "Updating Ravlin");
    EXPECT_EQ(heading(), "Checking for updates…");
    click("cancelButton");
    EXPECT_EQ(cancelled, 1);
}

TEST_F(UpdateWindowsTest, AQuickCheckShowsItsResultOnly) {
    windows.showChecking([] {});
    windows.showUpToDate(QStringLiteral("1.1.0"));
    waitUntilAnotherCheckShowsItself();
    EXPECT_EQ(heading(), "You’re up to date!");
    windows.showChecking([] {});
    windows.dismiss();
    waitUntilAnotherCheckShowsItself();
    EXPECT_TRUE(openWindows().isEmpty());
}

TEST_F(UpdateWindowsTest, ToldAgainTheSameWindowComesToTheFront) {
    windows.showUpdatesComeWithSystem({});
    UpdateWindow* const first = &window();
    ASSERT_TRUE(QTest::qWaitForWindowActive(first));
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    windows.showChecking([] {});
    windows.showUpdatesComeWithSystem({});
    EXPECT_EQ(&window(), first);
    EXPECT_TRUE(QTest::qWaitForWindowActive(first));
}

TEST_F(UpdateWindowsTest, OneWindowShowsOneThingAfterTheOther) {
    windows.showUpToDate(QStringLiteral("1.1.0"));
    const UpdateWindow* const first = &window();
    showAllOf([first] { EXPECT_EQ(&window(), first); });
}

// Qt's own description of a scroll area crashes if a scroll bar that was counted is hidden before it is asked for, as
// happens whenever a window closes while assistive technology reads it.
TEST_F(UpdateWindowsTest, NotesAreReadToTheEndAlsoWhileTheyClose) {
    installAccessibleRoles();
    FoundUpdate lengthy = update();
    lengthy.notes = QStringLiteral("line\n\n").repeated(100);
    showFound(lengthy);
    QCoreApplication::processEvents();
    auto* const notes = page().findChild<ReleaseNotes*>();
    QAccessibleInterface* const interface = QAccessible::queryAccessibleInterface(notes);
    ASSERT_NE(interface, nullptr);
    EXPECT_EQ(interface->text(QAccessible::Name).toStdString(), "Release Notes");
    EXPECT_EQ(interface->text(QAccessible::Description), notes->toPlainText());
    const int count = interface->childCount();
    windows.dismiss();
    for (int i = 0; i <= count; ++i) interface->child(i);
}

TEST_F(UpdateWindowsTest, WhatNobodyAskedForDoesNotTakeTheKeyboard) {
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    showFound(update(), /*wasAskedFor=*/false);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window()));
    EXPECT_TRUE(window().testAttribute(Qt::WA_ShowWithoutActivating));
    windows.bringToFront();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window()));
    showFound(update(), /*wasAskedFor=*/true);
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window()));
}

TEST_F(UpdateWindowsTest, OKAndEscapeCloseAResultAndItOpensAgain) {
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
        windows.showUpToDate(QStringLiteral("1.1.0"));
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window()));
        QTest::keyClick(&window(), key);
        EXPECT_TRUE(openWindows().isEmpty());
    }
    windows.showUpToDate(QStringLiteral("1.1.0"));
    click("okButton");
    EXPECT_TRUE(openWindows().isEmpty());
}

// What the notes may do

TEST_F(UpdateWindowsTest, NotesLoadNothing) {
    class Notes {
    public:
        static bool loads(const QString& text, bool isMarkdown) {
            const ReleaseNotes notes(text, isMarkdown);
            return notes.document()
                       ->resource(QTextDocument::ImageResource, QUrl(QStringLiteral("file:///a.png")))
                       .isValid() ||
                   notes.document()
                       ->resource(QTextDocument::ImageResource, QUrl(QStringLiteral("https://a/b")))
                       .isValid();
        }
    };
    EXPECT_FALSE(Notes::loads(QStringLiteral("![a](file:///a.png) ![b](https://a/b)"), true));
    EXPECT_FALSE(Notes::loads(QStringLiteral("<img src=\"file:///a.png\">"), false));
}

TEST_F(UpdateWindowsTest, HTMLInNotesIsText) {
    const QString html = QStringLiteral("<b>bold</b> <img src=\"file:///a.png\">");
    EXPECT_EQ(ReleaseNotes(html, false).toPlainText(), html);
    EXPECT_FALSE(ReleaseNotes(html, true).document()->toHtml().contains(QStringLiteral("<img")));
}

TEST_F(UpdateWindowsTest, NotesLeadToTheWebOnly) {
    EXPECT_TRUE(ReleaseNotes::mayOpen(QUrl(QStringLiteral("https://ravlin.example/news"))));
    for (const char* const link : {"http://ravlin.example/", "file:///etc/passwd", "javascript:alert(1)", "https:", "a",
                                   "", "mailto:a@ravlin.example", "ssh://ravlin.example/"})
        EXPECT_FALSE(ReleaseNotes::mayOpen(QUrl(QString::fromUtf8(link)))) << link;
}

}  // namespace
}  // namespace ravlin
