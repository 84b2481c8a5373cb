#pragma once

#include <cstddef>

namespace statistics {

/// Has the processor fetch what is read soon, if it can: the host's counters lie all over the memory.
template<typename T>
void prefetch([[maybe_unused]] const T* object)
{
#ifdef __GNUC__
    constexpr std::size_t kCacheLine = 64; // bytes
    for (std::size_t offset = 0; offset < sizeof(T); offset += kCacheLine)
        __builtin_prefetch(reinterpret_cast<const char*>(object) + offset);
#endif
}

} // namespace statistics
