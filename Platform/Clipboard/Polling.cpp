#include "Platform/Clipboard/Polling.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdint>

namespace ravlin {
namespace {

using Clock = std::chrono::steady_clock;

int millisecondsUntil(Clock::time_point deadline) {
    if (deadline == Clock::time_point::max()) return -1;
    const Clock::time_point now = Clock::now();
    if (deadline <= now) return 0;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - now).count();
    return static_cast<int>(std::min<std::int64_t>(left, INT_MAX));
}

}  // namespace

bool isAnyReady(std::span<pollfd> waited, Clock::time_point deadline) {
    int ready = -1;
    do {
        ready = poll(waited.data(), waited.size(), millisecondsUntil(deadline));
    } while (ready < 0 && errno == EINTR);
    return ready > 0;
}

bool isReady(int descriptor, short events, Clock::time_point deadline) {
    pollfd waited = {.fd = descriptor, .events = events, .revents = 0};
    return isAnyReady({&waited, 1}, deadline);
}

void surviveBrokenPipes() {
    struct sigaction current = {};
    if (sigaction(SIGPIPE, nullptr, &current) == 0 && current.sa_handler == SIG_DFL) {
        current.sa_handler = SIG_IGN;
        sigaction(SIGPIPE, &current, nullptr);
    }
}

}  // namespace ravlin
