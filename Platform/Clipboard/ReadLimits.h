#pragma once

#include <chrono>
#include <cstddef>

namespace ravlin {

/// How long to wait for other programs, and how much to read from them, before giving up.
struct ReadLimits {
    std::chrono::milliseconds idle{2000};           // without a byte of content, over all requests of one call together
    std::chrono::milliseconds total{30000};         // for plain text and what is read after it, all calls together
    std::size_t byteSize = std::size_t{512} << 20;  // of one representation
    std::chrono::milliseconds reader{30000};        // without taking a byte of our text
};

}  // namespace ravlin
