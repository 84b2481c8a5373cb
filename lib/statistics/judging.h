#pragma once

#include "prefetch.h"

#include <statistics/counter.h>

#include <cstddef>

namespace statistics {

/// For a counter that is read or judged soon.
inline void prefetchCounter(const Counter& counter)
{
    const auto* const begin = reinterpret_cast<const char*>(&counter);
    const auto* const end = reinterpret_cast<const char*>(&counter.limitFormat);
    prefetch(begin, static_cast<std::size_t>(end - begin));
}

/// As `Counter::withinLimits`, inside a call. Runs the getter, twice if the first comparison passes.
inline bool isWithinLimits(Counter& counter)
{
    if (!counter.hasLimits)
        return true;
    if (counter.getter() < counter.min)
        return false;
    // The getter may have removed this very counter, which takes its limits away.
    return !counter.hasLimits || !(counter.getter() > counter.max);
}

} // namespace statistics
