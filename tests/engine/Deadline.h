#pragma once

#include "Engine/Support/NonCopyable.h"

#include <sys/time.h>

namespace ravlin::tests {

/// Ends the test program, which counts as a failure, unless this object is gone before the program has used that many
/// seconds of processor time: whatever else the machine does, does not count.
class Deadline : NonCopyable {
public:
    explicit Deadline(unsigned seconds) { set(seconds); }
    ~Deadline() { set(0); }

private:
    static void set(unsigned seconds) {
        const itimerval timer = {.it_interval = {}, .it_value = {.tv_sec = static_cast<time_t>(seconds), .tv_usec = 0}};
        setitimer(ITIMER_PROF, &timer, nullptr);
    }
};

}  // namespace ravlin::tests
