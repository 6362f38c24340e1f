// QClipboard, on a Qt platform without a desktop.

#include "Platform/Desktop/QClipboardPasteboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QUrl>

#include <chrono>
#include <optional>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>

namespace ravlin {
namespace {

using testing::Optional;
using Type = Pasteboard::Type;

class QClipboardPasteboardTest : public testing::Test {
protected:
    static void copyElsewhere(const QString& type, const QByteArray& bytes) {
        auto* const content = new QMimeData;  // NOLINT(cppcoreguidelines-owning-memory): the clipboard takes it
        content->setData(type, bytes);
        QGuiApplication::clipboard()->setMimeData(content);
    }

    bool isWakeUpDue() const {
        pollfd waited = {.fd = pasteboard_->fileDescriptor(), .events = POLLIN, .revents = 0};
        return poll(&waited, 1, 0) > 0;
    }

    std::unique_ptr<SystemPasteboard> pasteboard_ = std::make_unique<QClipboardPasteboard>();
};

TEST_F(QClipboardPasteboardTest, EveryChangeCounts) {
    const std::int64_t count = pasteboard_->changeCount();
    copyElsewhere(QStringLiteral("text/plain"), "theirs");
    EXPECT_EQ(pasteboard_->changeCount(), count + 1);
    EXPECT_EQ(pasteboard_->string(), "theirs");
    pasteboard_->clearContents();
    EXPECT_TRUE(pasteboard_->setString("ours \u20ac"));
    EXPECT_EQ(pasteboard_->changeCount(), count + 2) << "with nothing in between";
    EXPECT_EQ(pasteboard_->string(), "ours \u20ac");
    EXPECT_THAT(pasteboard_->itemCount(), Optional(1U));
}

TEST_F(QClipboardPasteboardTest, CopySinceALookIsKept) {
    copyElsewhere(QStringLiteral("text/plain"), "theirs");
    const std::int64_t count = pasteboard_->changeCount();
    copyElsewhere(QStringLiteral("text/plain"), "newer");
    EXPECT_FALSE(pasteboard_->replaceIfUnchanged(count, "too late"));
    EXPECT_EQ(pasteboard_->string(), "newer");
    EXPECT_TRUE(pasteboard_->replaceIfUnchanged(pasteboard_->changeCount(), "ours"));
    EXPECT_EQ(pasteboard_->string(), "ours");
}

TEST_F(QClipboardPasteboardTest, TypesAreToldApart) {
    copyElsewhere(QStringLiteral("text/html"), "<b>x</b>");
    EXPECT_EQ(pasteboard_->string(), std::nullopt);
    EXPECT_EQ(pasteboard_->data(Type::html), "<b>x</b>");
    copyElsewhere(QStringLiteral("text/rtf"), "{\\rtf1 x}");
    EXPECT_EQ(pasteboard_->string(), std::nullopt);
    EXPECT_EQ(pasteboard_->data(Type::rtf), "{\\rtf1 x}");
    EXPECT_EQ(pasteboard_->data(Type::html), std::nullopt);
}

TEST_F(QClipboardPasteboardTest, ListOfFilesIsNoText) {
    auto* const files = new QMimeData;  // NOLINT(cppcoreguidelines-owning-memory): the clipboard takes it
    files->setUrls({QUrl(QStringLiteral("file:///tmp/a"))});
    QGuiApplication::clipboard()->setMimeData(files);
    EXPECT_TRUE(QGuiApplication::clipboard()->mimeData()->hasText()) << "as Qt sees it";
    EXPECT_EQ(pasteboard_->string(), std::nullopt);
    EXPECT_THAT(pasteboard_->itemCount(), Optional(1U));
}

TEST_F(QClipboardPasteboardTest, ClearingAloneTakesEffectFromTheEventLoop) {
    ASSERT_TRUE(pasteboard_->setString("ours"));
    EXPECT_FALSE(isWakeUpDue());
    pasteboard_->clearContents();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("ours"));
    EXPECT_TRUE(isWakeUpDue());
    pasteboard_->processEvents();
    EXPECT_FALSE(isWakeUpDue());
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QString());
    EXPECT_THAT(pasteboard_->itemCount(), Optional(0U));
}

}  // namespace
}  // namespace ravlin

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
