#pragma once

#include "Engine/Support/NonCopyable.h"

#include <unistd.h>

namespace ravlin::tests {

/// Ends the test program, which counts as a failure, unless this object is gone after that many seconds.
class Deadline : NonCopyable {
public:
    explicit Deadline(unsigned seconds) { alarm(seconds); }
    ~Deadline() { alarm(0); }
};

}  // namespace ravlin::tests
