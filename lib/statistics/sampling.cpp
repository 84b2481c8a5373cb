// Sampling: which items are due, and the reading of one counter or one table through the host's functors.

#include "render.h"

#include "call_scope.h"
#include "stack_tracker.h"

#include <algorithm>
#include <utility>

namespace statistics {

namespace {

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

/// Advances the item's timer. The time in excess of a period is dropped.
template<typename Item>
bool isDue(Item& item, float dt)
{
    const float elapsed = dt + item.timer;
    // Whatever isn't a number, in `dt` or in the period, makes the item due.
    const bool waits = dt >= 0.0f && elapsed < item.period;
    // Before the sampling: an item whose functor throws waits for its period like any other.
    item.timer = waits ? elapsed : 0.0f;
    return !waits;
}

} // namespace

void Render::update(float dt, bool enabled)
{
    const Orv::StackScope scope("statistics::Render::update", __FILE__, __LINE__);
    const CallScope call;
    if (!enabled)
        return;
    const auto due = [dt](auto& item) { return isDue(item, dt); };
    for (auto slot = counters.findFrom(0, due); slot != counters.end();
         slot = counters.findFrom(slot + 1, due))
        updateCounter(slot);
    for (auto slot = tables.findFrom(0, due); slot != tables.end(); slot = tables.findFrom(slot + 1, due))
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
    if (counterItem(slot, counter))
        showValue(slot, value);
    // Removed counters have no limits left: their getters aren't called again.
    if (!counter.hasLimits)
        return;
    CounterValue judged = counter.getter();
    const float weight = judged.weight(counter.min, counter.max);
    if (ItemCounter* item = counterItem(slot, counter))
        item->weight = weight;
}

void Render::showValue(unsigned slot, const CounterValue& value)
{
    ItemCounter& item = counters[slot];
    value.print(m_valueText, orNull(item.counter->format));
    // A bar has its size whatever is written on it.
    if (!item.counter->hasLimits && !looksAsLarge(m_valueText, item.valueText))
        lineChanges.note(slot);
    item.valueText = m_valueText;
}

/// The item, unless a functor has removed it or put another one in its place.
ItemTable* Render::tableItem(unsigned slot, const Table& table)
{
    const bool same = tables.contains(slot) && tables[slot].table.get() == &table;
    return same ? &tables[slot] : nullptr;
}

namespace {

/// Copies, because a getter may change the table's columns while it runs.
void copyGetters(const Table& table, ItemTable::Getters& getters)
{
    getters.clear();
    for (const TableColumn& column : table.m_header)
        getters.push_back(column.getter);
}

} // namespace

/// One refresh: the memory of the getters' copies comes from the item and goes back to it, and rows that
/// weren't read, for an exception or for want of columns, are empty instead of old.
class Render::Refresh {
public:
    Refresh(Render& render, unsigned slot, Table& table)
        : m_render(render), m_slot(slot), m_table(table), m_count(table.m_rowCount())
    {
        if (ItemTable* item = this->item()) {
            m_getters = std::exchange(item->getters, {});
            item->rows.resize(m_count);
            item->lines.clear();
        }
        copyGetters(table, m_getters);
    }
    // NOLINTNEXTLINE(bugprone-exception-escape): the item is only reached for if it is there
    ~Refresh()
    {
        if (ItemTable* item = this->item())
            for (std::size_t row = m_row; row < item->rows.size(); ++row)
                item->rows[row].clear();
        // A copy may be the last to hold what the host captured, and that may call back when it goes.
        m_getters.clear();
        if (ItemTable* item = this->item())
            item->getters = std::move(m_getters);
    }
    Refresh(const Refresh&) = delete;
    Refresh& operator=(const Refresh&) = delete;

    void readRows()
    {
        for (; m_row < m_count && !m_getters.empty(); ++m_row)
            for (std::size_t column = 0; column < m_getters.size(); ++column)
                if (!readCell(column))
                    return;
    }

private:
    ItemTable* item() { return m_render.tableItem(m_slot, m_table); }

    /// False if a functor has removed the table, or taken the row away by a refresh of its own.
    bool readCell(std::size_t column)
    {
        const std::size_t dataRow = m_table.dataRow(m_row);
        const bool exists = dataRow != NO_INDEX && column < m_table.m_header.size();
        const CounterValue value = exists ? m_getters[column](dataRow) : CounterValue(std::string());
        ItemTable* item = this->item();
        if (!item || m_row >= item->rows.size())
            return false;
        std::vector<std::string>& cells = item->rows[m_row];
        cells.resize(m_getters.size());
        m_table.printCell(cells[column], column, value);
        item->lines.add(m_row, cells[column]);
        return true;
    }

    Render& m_render;
    unsigned m_slot;
    Table& m_table;
    ItemTable::Getters m_getters;
    std::size_t m_count;
    std::size_t m_row = 0;
};

void Render::updateTable(unsigned slot)
{
    const CallScope call;
    Refresh(*this, slot, *tables[slot].table).readRows();
}

} // namespace statistics
