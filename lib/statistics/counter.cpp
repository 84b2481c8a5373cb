#include <statistics/counter.h>

#include "call_scope.h"
#include "judging.h"

namespace statistics {

bool Counter::withinLimits()
{
    const CallScope call;
    return isWithinLimits(*this);
}

} // namespace statistics
