#pragma once

// Counts what the whole program allocates by `new`. Programs that link allocations.cpp replace the global
// operators.

#include <cstddef>

namespace test {

std::size_t allocations();
std::size_t liveAllocations();

/// While it lives, memory fails once: at the `nth` allocation, counted from 1.
class FailingAllocation {
public:
    explicit FailingAllocation(std::size_t nth);
    ~FailingAllocation();
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;
};

} // namespace test
