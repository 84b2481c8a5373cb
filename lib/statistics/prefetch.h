#pragma once

#include <cstddef>
#include <cstdint>

namespace statistics {

/// Has the processor fetch what is read soon, if it can: the host's counters lie all over the memory.
inline void prefetch([[maybe_unused]] const void* begin, [[maybe_unused]] std::size_t bytes)
{
#ifdef __GNUC__
    constexpr std::size_t kCacheLine = 64; // bytes
    const char* const first = static_cast<const char*>(begin);
    for (const char* line = first - reinterpret_cast<std::uintptr_t>(first) % kCacheLine;
         line < first + bytes; line += kCacheLine)
        __builtin_prefetch(line);
#endif
}

} // namespace statistics
