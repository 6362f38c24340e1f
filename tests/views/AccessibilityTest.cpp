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
        {"statusLabel", QAccessible::Notification, "Clipboard is empty — copy some text first"},
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
    EXPECT_THAT(
        readOut(),
        testing::ElementsAre("Ravlin", "Copy text, pick a transform — it's ready to paste with ⌘V.",
                             "Search transforms", "Clear search", "Transforms", "Convert", "JSON Pretty", "JSON Minify",
                             "Clipboard is empty — copy some text first", "Check for Updates…", "Quit"));
}

TEST_F(AccessibilityTest, RowsAreReadInVisualOrderWhateverOrderTheyWereMadeIn) {
    for (const int position : {2000, 900, 1500, 0, 300, 2400}) scrollTo(position);
    listed();
    std::vector<std::string> expected;
    for (const TransformGroup& group : groupedTransforms("")) {
        expected.emplace_back(group.category.title());
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

    using Event = std::pair<QAccessible::Event, QObject*>;
    static std::vector<Event>& events() {
        static std::vector<Event> all;
        return all;
    }

private:
    static void record(QAccessibleEvent* event) { events().emplace_back(event->type(), event->object()); }
};

TEST_F(AnnouncementTest, EveryRunIsAnnounced) {
    for (int run = 0; run < 2; ++run) {
        events().clear();
        panel->apply(TextTransform::upperCase);
        EXPECT_THAT(events(), testing::Contains(Event(QAccessible::ObjectShow, &status()))) << run;
        EXPECT_EQ(name(describe(status())), statusText());
    }
    events().clear();
    pasteboard.copyElsewhere({});
    panel->apply(TextTransform::upperCase);
    EXPECT_THAT(events(), testing::Contains(Event(QAccessible::NameChanged, &status())));
}

TEST_F(AnnouncementTest, TheHighlightIsToldAsFocus) {
    press(Qt::Key_Down);
    EXPECT_THAT(events(), testing::Contains(Event(QAccessible::Focus, &row(TextTransform::stripTracking))));
    EXPECT_TRUE(describe(row(TextTransform::stripTracking)).state().focused);
}

}  // namespace
}  // namespace ravlin
