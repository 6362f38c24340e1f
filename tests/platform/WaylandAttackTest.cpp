// What programs that read WaylandPasteboard's text can do to it.

#include "tests/platform/WaylandClients.h"

#include <array>
#include <chrono>
#include <future>
#include <string>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

namespace ravlin::tests {
namespace {

using namespace std::literals;

TEST(WaylandAttack, ReaderThatMakesWritesWaitMakesNobodyWait) {
    const auto pasteboard = openPasteboard();
    const std::string text = textOfSize(3'000'000);
    ASSERT_TRUE(pasteboard->setString(text));
    Paster paster;
    std::array<int, 2> ends = {-1, -1};
    ASSERT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
    Descriptor reading(ends[0]);
    Descriptor writing(ends[1]);
    paster.beginInto("UTF8_STRING", writing.get());
    EXPECT_TRUE(serveUntil(*pasteboard, [&] { return isReadable(reading.get(), 0ms); }));
    // Of the pipe that both of them have open, unless the other one takes care.
    fcntl(writing.get(), F_SETFL, fcntl(writing.get(), F_GETFL) & ~O_NONBLOCK);
    std::string taken(8192, '\0');
    ASSERT_GT(read(reading.get(), taken.data(), taken.size()), 0);
    auto serving = std::async(std::launch::async, [&] { return outputOf(kPastingProgram, *pasteboard); });
    const bool isServing = serving.wait_for(kGenerously) == std::future_status::ready;
    EXPECT_TRUE(isServing) << "the program waits for its reader";
    reading.reset();  // which ends the wait
    writing.reset();
    EXPECT_TRUE(serving.get() == text);
}

}  // namespace
}  // namespace ravlin::tests
