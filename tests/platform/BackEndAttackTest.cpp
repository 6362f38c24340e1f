// What programs that read our text, or let us read theirs, can do to a clipboard of any desktop.

#include "tests/platform/BackEnd.h"

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>

#include <gtest/gtest.h>
#include <unistd.h>

namespace ravlin::tests {
namespace {

using namespace std::literals;

/// The memory of this process, in bytes.
std::size_t residentSize() {
    std::ifstream file("/proc/self/statm");
    std::size_t all = 0;
    std::size_t resident = 0;
    file >> all >> resident;
    return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

std::ptrdiff_t openDescriptorCount() {
    const std::filesystem::directory_iterator open("/proc/self/fd");
    return std::distance(begin(open), end(open));
}

TEST(BackEndAttack, HoweverManyReadersAskForAnEncodingItIsMadeOnce) {
    constexpr std::size_t kMegabyte = 1'000'000;
    constexpr std::size_t kSize = 20 * kMegabyte;
    for (const std::string& character : {"e"s, "\u00e9"s}) {
        const std::size_t characterCount = kSize / character.size();
        std::string text;
        for (std::size_t i = 0; i < characterCount; ++i) text += character;
        const auto pasteboard = openBackEnd();
        ASSERT_TRUE(pasteboard->setString(text));
        const std::size_t before = residentSize();
        const auto readers = stallElsewhere(*pasteboard);
        for (int i = 0; i < 30; ++i) readers->begin("STRING");
        EXPECT_LT(residentSize(), before + kSize + 15 * kMegabyte);
        EXPECT_EQ(pasteElsewhere("STRING", *pasteboard)->size(), characterCount);
    }
}

TEST(BackEndAttack, ReaderThatStallsIsGivenUpWithoutAnyOtherEvent) {
    const auto pasteboard = openBackEnd({.reader = 500ms});
    EXPECT_EQ(pasteboard->nextDeadline(), std::nullopt) << "at rest nobody has to wake up";
    ASSERT_TRUE(pasteboard->setString(textOfSize(3000000)));
    const auto readers = stallElsewhere(*pasteboard);
    for (int i = 0; i < 3; ++i) readers->begin("UTF8_STRING");
    ASSERT_NE(pasteboard->nextDeadline(), std::nullopt);
    while (const auto deadline = pasteboard->nextDeadline()) {
        EXPECT_LT(*deadline, Clock::now() + 600ms);
        while (Clock::now() < *deadline) isReadable(-1, 10ms);
        pasteboard->processEvents();
    }
    EXPECT_TRUE(pasteElsewhere("UTF8_STRING", *pasteboard) == textOfSize(3000000));
    EXPECT_EQ(pasteboard->nextDeadline(), std::nullopt);
}

TEST(BackEndAttack, DeadlineThatAnOperationBringsAboutIsMadeKnown) {
    const auto pasteboard = openBackEnd();
    ASSERT_TRUE(pasteboard->setString(textOfSize(3000000)));
    const auto readers = stallElsewhere(*pasteboard);
    readers->ask("UTF8_STRING");
    EXPECT_TRUE(isReadable(pasteboard->fileDescriptor(), kGenerously));
    while (!pasteboard->nextDeadline()) pasteboard->changeCount();  // as a click does
    EXPECT_TRUE(isReadable(pasteboard->fileDescriptor(), kGenerously)) << "the application would not look";
}

TEST(BackEndAttack, ReadersWithoutEndHoldNobodyUp) {
    const auto pasteboard = openBackEnd();
    const std::string text = textOfSize(300000);
    ASSERT_TRUE(pasteboard->setString(text));
    const auto readers = stallElsewhere(*pasteboard);
    constexpr int kReaderCount = 400;
    const std::ptrdiff_t before = openDescriptorCount();
    for (int i = 0; i < kReaderCount; ++i) readers->begin("UTF8_STRING");
    EXPECT_LE(openDescriptorCount() - before, kReaderCount + 260) << "the first were given up for the last";
    EXPECT_TRUE(pasteElsewhere("UTF8_STRING", *pasteboard) == text);
    EXPECT_TRUE(pasteboard->setString("next"));
    EXPECT_EQ(pasteElsewhere("UTF8_STRING", *pasteboard), "next");
}

}  // namespace
}  // namespace ravlin::tests
