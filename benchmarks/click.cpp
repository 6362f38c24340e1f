// click [BYTES]: how long a click takes in the program itself, on this desktop's clipboard: reading a text that another
// process has just copied, transforming it, and taking over the clipboard with the result. Prints the least and the
// median in microseconds. `benchmarks/measure-clicks` runs it on private desktops.

#include "Engine/PasteboardService.h"
#include "Platform/Clipboard/PasteboardFactory.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <variant>
#include <vector>

#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace ravlin;
using Clock = std::chrono::steady_clock;

constexpr int kRounds = 200;

std::unique_ptr<SystemPasteboard> openClipboard() {
    auto pasteboard = openSystemPasteboard([](const std::string& /*line*/) {}, pasteboardBackEnds());
    if (!pasteboard) std::exit(1);
    return pasteboard;
}

/// The other process: copies on request, and serves what it has copied.
[[noreturn]] void copyOnCommand(int commands, int replies, const std::string& text) {
    const auto pasteboard = openClipboard();
    std::array<pollfd, 2> waited = {pollfd{.fd = commands, .events = POLLIN, .revents = 0},
                                    pollfd{.fd = pasteboard->fileDescriptor(), .events = POLLIN, .revents = 0}};
    char letter = 0;
    while (poll(waited.data(), waited.size(), -1) > 0) {
        pasteboard->processEvents();
        if (waited[0].revents == 0) continue;
        if (read(commands, &letter, 1) != 1) break;
        pasteboard->setString(text);
        if (write(replies, &letter, 1) != 1) break;
    }
    _exit(0);
}

/// People do not click within a millisecond of a copy, and X servers could not tell which came first.
void waitAsAUserDoes() {
    constexpr std::chrono::milliseconds kWait(3);
    for (const auto end = Clock::now() + kWait; Clock::now() < end;) continue;
}

double microsecondsOfClick(Pasteboard& pasteboard) {
    Pasteboard::setGeneral(&pasteboard);
    const auto start = Clock::now();
    const PasteOutcome outcome = PasteboardService::transformClipboard(TextTransform::upperCase);
    const std::chrono::duration<double, std::micro> time = Clock::now() - start;
    if (!std::holds_alternative<Success>(outcome)) std::exit(1);
    return time.count();
}

}  // namespace

int main(int argc, char** argv) {
    const std::size_t size = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 100;
    std::array<int, 2> commands = {};
    std::array<int, 2> replies = {};
    if (pipe(commands.data()) != 0 || pipe(replies.data()) != 0) return 1;
    const pid_t other = fork();
    if (other == 0) {
        close(commands[1]);
        copyOnCommand(commands[0], replies[1], std::string(size, 'x'));
    }
    const auto pasteboard = openClipboard();
    std::vector<double> times;
    char letter = 'c';
    for (int round = 0; round < kRounds; ++round) {
        if (write(commands[1], &letter, 1) != 1 || read(replies[0], &letter, 1) != 1) return 1;
        waitAsAUserDoes();
        times.push_back(microsecondsOfClick(*pasteboard));
        pasteboard->processEvents();
    }
    close(commands[1]);
    waitpid(other, nullptr, 0);
    std::sort(times.begin(), times.end());
    std::printf("%.0f %.0f\n", times.front(), times[times.size() / 2]);
    return 0;
}
