#include "allocations.h"

#include <cstdlib>
#include <new>

namespace {

std::size_t s_allocations = 0;
std::size_t s_freed = 0;

} // namespace

std::size_t test::allocations()
{
    return s_allocations;
}

std::size_t test::liveAllocations()
{
    return s_allocations - s_freed;
}

void* operator new(std::size_t size)
{
    ++s_allocations;
    if (void* memory = std::malloc(size != 0 ? size : 1)) {
        return memory;
    }
    throw std::bad_alloc();
}

void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept
{
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
