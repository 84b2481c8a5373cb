#pragma once

#include <statistics/value.h>

#include <string>

namespace statistics {

/// One counter as `System::forEachCounter` finds it. Path and limits are the library's: good until the
/// visitor returns.
struct CounterReading {
    unsigned id;             ///< node id
    const std::string& path; ///< names from the top level down, joined by "/"
    CounterValue value;      ///< read for this visit
    const CounterValue* min; ///< null without limits
    const CounterValue* max; ///< null without limits
    bool outside;            ///< `value` is below `min` or above `max`
};

} // namespace statistics
