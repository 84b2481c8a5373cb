#include "allocations.h"

#include <cstdlib>
#include <new>

namespace {

std::size_t s_allocations = 0;
std::size_t s_freed = 0;
std::size_t s_untilFailure = 0; ///< none will fail if it is 0

bool failsNow()
{
    return s_untilFailure > 0 && --s_untilFailure == 0;
}

} // namespace

std::size_t test::allocations()
{
    return s_allocations;
}

std::size_t test::liveAllocations()
{
    return s_allocations - s_freed;
}

test::FailingAllocation::FailingAllocation(std::size_t nth)
{
    s_untilFailure = nth;
}

test::FailingAllocation::~FailingAllocation()
{
    s_untilFailure = 0;
}

void* operator new(std::size_t size)
{
    if (failsNow())
        throw std::bad_alloc();
    ++s_allocations;
    if (void* memory = std::malloc(size != 0 ? size : 1))
        return memory;
    throw std::bad_alloc();
}

void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept
{
    if (failsNow())
        return nullptr;
    ++s_allocations;
    return std::malloc(size != 0 ? size : 1);
}

void operator delete(void* memory) noexcept
{
    s_freed += memory ? 1 : 0;
    std::free(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept
{
    ::operator delete(memory);
}
