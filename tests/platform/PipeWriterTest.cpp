#include "Platform/Clipboard/Polling.h"
#include "Platform/Clipboard/Wayland/PipeWriter.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <future>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <utility>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ravlin {
namespace {

using namespace std::literals;
using Progress = PipeWriter::Progress;

/// What a reader has: an end to read from, and one of which it hands over a duplicate.
struct Ends {
    Descriptor reading;
    Descriptor writing;
};

Ends pipeEnds() {
    std::array<int, 2> ends = {-1, -1};
    EXPECT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
    return {Descriptor(ends[0]), Descriptor(ends[1])};
}

Ends socketEnds() {
    std::array<int, 2> ends = {-1, -1};
    EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()), 0);
    return {Descriptor(ends[0]), Descriptor(ends[1])};
}

/// A pipe that has a name in a file system.
Ends namedPipeEnds() {
    std::string folder = std::filesystem::temp_directory_path() / "ravlin-test-XXXXXX";
    EXPECT_NE(mkdtemp(folder.data()), nullptr);
    const std::string path = folder + "/pipe";
    EXPECT_EQ(mkfifo(path.c_str(), 0600), 0);
    Descriptor reading(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    Descriptor writing(open(path.c_str(), O_WRONLY | O_CLOEXEC));
    fcntl(reading.get(), F_SETFL, 0);
    std::filesystem::remove_all(folder);
    return {std::move(reading), std::move(writing)};
}

int duplicateOf(const Descriptor& descriptor) {
    return fcntl(descriptor.get(), F_DUPFD_CLOEXEC, 0);
}

OfferedText::Bytes bytesOfSize(std::size_t size) {
    std::string bytes;
    for (std::size_t line = 0; bytes.size() < size; ++line) bytes += std::to_string(line) + '\n';
    bytes.resize(size);
    return std::make_shared<const std::string>(std::move(bytes));
}

/// Waits for at least one byte, and takes `size` at most; "" at the end.
std::string take(const Descriptor& reading, std::size_t size) {
    std::string bytes(size, '\0');
    const ssize_t taken = read(reading.get(), bytes.data(), bytes.size());
    bytes.resize(taken > 0 ? static_cast<std::size_t>(taken) : 0);
    return bytes;
}

struct Kind {
    const char* name;
    Ends (*make)();
};
std::ostream& operator<<(std::ostream& stream, const Kind& kind) {
    return stream << kind.name;
}

class PipeWriterTo : public testing::TestWithParam<Kind> {
protected:
    PipeWriterTo() { surviveBrokenPipes(); }

    Ends ends_ = GetParam().make();
};

TEST_P(PipeWriterTo, WritesEverythingAtTheReadersPace) {
    const auto text = bytesOfSize(1'000'000);
    auto writer = std::make_optional<PipeWriter>(duplicateOf(ends_.writing), text);
    ends_.writing.reset();
    std::string taken;
    while (writer->proceed() != Progress::finished) taken += take(ends_.reading, 100'000);
    writer.reset();
    for (std::string part; !(part = take(ends_.reading, 100'000)).empty();) taken += part;
    EXPECT_TRUE(taken == *text);
}

TEST_P(PipeWriterTo, NeverWaitsThoughTheReaderWantsIt) {
    PipeWriter writer(duplicateOf(ends_.writing), bytesOfSize(10'000'000));
    while (writer.proceed() == Progress::some) continue;
    std::size_t takenSize = 0;
    for (int i = 0; i < 20; ++i) {
        const int flags = fcntl(ends_.writing.get(), F_GETFL);
        fcntl(ends_.writing.get(), F_SETFL, flags & ~O_NONBLOCK);  // of the pipe that both of them have open
        takenSize += take(ends_.reading, 8192).size();
        auto progress = std::async(std::launch::async, [&writer] { return writer.proceed(); });
        if (progress.wait_for(20s) == std::future_status::ready) continue;
        ADD_FAILURE() << "it waits after " << takenSize << " bytes";
        ends_ = {};  // which ends the wait
        return;
    }
}

TEST_P(PipeWriterTo, ReaderThatHasGoneEndsIt) {
    const auto text = bytesOfSize(1'000'000);
    PipeWriter writer(duplicateOf(ends_.writing), text);
    EXPECT_EQ(writer.proceed(), Progress::some);
    ends_.reading.reset();
    EXPECT_EQ(writer.proceed(), Progress::finished);
    PipeWriter late(duplicateOf(ends_.writing), text);
    EXPECT_EQ(late.proceed(), Progress::finished);
}

TEST_P(PipeWriterTo, ReaderThatTakesNothingIsSeen) {
    PipeWriter writer(duplicateOf(ends_.writing), bytesOfSize(10'000'000));
    while (writer.proceed() == Progress::some) continue;
    EXPECT_EQ(writer.proceed(), Progress::none);
    take(ends_.reading, 100'000);
    EXPECT_EQ(writer.proceed(), Progress::some);
}

INSTANTIATE_TEST_SUITE_P(PipeWriter, PipeWriterTo,
                         testing::Values(Kind{"APipe", pipeEnds}, Kind{"ASocket", socketEnds},
                                         Kind{"ANamedPipe", namedPipeEnds}),
                         [](const auto& each) { return std::string(each.param.name); });

TEST(PipeWriter, OneGoIsBounded) {
    const Ends ends = pipeEnds();
    constexpr int kRoom = 1 << 20;  // which every user may have
    ASSERT_GE(fcntl(ends.writing.get(), F_SETPIPE_SZ, kRoom), kRoom);
    PipeWriter writer(duplicateOf(ends.writing), bytesOfSize(kRoom));
    EXPECT_EQ(writer.proceed(), Progress::some);
    EXPECT_EQ(take(ends.reading, kRoom).size(), PipeWriter::kTurnSize);
}

TEST(PipeWriter, NothingIsWrittenIntoWhatIsNoPipe) {
    std::FILE* const file = std::tmpfile();
    PipeWriter intoFile(fcntl(fileno(file), F_DUPFD_CLOEXEC, 0), bytesOfSize(10));
    EXPECT_EQ(intoFile.proceed(), Progress::finished);
    EXPECT_EQ(lseek(fileno(file), 0, SEEK_END), 0) << "which may belong to a file system that never answers";
    std::fclose(file);
    const Descriptor counter(eventfd(0, EFD_CLOEXEC));
    PipeWriter intoCounter(duplicateOf(counter), bytesOfSize(8));
    EXPECT_EQ(intoCounter.proceed(), Progress::finished);
    PipeWriter intoNothing(-1, bytesOfSize(8));
    EXPECT_EQ(intoNothing.proceed(), Progress::finished);
}

TEST(PipeWriter, ItsEndIsTheEndOfThePipe) {
    Ends ends = pipeEnds();
    {
        PipeWriter writer(duplicateOf(ends.writing), bytesOfSize(10));
        EXPECT_EQ(writer.proceed(), Progress::finished);
    }
    ends.writing.reset();
    EXPECT_EQ(take(ends.reading, 100).size(), 10U);
    EXPECT_EQ(take(ends.reading, 100), "");
}

}  // namespace
}  // namespace ravlin
