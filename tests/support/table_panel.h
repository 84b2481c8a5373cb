#pragma once

// A table over rows that a host keeps, on a panel.

#include "panel.h"
#include "test_access.h"

#include <cstddef>
#include <string>
#include <vector>

namespace test {

struct HostRow {
    std::string name;
    int size;
};
using HostRows = std::vector<HostRow>;
using Lines = std::vector<std::string>;
using Indices = std::vector<std::size_t>;

class TablePanel : public Panel {
protected:
    /// Columns "Name" and "Size" over `from`; reading a row that isn't there throws.
    unsigned addTable(const std::string& name, HostRows& from, unsigned parent = 0)
    {
        using statistics::CounterValue;
        const auto count = [this, &from] {
            ++counts;
            return from.size();
        };
        const auto read = [this, &from](std::size_t row) -> const HostRow& {
            ++reads;
            return from.at(row);
        };
        const unsigned node = statistics::table(name, 0, parent, count);
        statistics::Table& added = *system().getTable(node);
        added.addColumn(
            "Name", [read](auto row) { return CounterValue(read(row).name); }, 0.4f);
        added.addColumn(
            "Size", [read](auto row) { return CounterValue(read(row).size); }, 0.3f, "%d B");
        return node;
    }

    /// What the panel shows beneath its title.
    Lines lines()
    {
        Lines all = ui.read().lines();
        all.erase(all.begin());
        return all;
    }
    Lines shownLines()
    {
        show();
        return lines();
    }

    std::size_t reads = 0;  ///< calls of getters
    std::size_t counts = 0; ///< calls of row count functors
    HostRows rows = {{"beta", 3}, {"gamma", 1}, {"alpha", 2}};
    unsigned id = addTable("Rows", rows);
    statistics::Table& table = *system().getTable(id);
    statistics::ItemTable& item = statistics::TestAccess::render().tables[0]; ///< until there are more tables
    statistics::Schedule& schedule = statistics::TestAccess::render().tableSchedule; ///< `item` has slot 0
};

} // namespace test
