#include "Views/Announcer.h"
#include "tests/views/PanelFixture.h"

#include <QAccessible>
#include <QDBusInterface>
#include <QDBusMessage>

#include <gmock/gmock.h>

namespace ravlin {
namespace {

class AccessibilityTest : public tests::PanelFixture {
protected:
    void SetUp() override { open(); }

    static QAccessibleInterface& describe(QObject& object) {
        QAccessibleInterface* const interface = QAccessible::queryAccessibleInterface(&object);
        if (interface == nullptr) throw std::runtime_error("not accessible");
        return *interface;
    }
    static std::string name(QAccessibleInterface& each) { return each.text(QAccessible::Name).toStdString(); }

    /// The names of everything below `parent` that is shown and has one, in a screen reader's order.
    static void collect(QAccessibleInterface& parent, std::vector<std::string>& names) {
        for (int i = 0; i < parent.childCount(); ++i) {
            QAccessibleInterface* const child = parent.child(i);
            if (child->state().invisible) continue;
            if (!name(*child).empty()) names.push_back(name(*child));
            collect(*child, names);
        }
    }
    std::vector<std::string> readOut() {
        std::vector<std::string> names;
        collect(describe(*panel), names);
        return names;
    }
};

TEST_F(AccessibilityTest, RowsArePushButtonsNamedByTheirTitleAndDescribedByTheirSubtitle) {
    listed();
    for (TransformRow* const each : list().widget()->findChildren<TransformRow*>()) {
        QAccessibleInterface& interface = describe(*each);
        EXPECT_EQ(interface.role(), QAccessible::PushButton);
        EXPECT_EQ(name(interface), each->transform().title());
        EXPECT_EQ(interface.text(QAccessible::Description).toStdString(), each->transform().subtitle());
        EXPECT_TRUE(interface.state().focusable);
    }
}

TEST_F(AccessibilityTest, PressingARowRunsIt) {
    pasteboard.copyTextElsewhere("hello");
    QAccessibleActionInterface* const actions = describe(row(TextTransform::stripFormatting)).actionInterface();
    ASSERT_NE(actions, nullptr);
    EXPECT_TRUE(actions->actionNames().contains(QAccessibleActionInterface::pressAction()));
    actions->doAction(QAccessibleActionInterface::pressAction());
    ASSERT_TRUE(QTest::qWaitFor([this] { return status().isVisible(); }));
    EXPECT_THAT(statusText(), testing::StartsWith("Strip formatting — ready"));
}

TEST_F(AccessibilityTest, EveryControlHasAName) {
    type("e");
    panel->apply(TextTransform::upperCase);
    const struct {
        const char* objectName;
        QAccessible::Role role;
        const char* name;
    } vectors[] = {
        {"searchField", QAccessible::EditableText, "Search transforms"},
        {"clearButton", QAccessible::PushButton, "Clear search"},
        {"checkForUpdatesButton", QAccessible::PushButton, "Check for Updates…"},
        {"quitButton", QAccessible::PushButton, "Quit"},
        {"statusLabel", QAccessible::StaticText, "Clipboard is empty — copy some text first"},
        {"announcer", QAccessible::Notification, "Clipboard is empty — copy some text first"},
        {"titleLabel", QAccessible::StaticText, "Ravlin"},
        {"section.Clean", QAccessible::Heading, "Clean"},
        {"section.Encode / Dev", QAccessible::Heading, "Encode / Dev"},
    };
    for (const auto& [objectName, role, expectedName] : vectors) {
        QAccessibleInterface& interface = describe(find<QWidget>(objectName));
        EXPECT_EQ(interface.role(), role) << objectName;
        EXPECT_EQ(name(interface), expectedName) << objectName;
    }
    for (const QAbstractButton* const button : panel->findChildren<QAbstractButton*>()) {
        EXPECT_FALSE(button->objectName().isEmpty());
        EXPECT_FALSE(button->accessibleName().isEmpty()) << button->objectName().toStdString();
    }
    EXPECT_EQ(describe(*panel).role(), QAccessible::Window);
    EXPECT_EQ(name(describe(*panel)), "Ravlin");
}

TEST_F(AccessibilityTest, ThePanelIsReadFromTopToBottom) {
    type("json");
    panel->apply(TextTransform::upperCase);
    EXPECT_THAT(readOut(),
                testing::ElementsAre("Ravlin", "Copy text, pick a transform — it's ready to paste with Control V.",
                                     "Search transforms", "Clear search", "Transforms", "Convert", "Convert",
                                     "JSON Pretty", "JSON Minify", "Clipboard is empty — copy some text first",
                                     "Check for Updates…", "Quit", "Clipboard is empty — copy some text first"))
        << "a group and its heading have one name, and what has just been announced comes last";
}

TEST_F(AccessibilityTest, RowsAreReadInVisualOrderWhateverOrderTheyWereMadeIn) {
    for (const int position : {2000, 900, 1500, 0, 300, 2400}) scrollTo(position);
    listed();
    std::vector<std::string> expected;
    for (const TransformGroup& group : groupedTransforms("")) {
        expected.insert(expected.end(), 2, std::string(group.category.title()));  // the group, and its heading
        for (const TextTransform transform : group.items) expected.emplace_back(transform.title());
    }
    std::vector<std::string> names;
    collect(describe(*list().widget()), names);
    EXPECT_EQ(names, expected);
}

TEST_F(AccessibilityTest, ThePinnedCopyOfAHeaderIsNotReadASecondTime) {
    QAccessibleInterface& interface = describe(find<QWidget>("pinnedHeader"));
    EXPECT_NE(interface.role(), QAccessible::Heading);
    EXPECT_EQ(name(interface), "");
}

/// What assistive technology is notified of. Only a real desktop has any.
class AnnouncementTest : public AccessibilityTest {
protected:
    void SetUp() override {
        events().clear();
        QAccessible::installUpdateHandler(&AnnouncementTest::record);
        wakeAssistiveTechnology();
        ASSERT_TRUE(QTest::qWaitFor([] { return QAccessible::isActive(); }));
        AccessibilityTest::SetUp();
    }
    void TearDown() override { QAccessible::installUpdateHandler(nullptr); }

