#pragma once

#include <statistics/counter.h>

namespace statistics {

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
