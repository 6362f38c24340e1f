#pragma once

#include <unistd.h>

namespace ravlin::tests {

/// Ends the test program, which counts as failed, unless it is gone after so many seconds.
class Deadline {
public:
    explicit Deadline(unsigned seconds) { alarm(seconds); }
    Deadline(const Deadline&) = delete;
    Deadline& operator=(const Deadline&) = delete;
    Deadline(Deadline&&) = delete;
    Deadline& operator=(Deadline&&) = delete;
    ~Deadline() { alarm(0); }
};

}  // namespace ravlin::tests
