// What programs that read our text, or let us read theirs, can do to a clipboard of any desktop.

#include "tests/platform/BackEnd.h"

#include <chrono>
#include <fstream>
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

}  // namespace
}  // namespace ravlin::tests
