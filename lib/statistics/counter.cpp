#include <statistics/counter.h>

#include "call_scope.h"

namespace statistics {

bool Counter::withinLimits()
{
    if (!hasLimits)
        return true;
    const CallScope call; // the getter may remove this very counter, which takes its limits away
    if (getter() < min)
        return false;
    return !hasLimits || !(getter() > max);
}

} // namespace statistics
