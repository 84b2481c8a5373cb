#pragma once

#include <cstddef>

namespace statistics {

constexpr std::size_t kCacheLine = 64; ///< bytes, as most processors have it

/// Has the processor fetch what is read soon, if it can: the host's counters lie all over the memory.
inline void prefetch([[maybe_unused]] const void* begin, [[maybe_unused]] std::size_t bytes)
{
#ifdef __GNUC__
    const char* const first = static_cast<const char*>(begin);
    for (std::size_t offset = 0; offset < bytes; offset += kCacheLine)
        __builtin_prefetch(first + offset);
    __builtin_prefetch(first + bytes - 1); // it may begin in the middle of a line
#endif
}

/// The same for the line behind the one that `place` lies in, for who walks too slowly for the processor to
/// notice. Nothing need be there.
inline void prefetchNextLine([[maybe_unused]] const void* place)
{
#ifdef __GNUC__
    __builtin_prefetch(static_cast<const char*>(place) + kCacheLine);
#endif
}

} // namespace statistics
