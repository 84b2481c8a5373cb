#include <statistics/table.h>

#include "assertion.h"
#include "call_scope.h"

#include <algorithm>
#include <numeric>

// Every getter and action that runs here is a copy, and the table outlives the call: the host may add columns
// and actions, replace them, or remove the whole table while one runs.

namespace statistics {

namespace {

using Order = std::vector<std::size_t>;
using Getter = std::function<CounterValue(std::size_t)>;

Order dataOrder(std::size_t count)
{
    Order rows(count);
    std::iota(rows.begin(), rows.end(), std::size_t{0});
    return rows;
}

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

/// Sorts data rows 0 to `count` - 1. Merging reads each row within its bounds whatever `before` answers;
/// `std::sort` runs out of its range when values don't order or change meanwhile. It also compares less
/// often, and each comparison calls the host twice.
template<typename Before>
Order sortedRows(std::size_t count, const Before& before)
{
    Order rows(count);
    std::iota(rows.begin(), rows.end(), std::size_t{0});
    Order merged(count);
    for (std::size_t run = 1; run < count; run *= 2) {
        mergeRuns(rows, merged, run, before);
        rows.swap(merged);
    }
    return rows;
}

} // namespace

void Table::sort(std::size_t column, bool ascending)
{
    if (!ORV_ASSERT(column < m_header.size()))
        return;
    m_sortColumn = column;
    m_sortAscending = ascending;
    applySort(column, ascending);
}

void Table::applySort(std::size_t column, bool ascending)
{
    const CallScope call;
    const std::size_t count = m_rowCount();
    if (column >= m_header.size()) {
        m_order = dataOrder(count);
        return;
    }
    const Getter value = m_header[column].getter;
    const auto less = [&](std::size_t a, std::size_t b) {
        const CounterValue first = value(a);
        return first < value(b);
    };
    const auto greater = [&](std::size_t a, std::size_t b) {
        const CounterValue first = value(a);
        return first > value(b);
    };
    m_order = ascending ? sortedRows(count, less) : sortedRows(count, greater);
}

std::size_t Table::dataRow(std::size_t viewRow)
{
    const CallScope call;
    if (m_order.size() != m_rowCount())
        applySort(m_sortColumn, m_sortAscending);
    return viewRow < m_order.size() ? m_order[viewRow] : NO_INDEX;
}

std::string Table::getCell(std::size_t column, std::size_t dataRow) const
{
    if (column >= m_header.size())
        return {};
    const CallScope call;
    const Getter getter = m_header[column].getter;
    const CounterValue value = getter(dataRow);
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
        text += getCell(column, dataRow);
    }
    return text;
}

CounterValue Table::sumColumn(std::size_t column) const
{
    if (!ORV_ASSERT(column < m_header.size()))
        return {};
    const CallScope call;
    const Getter getter = m_header[column].getter;
    const std::size_t count = m_rowCount();
    CounterValue sum;
    for (std::size_t row = 0; row < count; ++row)
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

/// By value: the action may replace itself, or remove the table.
// NOLINTNEXTLINE(performance-unnecessary-value-param): the copy is the point
void Table::run(std::function<void(std::size_t)> action, std::size_t viewRow)
{
    const CallScope call;
    if (action && viewRow < m_order.size())
        action(m_order[viewRow]);
}

} // namespace statistics
