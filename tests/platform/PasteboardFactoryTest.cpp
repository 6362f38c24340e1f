#include "Platform/Clipboard/PasteboardFactory.h"

#include <array>
#include <cstdlib>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ravlin {
namespace {

using testing::ElementsAre;

class SomePasteboard final : public SystemPasteboard {
public:
    int fileDescriptor() const override { return -1; }

private:
    bool awaitAnswer() override { return true; }
    bool isEmpty() const override { return true; }
    Text ownText() const override { return nullptr; }
    std::optional<std::string> read(Type /*type*/) override { return std::nullopt; }
    bool write(const Text& /*text*/, std::int64_t /*count*/) override { return true; }
    void clear() override {}
    void wakeUp() override {}
    void handleEvents() override {}
    void settle() override {}
};

PasteboardBackEnd working(std::string_view name) {
    return {name, [](std::string& /*whyNot*/) { return std::make_unique<SomePasteboard>(); }};
}

PasteboardBackEnd failing(std::string_view name, const std::string& reason) {
    return {name, [reason](std::string& whyNot) {
                whyNot = reason;
                return nullptr;
            }};
}

class PasteboardFactory : public testing::Test {
protected:
    PasteboardLog log() {
        return [this](const std::string& line) { lines_.push_back(line); };
    }
    std::vector<std::string> lines_;
};

TEST_F(PasteboardFactory, TakesTheFirstThatWorks) {
    const std::array backEnds = {working("one"), working("two")};
    EXPECT_NE(openSystemPasteboard(log(), backEnds), nullptr);
    EXPECT_THAT(lines_, ElementsAre("clipboard: one"));
}

TEST_F(PasteboardFactory, TellsWhyTheOnesBeforeDidNot) {
    const std::array backEnds = {failing("one", "no compositor"), failing("two", "no display"), working("three")};
    EXPECT_NE(openSystemPasteboard(log(), backEnds), nullptr);
    EXPECT_THAT(lines_, ElementsAre("clipboard: three (one: no compositor; two: no display)"));
}

TEST_F(PasteboardFactory, IsNullWhereNoneWorks) {
    const std::array backEnds = {failing("one", "no compositor")};
    EXPECT_EQ(openSystemPasteboard(log(), backEnds), nullptr);
    EXPECT_THAT(lines_, ElementsAre("clipboard: none (one: no compositor)"));
}

TEST_F(PasteboardFactory, WithoutADisplayThereIsNoClipboard) {
    unsetenv("DISPLAY");
    unsetenv("WAYLAND_DISPLAY");
    EXPECT_EQ(openSystemPasteboard(log(), pasteboardBackEnds()), nullptr);
    EXPECT_THAT(lines_, ElementsAre("clipboard: none (Wayland: WAYLAND_DISPLAY is not set; X11: no display answers)"));
}

}  // namespace
}  // namespace ravlin
