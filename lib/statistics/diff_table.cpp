#include <statistics/diff_table.h>

#include "name_index.h"

#include <algorithm>
#include <cstdint>
#include <optional>

namespace statistics {

namespace {

/// What a snapshot shows for a caption that it doesn't have.
constexpr int kFiller = 0;

constexpr std::size_t kUsualColumns = 4; ///< room in a new row
constexpr unsigned kNoRow = static_cast<unsigned>(-1);

/// Finds rows by caption, for the time of one bulk addition.
class RowFinder {
public:
    RowFinder(const std::vector<DiffTableRow>& rows, std::size_t expected) : m_rows(rows)
    {
        m_index.reset(rows.size() + expected);
        for (std::size_t row = 0; row < rows.size(); ++row)
            add(hash(rows[row].caption), row);
    }
    static std::uint32_t hash(const std::string& caption) { return NameIndex::hash(0, caption); }
    void add(std::uint32_t hash, std::size_t row) { m_index.add(hash, static_cast<unsigned>(row)); }
    unsigned find(std::uint32_t hash, const std::string& caption) const
    {
        return m_index.find(hash, kNoRow, [&](unsigned row) { return m_rows[row].caption == caption; });
    }

private:
    const std::vector<DiffTableRow>& m_rows;
    NameIndex m_index;
};

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
    DiffTableRow& row = m_rows.emplace_back();
    row.caption = caption;
    row.values.reserve(kUsualColumns);
    row.values.assign(m_columns.size(), kFiller);
    return m_rows.size() - 1;
}

void DiffTable::addEntries(std::size_t column, const Entries& entries)
{
    m_rows.reserve(m_rows.size() + entries.size());
    std::optional<RowFinder> finder;
    std::size_t expected = 0;
    for (const auto& [caption, value] : entries) {
        // Snapshots of one program mostly hold the same captions in the same order: look there first.
        if (expected >= m_rows.size() || m_rows[expected].caption != caption) {
            if (!finder)
                finder.emplace(m_rows, entries.size());
            const std::uint32_t hash = RowFinder::hash(caption);
            expected = finder->find(hash, caption);
            if (expected == kNoRow) {
                expected = appendRow(caption);
                finder->add(hash, expected);
            }
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
