// Sampling: which items are due, and the reading of one counter or one table through the host's functors.

#include "render.h"

#include "call_scope.h"
#include "judging.h"
#include "pinned.h"
#include "stack_tracker.h"
#include "table_order.h"

#include <algorithm>
#include <utility>

namespace statistics {

namespace {

constexpr unsigned kAhead = 8; ///< slots, on the way from memory while another counter is sampled

bool isDigit(char byte)
{
    return byte >= '0' && byte <= '9';
}

/// Fonts give all digits one width: texts that differ in digits alone take the same room on the panel.
bool looksAsLarge(const std::string& a, const std::string& b)
{
    const auto same = [](char left, char right) {
        return left == right || (isDigit(left) && isDigit(right));
    };
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), same);
}

/// As warnings judge it.
ECrossed crossedLimit(const CounterValue& value, const Counter& counter)
{
    if (value < counter.min)
        return ECrossed::Min;
    return value > counter.max ? ECrossed::Max : ECrossed::None;
}

} // namespace

void Render::update(float dt, bool enabled)
{
    const Orv::StackScope scope("statistics::Render::update", __FILE__, __LINE__);
    const CallScope call;
    if (!enabled)
        return;
    // A sample may create and remove items: each search begins behind the slot that was sampled last.
    for (unsigned slot = 0; (slot = counterSchedule.findDue(slot, dt)) != Schedule::npos; ++slot)
        if (counters.contains(slot)) {
            if (counters.contains(slot + kAhead))
                prefetchCounter(*counters[slot + kAhead].counter);
            updateCounter(slot);
        }
    for (unsigned slot = 0; (slot = tableSchedule.findDue(slot, dt)) != Schedule::npos; ++slot)
        if (tables.contains(slot))
            updateTable(slot);
}

void Render::updateNode(unsigned id)
{
    const CallScope call;
    switch (itemType(id)) {
    case ItemType::Counter:
        return updateCounter(itemSlot(id));
    case ItemType::Table:
        return updateTable(itemSlot(id));
    case ItemType::Label:
    case ItemType::Root:
        return;
    default:
        reportWrongType();
    }
}

/// The item, unless a functor has removed it or put another one in its place.
ItemCounter* Render::counterItem(unsigned slot, const Counter& counter)
{
    const bool same = counters.contains(slot) && counters[slot].counter.get() == &counter;
    return same ? &counters[slot] : nullptr;
}

void Render::updateCounter(unsigned slot)
{
    Counter& counter = *counters[slot].counter;
    const CounterValue value = counter.getter();
    if (counterItem(slot, counter)) {
        if (history.isOn())
            history.add(slot, value);
        showValue(slot, value);
    }
    // Removed counters have no limits left: their getters aren't called again.
    if (!counter.hasLimits)
        return;
    CounterValue judged = counter.getter();
    const float weight = judged.weight(counter.min, counter.max);
    ItemCounter* item = counterItem(slot, counter);
    if (!item)
        return;
    if (item->limits == INVALID_ID) {
        printLimits(*item);
        lineChanges.note(slot);
    }
    ShownLimits& shown = printedLimits[item->limits];
    shown.weight = weight;
    shown.crossed = options.markOutside ? crossedLimit(judged, counter) : ECrossed::None;
}

void Render::showValue(unsigned slot, const CounterValue& value)
{
    ItemCounter& item = counters[slot];
    value.print(m_valueText, orNull(item.counter->format));
    // A bar has its size whatever is written on it.
    if (!item.showsLimits() && !looksAsLarge(m_valueText, item.valueText))
        lineChanges.note(slot);
    item.valueText = m_valueText;
}

/// The item, unless a functor has removed it or put another one in its place.
ItemTable* Render::tableItem(unsigned slot, const Table& table)
{
    const bool same = tables.contains(slot) && tables[slot].table.get() == &table;
    return same ? &tables[slot] : nullptr;
}

/// The cells of a table as a refresh reads them: the numbers of rows and columns are those of its start, and
/// the order is settled once.
class TableReading {
public:
    /// Runs the row count.
    explicit TableReading(Table& table)
        : rows(table.rowCount()), columns(table.m_header.size()), m_table(table)
    {
    }

    /// Orders the rows if their number has changed. Runs the getters of the sort.
    void start() const
    {
        if (rows > 0 && columns > 0 && m_table.m_order.size() != rows)
            m_table.order(rows, m_table.m_sortColumn, m_table.m_sortAscending);
    }
    /// An empty text where the row or the column has gone meanwhile. Runs the row count and the getter.
    CounterValue read(std::size_t viewRow, std::size_t column) const
    {
        const std::size_t row = m_table.settledRow(viewRow);
        const bool present = row != NO_INDEX && column < m_table.m_header.size();
        return present ? pin(m_table.m_header[column].getter)(row) : CounterValue(std::string());
    }

    const std::size_t rows;
    const std::size_t columns;

private:
    Table& m_table;
    SettledOrder m_settled{m_table};
};

/// One refresh: cells that weren't read, for an exception or for want of columns, are empty instead of old.
class Render::Refresh {
public:
    /// Runs the row count.
    Refresh(Render& render, unsigned slot, Table& table)
        : m_render(render), m_slot(slot), m_table(table), m_reading(table)
    {
        if (ItemTable* item = this->item())
            item->rows.resize(m_reading.rows);
    }
    // NOLINTNEXTLINE(bugprone-exception-escape): the item is only reached for if it is there
    ~Refresh()
    {
        ItemTable* item = this->item();
        if (!item)
            return;
        item->lines.forgetFrom(m_column == 0 ? m_row : m_row + 1);
        for (std::size_t row = m_row; row < item->rows.size(); ++row) {
            std::vector<std::string>& cells = item->rows[row];
            cells.resize(std::min(std::exchange(m_column, 0), cells.size()));
        }
    }
    Refresh(const Refresh&) = delete;
    Refresh& operator=(const Refresh&) = delete;

    /// Runs the row count and the getters, which may remove the table.
    void readRows()
    {
        m_reading.start();
        for (; m_row < m_reading.rows && m_reading.columns > 0; ++m_row)
            for (m_column = 0; m_column < m_reading.columns; ++m_column)
                if (!readCell())
                    return;
    }

private:
    ItemTable* item() { return m_render.tableItem(m_slot, m_table); }

    /// Runs the row count and the getter. False if a functor has removed the table, or taken the row away by
    /// a refresh of its own.
    bool readCell()
    {
        const CounterValue value = m_reading.read(m_row, m_column);
        ItemTable* item = this->item();
        if (!item || m_row >= item->rows.size())
            return false;
        std::vector<std::string>& cells = item->rows[m_row];
        // What is known from here on is of the last refresh, or of one that a functor ran meanwhile.
        if (m_column == 0)
            item->lines.forgetFrom(m_row);
        cells.resize(m_reading.columns);
        m_table.printCell(cells[m_column], m_column, value);
        item->lines.add(m_row, cells[m_column]);
        return true;
    }

    Render& m_render;
    unsigned m_slot;
    Table& m_table;
    TableReading m_reading;
    std::size_t m_row = 0;
    std::size_t m_column = 0; ///< of the cell that is read next
};

/// Runs the row count and the getters.
void Render::updateTable(unsigned slot)
{
    const CallScope call;
    Refresh(*this, slot, *tables[slot].table).readRows();
}

} // namespace statistics
