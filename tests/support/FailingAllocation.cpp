#include "tests/support/FailingAllocation.h"

#include <cstdlib>
#include <new>

namespace ravlin::tests {
namespace {

struct Plan {
    bool isActive = false;
    bool hasFailed = false;
    std::size_t allocationsBefore = 0;
    std::size_t minimumSize = 0;
};

thread_local Plan plan;  // NOLINT(cppcoreguidelines-avoid-non-const-global-variables): operator new has no other place

bool failsNow(std::size_t size) {
    if (!plan.isActive || plan.hasFailed || size < plan.minimumSize) return false;
    plan.hasFailed = plan.allocationsBefore == 0;
    if (!plan.hasFailed) --plan.allocationsBefore;
    return plan.hasFailed;
}

}  // namespace

FailingAllocation::FailingAllocation(std::size_t number, std::size_t minimumSize) {
    plan = {.isActive = true, .hasFailed = false, .allocationsBefore = number, .minimumSize = minimumSize};
}

FailingAllocation::~FailingAllocation() {
    plan.isActive = false;
}

bool FailingAllocation::hasFailed() {
    return plan.hasFailed;
}

}  // namespace ravlin::tests

// NOLINTBEGIN(cppcoreguidelines-no-malloc,cppcoreguidelines-owning-memory): this is what they stand on

void* operator new(std::size_t size) {
    void* const memory = ravlin::tests::failsNow(size) ? nullptr : std::malloc(size != 0 ? size : 1);
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}

// NOLINTEND(cppcoreguidelines-no-malloc,cppcoreguidelines-owning-memory)
