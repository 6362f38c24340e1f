#pragma once

#include <chrono>
#include <cstddef>

namespace ravlin {

/// How long, and how much, to read from another program before giving up.
struct ReadLimits {
    std::chrono::milliseconds idle{2000};           // without a byte of content, over all requests of one call together
    std::chrono::milliseconds total{30000};         // for one call
    std::size_t byteSize = std::size_t{512} << 20;  // of one representation
};

}  // namespace ravlin