    // As a screen reader does when it starts.
    static void wakeAssistiveTechnology() {
        QDBusInterface bus(QStringLiteral("org.a11y.Bus"), QStringLiteral("/org/a11y/bus"),
                           QStringLiteral("org.a11y.Bus"));
        ASSERT_EQ(bus.call(QStringLiteral("GetAddress")).type(), QDBusMessage::ReplyMessage);
    }

    /// What was announced since the events were cleared.
    static std::vector<std::string> announced() {
        std::vector<std::string> texts;
        for (const auto& [event, object] : events()) {
            if (event != QAccessible::ObjectShow) continue;
            QAccessibleInterface& interface = describe(*object);
            if (interface.role() == QAccessible::Notification) texts.push_back(name(interface));
        }
        return texts;
    }

    using Event = std::pair<QAccessible::Event, QObject*>;
    static std::vector<Event>& events() {
        static std::vector<Event> all;
        return all;
    }

private:
    static void record(QAccessibleEvent* event) { events().emplace_back(event->type(), event->object()); }
};

TEST_F(AnnouncementTest, EveryOutcomeIsAnnouncedOnce) {
    for (int run = 0; run < 3; ++run) {
        events().clear();
        panel->apply(TextTransform::upperCase);
        EXPECT_THAT(announced(), testing::ElementsAre("Clipboard is empty — copy some text first")) << run;
    }
    close();
    events().clear();
    open();
    EXPECT_THAT(announced(), testing::IsEmpty()) << "an outcome is no news when the panel opens again";
}

TEST_F(AnnouncementTest, WhatIsSpokenNamesTheKeysOfThisKeyboard) {
    pasteboard.copyTextElsewhere("hello");
    panel->apply(TextTransform::upperCase);
    EXPECT_THAT(announced(), testing::ElementsAre("UPPERCASE — ready, paste with Control V  (5→5 chars)"));
    EXPECT_EQ(name(describe(status())), "UPPERCASE — ready, paste with Control V  (5→5 chars)");
    EXPECT_EQ(statusText(), "UPPERCASE — ready, paste with ⌘V  (5→5 chars)") << "as it is seen";
    EXPECT_EQ(find<TextLabel>("hintLabel").text().toStdString(),
              "Copy text, pick a transform — it's ready to paste with ⌘V.");
}

TEST_F(AnnouncementTest, TheNumberOfMatchesIsAnnouncedOnceTheUserPauses) {
    const struct {
        const char* typed;
        const char* announcement;
    } vectors[] = {{"json", "2 matches, Return runs JSON Pretty"},
                   {" pretty", "1 match, Return runs JSON Pretty"},
                   {"xyz", "No transforms match “json prettyxyz”."}};
    for (const auto& [typed, announcement] : vectors) {
        events().clear();
        type(typed);
        EXPECT_THAT(announced(), testing::IsEmpty()) << "while letters follow each other";
        ASSERT_TRUE(QTest::qWaitFor([this] { return !announced().empty(); })) << typed;
        EXPECT_THAT(announced(), testing::ElementsAre(announcement));
    }
    events().clear();
    press(Qt::Key_Escape);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !announced().empty(); }));
    EXPECT_THAT(announced(), testing::ElementsAre(std::to_string(TextTransform::allCases().size()) + " transforms"));
}

