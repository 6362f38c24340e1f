#pragma once

#include "Engine/Support/NonCopyable.h"
#include "Platform/Clipboard/ReadLimits.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <utility>

namespace ravlin {

/// How long one reading may take: until no content has arrived for a while, and never longer than what is left of the
/// time for all readings of a click. The reading ends with this object.
class Patience : NonCopyable {
public:
    using Clock = std::chrono::steady_clock;

    /// `timeLeft` is for this reading and those after it; what this one takes is deducted.
    Patience(const ReadLimits& limits, Clock::duration& timeLeft)
        : limits_(limits), timeLeft_(timeLeft), start_(Clock::now()), lastByte_(start_) {}
    ~Patience() { timeLeft_ -= std::min(Clock::now() - start_, timeLeft_); }

    Clock::time_point deadline() const { return std::min(lastByte_ + limits_.idle, start_ + timeLeft_); }

    /// Call this with how much of the current representation has arrived, in bytes.
    void noteSize(std::size_t byteSize) {
        if (byteSize > std::exchange(byteSize_, byteSize)) lastByte_ = Clock::now();
    }

private:
    ReadLimits limits_;
    Clock::duration& timeLeft_;
    Clock::time_point start_;
    Clock::time_point lastByte_;
    std::size_t byteSize_ = 0;
};

}  // namespace ravlin
