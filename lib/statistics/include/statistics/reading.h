#pragma once

#include <statistics/value.h>

#include <string>
#include <vector>

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

/// The past of one counter, as numbers.
struct CounterHistory {
    float period = 0;           ///< the counter's, the time between two samples
    std::vector<float> samples; ///< oldest first; not a number where the counter gave a text or nothing
};

/// What became of a snapshot that the host asked for.
struct RecordedSnapshot {
    std::string file;    ///< its complete path; empty if snapshots are off
    std::string problem; ///< why it isn't on disk; empty if it is
};

} // namespace statistics