TEST_F(AnnouncementTest, AnOutcomeTakesThePlaceOfANumberThatWasStillToBeSaid) {
    type("upper");
    panel->apply(TextTransform::upperCase);
    auto& announcer = find<Announcer>("announcer");
    EXPECT_FALSE(announcer.isAboutToSpeak());
    EXPECT_THAT(announced(), testing::ElementsAre("Clipboard is empty — copy some text first"));
    type("x");
    EXPECT_TRUE(announcer.isAboutToSpeak());
    close();
    EXPECT_FALSE(announcer.isAboutToSpeak()) << "nothing is said of a panel that is closed";
}

TEST_F(AnnouncementTest, EveryRowIsFoundInItsSectionThoughOutOfView) {
    QAccessibleInterface& content = describe(*list().widget());
    std::vector<std::vector<std::string>> sections;
    for (int i = 0; i < content.childCount(); ++i) {
        QAccessibleInterface& section = *content.child(i);
        if (section.state().invisible) continue;
        EXPECT_EQ(section.role(), QAccessible::Grouping);
        sections.push_back({name(section)});
        EXPECT_EQ(section.child(0)->role(), QAccessible::Heading);
        for (int j = 1; j < section.childCount(); ++j) {
            QAccessibleInterface& each = *section.child(j);
            EXPECT_EQ(section.indexOfChild(&each), j);
            EXPECT_FALSE(each.state().invisible);
            EXPECT_GT(each.rect().height(), 0);
            EXPECT_TRUE(each.actionInterface()->actionNames().contains(QAccessibleActionInterface::pressAction()));
            sections.back().push_back(name(each) + ": " + each.text(QAccessible::Description).toStdString());
        }
    }
    std::vector<std::vector<std::string>> expected;
    for (const TransformGroup& group : groupedTransforms("")) {
        expected.push_back({std::string(group.category.title())});
        for (const TextTransform transform : group.items)
            expected.back().push_back(std::string(transform.title()) + ": " + std::string(transform.subtitle()));
    }
    EXPECT_EQ(sections, expected);
}

TEST_F(AnnouncementTest, ARowOutOfViewCanBePressedAndTakesTheFocusIntoView) {
    const TextTransform last = TextTransform::allCases().back();
    TransformRow& lastRow = row(last);
    EXPECT_TRUE(inView(lastRow).isEmpty());
    pasteboard.copyTextElsewhere("hello");
    QAccessibleActionInterface* const actions = describe(lastRow).actionInterface();
    ASSERT_NE(actions, nullptr);
    actions->doAction(QAccessibleActionInterface::pressAction());
    ASSERT_TRUE(QTest::qWaitFor([this] { return !announced().empty(); }));
    EXPECT_THAT(announced(), testing::ElementsAre(testing::StartsWith(std::string(last.title()) + " — ready")));
    actions->doAction(QAccessibleActionInterface::setFocusAction());
    EXPECT_TRUE(lastRow.hasFocus());
    EXPECT_EQ(inView(lastRow).height(), lastRow.height());
    EXPECT_EQ(list().marked(), last) << "what Return runs";
}

TEST_F(AnnouncementTest, TheHighlightIsToldAsFocus) {
    press(Qt::Key_Down);
    EXPECT_THAT(events(), testing::Contains(Event(QAccessible::Focus, &row(TextTransform::stripTracking))));
    EXPECT_TRUE(describe(row(TextTransform::stripTracking)).state().focused);
}

}  // namespace
}  // namespace ravlin
