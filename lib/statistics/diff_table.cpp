// The index is a flat table of hashes and rows, a power of two long and at most half full; a row stands at
// its hash or behind it, in the first free place. Rows only ever leave it all together.

#include <statistics/diff_table.h>

#include "rollback.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <iterator>
#include <utility>

namespace statistics {

namespace {

/// What a snapshot shows for a caption that it doesn't have.
constexpr int kFiller = 0;

constexpr std::size_t kUsualColumns = 4; ///< room in a new row
constexpr std::size_t kLeastIndex = 64;
constexpr auto kNoRow = static_cast<std::uint32_t>(-1);

std::uint32_t hashOf(const std::string& caption)
{
    const std::size_t hash = std::hash<std::string>()(caption);
    return static_cast<std::uint32_t>((hash ^ (hash >> 31u)) & 0xFFFFFFFFu);
}

/// Each value compares with the one exactly as with the other.
bool isIdentical(const CounterValue& left, const CounterValue& right)
{
    const bool sameKind = left.isInt() == right.isInt() && left.isUInt() == right.isUInt() &&
                          left.isDecimal() == right.isDecimal() && left.isString() == right.isString();
    const bool sameSign = !left.isDecimal() || std::signbit(left.toFloat()) == std::signbit(right.toFloat());
    return sameKind && sameSign && left == right; // zeros of two signs are equal, but print differently
}

/// Exact for all three kinds.
double numberOf(const CounterValue& value)
{
    if (value.isDecimal())
        return static_cast<double>(value.toFloat());
    return value.isInt() ? static_cast<double>(value.toInt()) : static_cast<double>(value.toUInt());
}

bool isNumber(const CounterValue& value)
{
    return value.isInt() || value.isUInt() || value.isDecimal();
}

/// Infinities are near to themselves alone, which comparing exactly has found out before.
bool isNear(const CounterValue& left, const CounterValue& right, float tolerance)
{
    if (!isNumber(left) || !isNumber(right))
        return false;
    const double a = numberOf(left);
    const double b = numberOf(right);
    if (std::isnan(a) || std::isnan(b))
        return std::isnan(a) && std::isnan(b);
    return std::abs(a - b) < static_cast<double>(tolerance) * std::max(std::abs(a), std::abs(b));
}

} // namespace

/// What a new column has in one row.
struct DiffTable::Cell {
    const CounterValue* value;
    bool differs; ///< from the row's first value
};

/// Takes back what adding a snapshot has done so far, unless it is kept.
class [[nodiscard]] DiffTable::Adding {
public:
    explicit Adding(DiffTable& table)
        : m_table(table), m_rows(table.m_rows.size()), m_columns(table.m_columns.size())
    {
    }
    ~Adding()
    {
        if (m_kept)
            return;
        dropBehind(m_table.m_rows, m_rows);
        dropBehind(m_table.m_columns, m_columns);
        for (DiffTableRow& row : m_table.m_rows)
            dropBehind(row.values, m_columns);
    }
    Adding(const Adding&) = delete;
    Adding& operator=(const Adding&) = delete;
    void keep() { m_kept = true; }

private:
    template<typename T>
    static void dropBehind(std::vector<T>& list, std::size_t count)
    {
        if (count < list.size())
            list.erase(list.begin() + static_cast<std::ptrdiff_t>(count), list.end());
    }

