#pragma once

#include <statistics/statistics.h>

#include <cstddef>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

namespace demo {

/// How a value and its limits are printed, and the key of the limits in a preset; no key, no limits.
struct Look {
    std::string format;
    std::string limitFormat = {};
    std::string limitKey = {};
};

/// Creates items on the library's panel and keeps their address book. Periods are in seconds.
class PanelBook {
public:
    using Getter = statistics::Counter::Getter;

    unsigned label(const std::string& name, unsigned parent = 0);
    unsigned counter(const std::string& name, unsigned parent, float period, Getter getter, const Look& look);
    /// A counter that sums its children: counters, a column of tables, or with `NO_INDEX` tables' rows.
    unsigned sum(const std::string& name, unsigned parent, float period, const Look& look,
                 std::size_t column = statistics::NO_INDEX);
    unsigned table(const std::string& name, unsigned parent, float period,
                   std::function<std::size_t()> rowCount);

    /// The paths of all items, a parent before its children.
    const std::vector<std::string>& paths() const { return m_paths; }

private:
    unsigned remember(unsigned id, const std::string& name, unsigned parent);

    std::vector<std::string> m_paths;
    std::unordered_map<unsigned, std::string> m_pathOf;
};

} // namespace demo
