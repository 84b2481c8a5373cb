// For builds without prometheus-cpp.
#include "metrics.h"

#include <cstdio>

namespace demo {

std::function<void(float)> offerMetrics(const Options& options)
{
    if (!options.metrics.empty())
        std::fputs("statistics_demo: going on without metrics: this build has no prometheus-cpp\n", stderr);
    return {};
}

} // namespace demo