    DiffTable& m_table;
    std::size_t m_rows;
    std::size_t m_columns;
    bool m_kept = false;
};

void DiffTable::addSnapshot(const std::string& title, std::size_t snapshot, const Entries& entries)
{
    Adding adding(*this);
    std::vector<Cell> cells = gather(entries);
    const std::size_t known = columnOf(snapshot);
    if (known < m_columns.size()) {
        adding.keep();
        for (const auto& [caption, value] : entries)
            setValue(addRow(caption), known, value);
        return;
    }
    for (std::size_t row = 0; row < cells.size(); ++row) {
        std::vector<CounterValue>& values = m_rows[row].values;
        cells[row].differs = !values.empty() && differs(*cells[row].value, values.front());
        values.push_back(*cells[row].value);
    }
    m_columns.push_back({title, snapshot});
    adding.keep();
    for (std::size_t row = 0; row < cells.size(); ++row)
        m_rows[row].changed |= cells[row].differs;
}

/// One cell per row, rows that must be made included.
std::vector<DiffTable::Cell> DiffTable::gather(const Entries& entries)
{
    static const CounterValue filler = kFiller;
    if (m_rows.empty())
        reserveRows(entries.size());
    std::vector<Cell> cells(std::max(m_rows.size(), entries.size()), {&filler, false});
    std::size_t row = 0;
    for (const auto& [caption, value] : entries) {
        // Snapshots of one program mostly hold the same captions in the same order: look there first.
        if (row >= m_rows.size() || m_rows[row].caption != caption)
            row = addRow(caption);
        if (row >= cells.size())
            cells.resize(2 * cells.size(), {&filler, false});
        cells[row++].value = &value;
    }
    cells.resize(m_rows.size(), {&filler, false});
    return cells;
}

void DiffTable::reserveRows(std::size_t count)
{
    m_rows.reserve(count);
    rebuildIndex(count);
}

std::size_t DiffTable::columnOf(std::size_t snapshot) const
{
    const auto same = [&](const DiffTableColumn& column) { return column.snapshot == snapshot; };
    const auto found = std::find_if(m_columns.begin(), m_columns.end(), same);
    return static_cast<std::size_t>(found - m_columns.begin());
}

std::size_t DiffTable::addColumn(const std::string& title, std::size_t snapshot)
{
    const std::size_t known = columnOf(snapshot);
    if (known == m_columns.size())
        addSnapshot(title, snapshot, {});
    return known;
}

void DiffTable::removeColumn(std::size_t snapshot)
{
    const std::size_t position = columnOf(snapshot);
    if (position == m_columns.size())
        return;
    if (m_columns.size() == 1)
        return clear();
    std::vector<bool> changed;
    changed.reserve(m_rows.size());
    for (const DiffTableRow& row : m_rows)
        changed.push_back(isChangedWithout(row, position));
    const auto offset = static_cast<std::ptrdiff_t>(position);
    m_columns.erase(m_columns.begin() + offset);
    for (std::size_t row = 0; row < m_rows.size(); ++row) {
        m_rows[row].values.erase(m_rows[row].values.begin() + offset);
        m_rows[row].changed = changed[row];
    }
}

/// The row's flag once the value at `position` is gone. Looks at the other values only if need be.
bool DiffTable::isChangedWithout(const DiffTableRow& row, std::size_t position) const
{
    const std::vector<CounterValue>& values = row.values;
    const std::size_t first = position == 0 ? 1 : 0;
    if (values.size() <= 2)
        return false;
    if (position == 0 ? isIdentical(values[0], values[1])
                      : !row.changed || !differs(values[position], values[0]))
        return row.changed;
    for (std::size_t column = first + 1; column < values.size(); ++column)
        if (column != position && differs(values[column], values[first]))
            return true;
    return false;
}

void DiffTable::clear()
{
    m_rows.clear();
    m_columns.clear();
    m_index.clear();
    m_indexed = 0;
}

void DiffTable::setValue(std::size_t row, std::size_t column, const CounterValue& value)
{
    m_rows[row].values[column] = value;
    updateChanged(m_rows[row]);
}

void DiffTable::updateChanged(DiffTableRow& row)
{
    const auto isOther = [&](const CounterValue& value) { return differs(value, row.values.front()); };
    row.changed = row.values.size() > 1 && std::any_of(row.values.begin() + 1, row.values.end(), isOther);
}

bool DiffTable::differs(const CounterValue& value, const CounterValue& first) const
{
    return value != first && !(m_tolerance > 0 && isNear(value, first, m_tolerance));
}

void DiffTable::setTolerance(float tolerance)
{
    if (tolerance == m_tolerance)
        return;
    std::vector<bool> changed;
    changed.reserve(m_rows.size());
    const float before = std::exchange(m_tolerance, tolerance);
    Rollback setting([&] {
        m_tolerance = before;
        for (std::size_t row = 0; row < changed.size(); ++row)
            m_rows[row].changed = changed[row];
    });
    for (DiffTableRow& row : m_rows) {
        changed.push_back(row.changed);
        updateChanged(row);
    }
    setting.done();
}

std::size_t DiffTable::addRow(const std::string& caption)
{
    const std::uint32_t hash = hashOf(caption);
    const std::size_t known = findRow(hash, caption);
    if (known < m_rows.size())
        return known;
    DiffTableRow row;
    row.caption = caption;
    row.values.reserve(kUsualColumns);
    row.values.assign(m_columns.size(), kFiller);
    m_rows.push_back(std::move(row));
    addToIndex(hash, known);
    return known;
}

/// The number of rows if there is none. Afterwards the index has room for one more.
std::size_t DiffTable::findRow(std::uint32_t hash, const std::string& caption)
{
    std::size_t row = m_rows.size();
    const bool isFull = 2 * (m_indexed + 1) > m_index.size();
    if (isFull || m_indexed != m_rows.size() || !isIndexed(hash, caption, row)) {
        rebuildIndex(2 * m_rows.size());
        isIndexed(hash, caption, row);
    }
    return row;
}

/// Searches and sets `row` if it is found. False if the index is out of date: another row stands where it
/// told.
bool DiffTable::isIndexed(std::uint32_t hash, const std::string& caption, std::size_t& row) const
{
    bool isCurrent = true;
    const std::size_t mask = m_index.size() - 1;
    for (std::size_t at = hash & mask; m_index[at].second != kNoRow; at = (at + 1) & mask) {
        if (m_index[at].first != hash)
            continue;
        isCurrent = m_rows[m_index[at].second].caption == caption;
        if (isCurrent) {
            row = m_index[at].second;
            return true;
        }
    }
    return isCurrent;
}

void DiffTable::addToIndex(std::uint32_t hash, std::size_t row)
{
    const std::size_t mask = m_index.size() - 1;
    std::size_t at = hash & mask;
    while (m_index[at].second != kNoRow)
        at = (at + 1) & mask;
    m_index[at] = {hash, static_cast<std::uint32_t>(row)};
    ++m_indexed;
}

/// Afterwards it has room for so many rows, and for one more than there are.
void DiffTable::rebuildIndex(std::size_t rows)
{
    std::size_t size = kLeastIndex;
    while (size < 2 * (std::max(rows, m_rows.size()) + 1))
        size *= 2;
    m_index.assign(size, {0, kNoRow});
    m_indexed = 0;
    for (std::size_t row = 0; row < m_rows.size(); ++row)
        addToIndex(hashOf(m_rows[row].caption), row);
}

} // namespace statistics
