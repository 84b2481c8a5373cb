#pragma once

#include <statistics/export.h>
#include <statistics/value.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace statistics {

/// One caption of the comparison.
struct DiffTableRow {
    std::string caption;              ///< path of the counter in the tree
    std::vector<CounterValue> values; ///< one per column; `Int` 0 where a snapshot doesn't have the caption
    bool changed = false;             ///< some value differs from the first
};

/// One compared snapshot.
struct DiffTableColumn {
    std::string title;        ///< file name of the snapshot
    std::size_t snapshot = 0; ///< index of the snapshot in the store
};

/// The comparison of snapshots side by side: a copy of their values, independent of the snapshots' later
/// fate. Rows stand in the order in which their captions first turned up, columns in the order in which the
/// snapshots were added. Hosts read the three fields, through `System::getDiffTable`, and may keep a copy.
///
/// Every row has one value per column, and no two rows have one caption. Rows are found by an index of
/// captions, which notices when a host has moved, added or removed rows of its copy, but not that it has
/// given a row a new caption. No operation runs host functors. Where memory fails in one, every row still has
/// one value per column, and a snapshot is in whole or not at all.
class STATISTICS_EXPORT DiffTable {
public:
    /// Caption and value of each counter in a snapshot.
    using Entries = std::vector<std::pair<std::string, CounterValue>>;

    /// Brings a whole snapshot in: `addColumn`, then `addRow` and `setValue` for each entry, in order. Of
    /// entries with one caption the last one counts. Takes time in proportion to rows and entries, however
    /// many columns there are; for a snapshot that is in already, entries times columns.
    void addSnapshot(const std::string& title, std::size_t snapshot, const Entries& entries);
    /// Takes a snapshot out; its captions stay until the last column goes. Unknown snapshots change nothing.
    /// Compares as much as one snapshot has rows, as a rule, but moves all values behind the column.
    void removeColumn(std::size_t snapshot);
    void clear();

    /// The position of the snapshot's column, made if need be, filled with `Int` 0.
    std::size_t addColumn(const std::string& title, std::size_t snapshot);
    /// The position of the caption's row, made if need be, filled with `Int` 0. Takes the same time however
    /// many rows there are, but for the first call after rows were moved by hand.
    std::size_t addRow(const std::string& caption);
    /// Stores one cell, kind included, and updates the row's flag. Both positions must exist.
    void setValue(std::size_t row, std::size_t column, const CounterValue& value);
    /// Recomputes the row's flag: some value differs from the first.
    void updateChanged(DiffTableRow& row);
    /// Recomputes all flags: from then on two numbers that differ by less than `tolerance` times the larger
    /// magnitude count as equal, and NaN as equal to NaN. 0, as at first, compares exactly, as texts always
    /// are.
    void setTolerance(float tolerance);

    std::vector<DiffTableRow> m_rows;
    std::vector<DiffTableColumn> m_columns;
    std::size_t m_selectedRow = static_cast<std::size_t>(-1); ///< position in `m_rows`; all bits set: none

private:
    struct Cell;
    class Adding;

    bool differs(const CounterValue& value, const CounterValue& first) const;
    bool isChangedWithout(const DiffTableRow& row, std::size_t position) const;
    std::size_t columnOf(std::size_t snapshot) const;
    std::vector<Cell> gather(const Entries& entries);
    void reserveRows(std::size_t count);
    std::size_t findRow(std::uint32_t hash, const std::string& caption);
    bool isIndexed(std::uint32_t hash, const std::string& caption, std::size_t& row) const;
    void addToIndex(std::uint32_t hash, std::size_t row);
    void rebuildIndex(std::size_t rows);

    float m_tolerance = 0;

    /// Derived from the captions, can be thrown away at any time.
    std::vector<std::pair<std::uint32_t, std::uint32_t>> m_index; ///< hash and row; see the source
    std::size_t m_indexed = 0;                                    ///< rows that it knows
};

} // namespace statistics
