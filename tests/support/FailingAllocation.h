#pragma once

#include "Engine/Support/NonCopyable.h"

#include <cstddef>

namespace ravlin::tests {

/// Lets one allocation of this thread fail, as if memory were exhausted. There is one such object at a time.
class FailingAllocation : NonCopyable {
public:
    /// The allocation is the one with this number, counted from 0, among those of at least `minimumSize` bytes.
    explicit FailingAllocation(std::size_t number, std::size_t minimumSize = 0);
    ~FailingAllocation();

    /// Whether there were that many allocations.
    static bool hasFailed();
};

}  // namespace ravlin::tests
