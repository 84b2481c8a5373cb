#pragma once

#include <statistics/export.h>
#include <statistics/value.h>

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace statistics {

/// One caption of the comparison.
struct DiffTableRow {
    std::string caption;              ///< path of the counter in the tree
    std::vector<CounterValue> values; ///< one per column; `Int` 0 where a snapshot doesn't have the caption
    bool changed = false;             ///< the values aren't all equal
};

/// One compared snapshot.
struct DiffTableColumn {
    std::string title;        ///< file name of the snapshot
    std::size_t snapshot = 0; ///< index of the snapshot in the store
};

/// The comparison of snapshots side by side: a copy of their values, independent of the snapshots' later
/// fate. Rows stand in the order in which their captions first turned up, columns in the order in which the
/// snapshots were added. Hosts read the three fields, through `System::getDiffTable`.
class STATISTICS_EXPORT DiffTable {
public:
    /// The position of the snapshot's column, made if need be. Linear in columns, and in rows if it is made.
    std::size_t addColumn(const std::string& title, std::size_t snapshot);
    /// The position of the caption's row, made if need be. Linear in rows.
    std::size_t addRow(const std::string& caption);
    /// Stores one cell, kind included, and updates the row's flag. Both positions must exist.
    void setValue(std::size_t row, std::size_t column, const CounterValue& value);
    /// Brings many cells of one column in, in order: `addRow` and `setValue` for each entry of caption and
    /// value, in time proportional to rows and entries.
    using Entries = std::vector<std::pair<std::string, CounterValue>>;
    void addEntries(std::size_t column, const Entries& entries);
    /// Recomputes the row's flag.
    void updateChanged(DiffTableRow& row);
    /// Takes a snapshot out; its captions stay until the last column goes. Unknown snapshots change nothing.
    void removeColumn(std::size_t snapshot);
    void clear();

    std::vector<DiffTableRow> m_rows;
    std::vector<DiffTableColumn> m_columns;
    std::size_t m_selectedRow = static_cast<std::size_t>(-1); ///< position in `m_rows`; all bits set: none

private:
    std::size_t appendRow(const std::string& caption);
};

} // namespace statistics
