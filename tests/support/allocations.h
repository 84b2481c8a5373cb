// Counts what the whole program allocates by `new`. Programs that link allocations.cpp replace the global
// operators.
#pragma once

#include <cstddef>

namespace test {

std::size_t allocations();
std::size_t liveAllocations();

} // namespace test
