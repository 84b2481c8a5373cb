#pragma once

#include <cstddef>

namespace statistics {

/// Has the processor fetch what is read soon, if it can: the host's counters lie all over the memory.
inline void prefetch([[maybe_unused]] const void* begin, [[maybe_unused]] std::size_t bytes)
{
#ifdef __GNUC__
    constexpr std::size_t kCacheLine = 64; // bytes
    const char* const first = static_cast<const char*>(begin);
    for (std::size_t offset = 0; offset < bytes; offset += kCacheLine)
        __builtin_prefetch(first + offset);
    __builtin_prefetch(first + bytes - 1); // it may begin in the middle of a line
#endif
}

} // namespace statistics
