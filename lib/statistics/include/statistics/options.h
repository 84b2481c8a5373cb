#pragma once

#include <cstddef>

namespace statistics {

/// What a host may turn on beyond the plain panel, which is what it gets by default.
struct Options {
    /// Samples kept of each counter, the newest, shown as a plot when the user points at its value or bar. 0
    /// keeps none and gives the memory back; more than 100,000 count as 100,000. Takes 4 bytes a sample, when
    /// it is set and when a counter is created.
    std::size_t history = 0;
    /// A line on top of the panel: only what matches it is shown, and what leads there.
    bool filter = false;
    /// Of the panel: 0 clear to 1 opaque. Others are clamped, NaN is 0.
    float background = 0;
    /// The limit that a counter has crossed is shown in the bar's colour for values outside, from the
    /// counter's next sample on.
    bool markOutside = false;
    /// A triangle on the header of the column by which a table is sorted.
    bool sortArrows = false;
    /// Folders and check boxes of snapshots by name, numbers in them by their value; the store keeps the
    /// order in which it found them.
    bool sortSnapshots = false;
    /// Rows of the comparison whose values differ from the first by less, relative to the larger magnitude,
    /// aren't flagged (`DiffTable::setTolerance`). Texts are compared exactly. Negative ones and NaN count as
    /// 0.
    float compareTolerance = 0;
    /// Where the host lets ImGui navigate by keys, Enter on a row of a table with a key column is a double
    /// click; with Shift, or the menu key from ImGui 1.87 on, a right click.
    bool rowKeys = false;
};

} // namespace statistics
