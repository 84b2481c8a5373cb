#include <statistics/table.h>

#include "assertion.h"
#include "call_scope.h"
#include "pinned.h"
#include "rollback.h"
#include "table_order.h"

#include <algorithm>
#include <numeric>
#include <utility>

// Getters and actions are pinned before they run, and the table outlives the call: the host may add columns
// and actions, replace them, or remove the whole table while one runs.

namespace statistics {

namespace {

using Order = std::vector<std::size_t>;
using Getter = std::function<CounterValue(std::size_t)>;

/// The columns of a const table are no const objects: they lie in the vector's memory.
Getter& pinnedGetter(const TableColumn& column)
{
    return pin(const_cast<TableColumn&>(column).getter);
}

/// The getter of one column, found afresh when a getter has gone since the last call: finding it for every
/// value of a sort would cost as much as the rest of it.
class ColumnGetter {
public:
    ColumnGetter(const std::vector<TableColumn>& header, std::size_t column)
        : m_header(header), m_column(column)
    {
    }

    /// `Empty` for a column that has gone. Runs the getter.
    CounterValue operator()(std::size_t row)
    {
        if (m_released != Pinned<Getter>::released())
            find();
        return (*m_getter)(row);
    }

private:
    void find()
    {
        static const Getter gone = [](std::size_t) { return CounterValue(); };
        m_getter = m_column < m_header.size() ? &pinnedGetter(m_header[m_column]) : &gone;
        m_released = Pinned<Getter>::released();
    }

    const std::vector<TableColumn>& m_header;
    const std::size_t m_column;
    const Getter* m_getter = nullptr;
    std::size_t m_released = NO_INDEX; ///< at first no number that there is: the getter is to be found
};

/// Merges neighbouring runs of `run` rows from `source` into `target`.
template<typename Before>
void mergeRuns(const Order& source, Order& target, std::size_t run, const Before& before)
{
    const std::size_t count = source.size();
    const auto at = [&](std::size_t position) {
        return source.begin() + static_cast<std::ptrdiff_t>(std::min(position, count));
    };
    auto output = target.begin();
    for (std::size_t start = 0; start < count; start += 2 * run)
        output = std::merge(at(start), at(start + run), at(start + run), at(start + 2 * run), output, before);
}

/// Merging reads each row within its bounds whatever `before` answers; `std::sort` runs out of its range when
/// values don't order or change meanwhile. It also compares less often, and each comparison calls the host
/// twice.
template<typename Before>
void mergeSort(Order& rows, Order& merged, const Before& before)
{
    for (std::size_t run = 1; run < rows.size(); run *= 2) {
        mergeRuns(rows, merged, run, before);
        rows.swap(merged);
    }
}

} // namespace

/// Pinned from the start, so that a const table is never written to.
Table::Table(std::function<std::size_t()> rowCount) : m_rowCount(std::move(rowCount))
{
    pin(m_rowCount);
}

/// What a sort needs, taken before anything changes.
struct Table::SortMemory {
    /// The rows in data order.
    explicit SortMemory(std::size_t count) : unsorted(count), rows(count), merged(count)
    {
        std::iota(unsorted.begin(), unsorted.end(), std::size_t{0});
    }

