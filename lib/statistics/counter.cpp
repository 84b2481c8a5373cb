#include <statistics/counter.h>

#include "call_scope.h"

namespace statistics {

bool Counter::withinLimits()
{
    if (!hasLimits)
        return true;
    const CallScope call; // the getter may remove this very counter
    if (getter() < min)
        return false;
    return !(getter() > max);
}

} // namespace statistics
