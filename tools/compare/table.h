#pragma once

#include "report.h"

#include <string>
#include <utility>
#include <vector>

namespace compare {

/// One column of a table for people.
struct Column {
    const char* title;
    bool isNumber; ///< shown at the right
};

/// What both tables for people show: the cells of each row as texts, in which nothing is cut.
class Table {
public:
    Table(const Comparison& comparison, const Look& look);

    const std::vector<Column>& columns() const { return m_columns; }
    std::vector<std::string> cells(const Row& row) const;

private:
    std::vector<Column> m_columns;
    bool m_showsSpread; ///< where a side has several snapshots
    bool m_showsProbability;
};

/// The last lines: each kind with its number of rows.
std::vector<std::pair<std::string, std::size_t>> countsOf(const Comparison& comparison);
/// What to know about noise in this comparison; empty for nothing.
std::string noteOn(const Comparison& comparison);

/// The mark, and whether the row is outside of its limits: "worse, outside".
std::string markOf(const Row& row);
/// Line ends, tabs and what else would steer a terminal become "?".
std::string printable(std::string text);

} // namespace compare