    Order unsorted;
    Order rows;
    Order merged;
};

/// None once the table is removed. Runs the host's functor.
std::size_t Table::rowCount() const
{
    if (m_removed)
        return 0;
    const std::size_t count = pin(const_cast<Table*>(this)->m_rowCount)();
    return m_removed ? 0 : count;
}

void Table::sort(std::size_t column, bool ascending)
{
    if (!ORV_ASSERT(column < m_header.size()))
        return;
    const CallScope call;
    const std::size_t columnBefore = std::exchange(m_sortColumn, column);
    const bool ascendingBefore = std::exchange(m_sortAscending, ascending);
    const std::size_t count = rowCount();
    Rollback storing([&] {
        m_sortColumn = columnBefore;
        m_sortAscending = ascendingBefore;
    });
    SortMemory memory(count);
    storing.done();
    order(std::move(memory), column, ascending);
}

void Table::applySort(std::size_t column, bool ascending)
{
    const CallScope call;
    order(rowCount(), column, ascending);
}

void Table::order(std::size_t count, std::size_t column, bool ascending)
{
    order(SortMemory(count), column, ascending);
}

/// Runs the row count and the getter. Rows that go meanwhile aren't read: they end up anywhere.
void Table::order(SortMemory memory, std::size_t column, bool ascending)
{
    const SettledOrder settled(*this);
    memory.rows = memory.unsorted;
    Order before = std::exchange(m_order, std::move(memory.unsorted));
    Rollback ordering([&] { m_order = std::move(before); });
    const std::function<std::size_t()>& count = pin(m_rowCount);
    ColumnGetter getter(m_header, column);
    const auto value = [&](std::size_t row) {
        if (m_removed || row >= count() || m_removed)
            return CounterValue();
        return getter(row);
    };
    const auto less = [&](std::size_t a, std::size_t b) {
        const CounterValue first = value(a);
        return first < value(b);
    };
    const auto greater = [&](std::size_t a, std::size_t b) {
        const CounterValue first = value(a);
        return first > value(b);
    };
    if (column < m_header.size())
        ascending ? mergeSort(memory.rows, memory.merged, less)
                  : mergeSort(memory.rows, memory.merged, greater);
    m_order = std::move(memory.rows);
    ordering.done();
}

/// The data row shown at `viewRow` as the rows are ordered now; `NO_INDEX` if the host has it no more. Runs
/// the row count.
std::size_t Table::settledRow(std::size_t viewRow) const
{
    const std::size_t row = viewRow < m_order.size() ? m_order[viewRow] : NO_INDEX;
    return row != NO_INDEX && row < rowCount() ? row : NO_INDEX;
}

std::size_t Table::dataRow(std::size_t viewRow)
{
    const CallScope call;
    if (!SettledOrder::isOn(*this)) {
        const std::size_t count = rowCount();
        if (m_order.size() == count)
            return viewRow < count && m_order[viewRow] < count ? m_order[viewRow] : NO_INDEX;
        order(count, m_sortColumn, m_sortAscending);
    }
    return settledRow(viewRow);
}

std::string Table::getCell(std::size_t column, std::size_t dataRow) const
{
    if (column >= m_header.size())
        return {};
    const CallScope call;
    const CounterValue value = pinnedGetter(m_header[column])(dataRow);
    std::string text;
    printCell(text, column, value);
    return text;
}

std::string Table::getSortedCell(std::size_t column, std::size_t viewRow)
{
    const CallScope call;
    const std::size_t row = dataRow(viewRow);
    return row == NO_INDEX ? std::string() : getCell(column, row);
}

void Table::printCell(std::string& text, std::size_t column, const CounterValue& value) const
{
    const bool formatted = column < m_header.size() && !m_header[column].format.empty();
    value.print(text, formatted ? m_header[column].format.c_str() : nullptr);
}

std::string Table::rowText(std::size_t dataRow) const
{
    const CallScope call;
    std::string text;
    for (std::size_t column = 0; column < m_header.size(); ++column) {
        if (column > 0)
            text += '\t';
        if (dataRow < rowCount())
            text += getCell(column, dataRow);
    }
    return text;
}

CounterValue Table::sumColumn(std::size_t column) const
{
    if (!ORV_ASSERT(column < m_header.size()))
        return {};
    const CallScope call;
    const std::size_t count = rowCount();
    ColumnGetter getter(m_header, column);
    CounterValue sum;
    for (std::size_t row = 0; row < count && !m_removed; ++row)
        sum += getter(row);
    return sum;
}

void Table::addAction(std::string caption, std::function<void(std::size_t)> action)
{
    m_rowActions.push_back({std::move(caption), std::move(action)});
}

void Table::runAction(std::size_t action, std::size_t viewRow)
{
    if (action < m_rowActions.size())
        run(m_rowActions[action].action, viewRow);
}

void Table::runDefaultAction(std::size_t viewRow)
{
    run(m_defaultAction, viewRow);
}

/// Runs the row count, then the action.
void Table::run(std::function<void(std::size_t)>& action, std::size_t viewRow)
{
    const CallScope call;
    const std::function<void(std::size_t)>& pinned = pin(action);
    const std::size_t row = pinned ? settledRow(viewRow) : NO_INDEX;
    if (row != NO_INDEX)
        pinned(row);
}

} // namespace statistics
