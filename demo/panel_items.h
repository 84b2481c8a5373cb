#pragma once

#include <statistics/statistics.h>

#include <cstddef>
#include <string>

namespace demo {

/// How a value and its limits are printed, and the key of the limits in a preset; no key, no limits.
struct Look {
    std::string format;
    std::string limitFormat = {};
    std::string limitKey = {};
};

// What the demo puts on the panel, by node ids. Periods are in seconds.

unsigned addLabel(const std::string& name, unsigned parent = 0);
unsigned addCounter(const std::string& name, unsigned parent, float period,
                    statistics::Counter::Getter getter, const Look& look);
/// A counter that sums its children: counters, a column of tables, or with `NO_INDEX` tables' rows.
unsigned addSum(const std::string& name, unsigned parent, float period, const Look& look,
                std::size_t column = statistics::NO_INDEX);

} // namespace demo
