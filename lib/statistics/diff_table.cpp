#include <statistics/diff_table.h>

#include <algorithm>
#include <string_view>
#include <unordered_map>

namespace statistics {

namespace {

/// What a snapshot shows for a caption that it doesn't have.
constexpr int kFiller = 0;

/// Rows by caption, for the time of one bulk addition. The views stay good as long as the rows don't move.
using RowsByCaption = std::unordered_map<std::string_view, std::size_t>;

RowsByCaption rowsByCaption(const std::vector<DiffTableRow>& rows)
{
    RowsByCaption positions;
    positions.reserve(rows.capacity());
    for (std::size_t row = 0; row < rows.size(); ++row)
        positions.emplace(rows[row].caption, row);
    return positions;
}

} // namespace

std::size_t DiffTable::addColumn(const std::string& title, std::size_t snapshot)
{
    const auto same = [&](const DiffTableColumn& column) { return column.snapshot == snapshot; };
    const auto found = std::find_if(m_columns.begin(), m_columns.end(), same);
    const auto position = static_cast<std::size_t>(found - m_columns.begin());
    if (found != m_columns.end())
        return position;
    m_columns.push_back({title, snapshot});
    for (DiffTableRow& row : m_rows) {
        row.values.emplace_back(kFiller);
        updateChanged(row);
    }
    return position;
}

std::size_t DiffTable::addRow(const std::string& caption)
{
    const auto same = [&](const DiffTableRow& row) { return row.caption == caption; };
    const auto found = std::find_if(m_rows.begin(), m_rows.end(), same);
    return found != m_rows.end() ? static_cast<std::size_t>(found - m_rows.begin()) : appendRow(caption);
}

std::size_t DiffTable::appendRow(const std::string& caption)
{
    m_rows.push_back({caption, std::vector<CounterValue>(m_columns.size(), kFiller), false});
    return m_rows.size() - 1;
}

void DiffTable::addEntries(std::size_t column, const Entries& entries)
{
    m_rows.reserve(m_rows.size() + entries.size());
    RowsByCaption positions;
    std::size_t expected = 0;
    for (const auto& [caption, value] : entries) {
        // Snapshots of one program mostly hold the same captions in the same order: look there first.
        if (expected >= m_rows.size() || m_rows[expected].caption != caption) {
            if (positions.empty())
                positions = rowsByCaption(m_rows);
            const auto [found, added] = positions.try_emplace(caption, m_rows.size());
            expected = added ? appendRow(caption) : found->second;
        }
        setValue(expected++, column, value);
    }
}

void DiffTable::setValue(std::size_t row, std::size_t column, const CounterValue& value)
{
    m_rows[row].values[column] = value;
    updateChanged(m_rows[row]);
}

void DiffTable::updateChanged(DiffTableRow& row)
{
    const auto differs = [&](const CounterValue& value) { return value != row.values.front(); };
    row.changed = row.values.size() > 1 && std::any_of(row.values.begin() + 1, row.values.end(), differs);
}

void DiffTable::removeColumn(std::size_t snapshot)
{
    const auto same = [&](const DiffTableColumn& column) { return column.snapshot == snapshot; };
    const auto found = std::find_if(m_columns.begin(), m_columns.end(), same);
    if (found == m_columns.end())
        return;
    const auto position = found - m_columns.begin();
    m_columns.erase(found);
    if (m_columns.empty()) {
        m_rows.clear();
        return;
    }
    for (DiffTableRow& row : m_rows) {
        row.values.erase(row.values.begin() + position);
        updateChanged(row);
    }
}

void DiffTable::clear()
{
    m_rows.clear();
    m_columns.clear();
}

} // namespace statistics
