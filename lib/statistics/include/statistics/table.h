#pragma once

#include <statistics/export.h>
#include <statistics/value.h>

#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace statistics {

/// No node: the result of a failed search or of a creation that couldn't be done.
constexpr unsigned INVALID_ID = 0xFFFFFFFFu;
/// No row, column or preset; as the column of a children counter: the number of rows.
constexpr std::size_t NO_INDEX = static_cast<std::size_t>(-1);

/// One column of a table.
struct TableColumn {
    std::string caption; ///< text of the header button
    std::string format;  ///< printf format of the cells; empty means the default print
    std::function<CounterValue(std::size_t dataRow)> getter; ///< reads a cell; must be callable
    CounterValue min;                                        ///< kept for the host, never read by the library
    CounterValue max;                                        ///< kept for the host, never read by the library
    /// Share of the table's width when the column is first drawn: of 850 pixels at ImGui's own font of 13
    /// pixels, of more or less at another size.
    float widthFraction = 0;
};

/// One entry of a row's context menu.
struct RowAction {
    std::string caption;
    std::function<void(std::size_t dataRow)> action; ///< may be empty: the entry then does nothing
};

/// The live model behind one table of the panel: it knows how to ask the host for rows and cells, and keeps
/// the order, the selection and the actions. It stores no cell; each read of a cell calls the host.
///
/// A data row is an index that the host's functors understand, a view row a position on the screen. Every
/// functor receives data rows; a refresh, a sort, the text of a row and the actions ask the row count functor
/// before each call, and none of them calls a functor with a row that it doesn't count any more. Tables are
/// made by `System::createTable` and owned by their item; a `Table` keeps its address until the item goes,
/// and calls no functor for the panel or for a sum from then on.
///
/// Functors run on the thread that drives the library and may call every operation of the library but
/// `initialize`, `shutdown`, `update` and `draw`. They are called where they are, never through a copy, so a
/// `mutable` lambda keeps its state; they may replace or erase any functor and column, themselves included,
/// and what they let go lives until the library's outermost call returns. (The first call puts a wrapper of
/// the library's around a functor: `target` of its field doesn't find the host's type any more.) An empty
/// functor where one is needed raises `std::bad_function_call`.
class STATISTICS_EXPORT Table {
public:
    explicit Table(std::function<std::size_t()> rowCount);

    /// Appends a column. `lower` and `upper` are stored for the host in the column's `min` and `max`.
    void addColumn(std::string caption, std::function<CounterValue(std::size_t)> getter, float widthFraction,
                   std::string format = {}, CounterValue lower = {}, CounterValue upper = {})
    {
        m_header.push_back({std::move(caption), std::move(format), std::move(getter), std::move(lower),
                            std::move(upper), widthFraction});
    }

    /// Makes `column` the sort column, then orders the rows by it. A column out of range is reported. Runs
    /// the row count and the column's getter, which is called for both rows of each comparison. If one
    /// throws, column and direction are the new ones all the same; if memory fails, they are as they were.
    void sort(std::size_t column, bool ascending);
    /// Orders the rows anew, from data order, without storing the arguments. Equal rows keep data order.
    /// Values that don't order (NaN, mixed kinds, values that change meanwhile) give some order of all rows.
    /// Runs the same functors; if the getter throws, the rows stand as before.
    void applySort(std::size_t column, bool ascending);

    /// A cell's text, with the column's format. Empty if there is no such column. Runs the column's getter,
    /// with any `dataRow` that is given.
    std::string getCell(std::size_t column, std::size_t dataRow) const;
    /// The same by view row; first orders the rows anew if their number has changed. Empty if there is no
    /// such row or column. Runs the row count and getters.
    std::string getSortedCell(std::size_t column, std::size_t viewRow);
    /// The data row shown at `viewRow`, `NO_INDEX` if there is none; first orders the rows anew if their
    /// number has changed, but not within a sort of this table, which begins with data order. Runs the row
    /// count, and the getters of a sort.
    std::size_t dataRow(std::size_t viewRow);
    /// Prints a value as a cell of the column.
    void printCell(std::string& text, std::size_t column, const CounterValue& value) const;
    /// The cells of a data row as the table shows them, separated by tabs; empty ones if the row isn't there,
    /// or goes meanwhile. Runs the row count and the getters.
    std::string rowText(std::size_t dataRow) const;
    /// The sum of a column over all data rows, `Empty` without rows. A column out of range is reported. Runs
    /// the row count once, and the getter for each of these rows, whatever becomes of their number meanwhile.
    CounterValue sumColumn(std::size_t column) const;

    /// Appends an entry to the rows' context menu.
    void addAction(std::string caption, std::function<void(std::size_t)> action);
    /// Runs an entry, or the default action, on the data row shown at `viewRow`; nothing if there is none, or
    /// if the host's rows have become fewer since. Runs the row count, too.
    void runAction(std::size_t action, std::size_t viewRow);
    void runDefaultAction(std::size_t viewRow);

    std::vector<TableColumn> m_header;       ///< columns, in display order
    std::vector<std::size_t> m_order;        ///< view row to data row
    std::vector<RowAction> m_rowActions;     ///< context menu, in order
    std::function<std::size_t()> m_rowCount; ///< the host's current number of data rows; must be callable
    std::function<void(std::size_t)> m_defaultAction; ///< runs on a double click; may be empty
    std::size_t m_sortColumn = 0;
    std::size_t m_selectedRow = NO_INDEX; ///< a view row: the selection stays in place when rows move
    std::size_t m_keyColumn = NO_INDEX;   ///< column whose cells can be selected; any other value: none
    bool m_sortAscending = true;

private:
    friend class Render;
    friend class TableReading;
    struct SortMemory;

    // All of these run the row count, and the getters or the action that they are about.
    std::size_t rowCount() const;
    void order(std::size_t count, std::size_t column, bool ascending);
    void order(SortMemory memory, std::size_t column, bool ascending);
    std::size_t settledRow(std::size_t viewRow) const;
    void run(std::function<void(std::size_t)>& action, std::size_t viewRow);

    bool m_removed = false; ///< from the panel, while functors of this table may still be running
};

} // namespace statistics
