#pragma once

#include "Platform/Clipboard/ReadLimits.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <utility>

namespace ravlin {

/// How long one call may take: until no content has arrived for a while, and never longer than a total limit.
class Patience {
public:
    using Clock = std::chrono::steady_clock;

    explicit Patience(const ReadLimits& limits) : limits_(limits), start_(Clock::now()), lastByte_(start_) {}

    Clock::time_point deadline() const { return std::min(lastByte_ + limits_.idle, start_ + limits_.total); }

    /// Call this with how much of the current representation has arrived, in bytes.
    void noteSize(std::size_t byteSize) {
        if (byteSize > std::exchange(byteSize_, byteSize)) lastByte_ = Clock::now();
    }

private:
    ReadLimits limits_;
    Clock::time_point start_;
    Clock::time_point lastByte_;
    std::size_t byteSize_ = 0;
};

}  // namespace ravlin
