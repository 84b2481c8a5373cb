// Pools: creating, naming and freeing items, and reading what they show.

#include "render.h"

#include "assertion.h"
#include "call_scope.h"
#include "pinned.h"
#include "rollback.h"

#include <utility>

namespace statistics {

namespace {

/// Builds the element before it takes a slot: what a constructor throws leaves no slot behind.
template<typename T>
unsigned place(free_slot_vector<T>& pool, ItemType type, T element)
{
    if (!ORV_ASSERT_MESSAGE(pool.nextIndex() < kMostSlots, "No more than 65536 items of one kind."))
        return INVALID_ID;
    return itemId(type, pool.emplace(std::move(element)));
}

template<typename T>
unsigned place(free_slot_vector<T>& pool, ItemType type, T element, Schedule& schedule, float period)
{
    schedule.makeRoom(pool.nextIndex());
    const unsigned id = place(pool, type, std::move(element));
    if (id != INVALID_ID)
        schedule.start(itemSlot(id), period);
    return id;
}

} // namespace

/// An id of a kind that the operation doesn't know.
void Render::reportWrongType()
{
    ORV_ASSERT(false && "Wrong statistics item type");
}

unsigned Render::createLabel(const std::string& text)
{
    return place(labels, ItemType::Label, text);
}

unsigned Render::createCounter(const std::string& name, std::unique_ptr<Counter> counter, float period)
{
    history.makeRoom(counters.nextIndex());
    ItemCounter item(name, std::move(counter));
    if (item.counter->hasLimits && counters.nextIndex() < kMostSlots)
        printLimits(item);
    Rollback printing([this, shown = item.limits] { removeLimits(shown); });
    const unsigned id = place(counters, ItemType::Counter, std::move(item), counterSchedule, period);
    printing.done();
    return id;
}

unsigned Render::createTable(const std::string& name, std::function<std::size_t()> rowCount, float period)
{
    return place(tables, ItemType::Table, ItemTable(name, std::move(rowCount)), tableSchedule, period);
}

unsigned Render::createPreset(const std::string& name, std::size_t index,
                              std::function<std::size_t()> getSelectedFunctor,
                              std::function<void(std::size_t)> selectFunctor,
                              std::function<LimitMap&(std::size_t)> accessPresetFunctor,
                              std::unique_ptr<PresetSaveLoadParams> params)
{
    ORV_ASSERT_MESSAGE(getSelectedFunctor, "Preset item has not selected id read functor.");
    ORV_ASSERT_MESSAGE(selectFunctor, "Preset item has not select functor.");
    return place(presets, ItemType::Preset,
                 ItemPreset{name, index, std::move(getSelectedFunctor), std::move(selectFunctor),
                            std::move(accessPresetFunctor), std::move(params)});
}

unsigned Render::createCheckbox(const std::string& name, std::function<void(bool)> onChange)
{
    return place(checkboxes, ItemType::Checkbox, ItemCheckbox{name, false, std::move(onChange)});
}

unsigned Render::createSnapshotControl(std::function<void()> takeSnapshot, std::function<void()> saveDiff,
                                       std::function<void()> clearTree)
{
    pin(saveDiff); // what it holds may call back when it goes: it goes when that does no harm
    takeSnapshotFunctor = std::move(takeSnapshot);
    saveDiffFunctor = std::move(saveDiff);
    clearTreeFunctor = std::move(clearTree);
    clearTreeNote.clear();
    return itemId(ItemType::SnapshotControl, 0);
}

unsigned Render::createDiffTable(std::function<DiffTable&()> access)
{
    diffTableFunctor = std::move(access);
    return itemId(ItemType::DiffTable, 0);
}

void Render::clearSnapshotControl()
{
    takeSnapshotFunctor = nullptr;
    saveDiffFunctor = nullptr;
    clearTreeFunctor = nullptr;
    clearTreeNoteFunctor = nullptr;
    clearTreeNote.clear();
}

void Render::clearDiffTable()
{
    diffTableFunctor = nullptr;
}

void Render::clearPresets()
{
    const CallScope::Owner<free_slot_vector<ItemPreset>> cleared(
        std::make_unique<free_slot_vector<ItemPreset>>());
    *cleared = std::move(presets);
}

/// As they are now.
void Render::printLimits(ItemCounter& item)
{
    item.limits = printedLimits.emplace(ShownLimits(*item.counter));
}

void Render::removeLimits(unsigned slot)
{
    if (slot != INVALID_ID)
        printedLimits.erase(slot);
}

/// A getter that removes its own counter isn't called again, by the sample or judgement that it runs in: what
/// it reads may be gone with the counter.
void Render::removeCounter(unsigned slot)
{
    if (counters.contains(slot)) {
        counters[slot].counter->hasLimits = false;
        removeLimits(counters[slot].limits);
    }
    counters.erase(slot);
}

/// A refresh, sort or sum that is under way calls no more functors of the table, either.
void Render::removeTable(unsigned slot)
{
    if (tables.contains(slot))
        tables[slot].table->m_removed = true;
    tables.erase(slot);
}

void Render::removeItem(unsigned id)
{
    const unsigned slot = itemSlot(id);
    switch (itemType(id)) {
    case ItemType::Label:
        return labels.erase(slot);
    case ItemType::Counter:
        history.forget(slot);
        counterSchedule.stop(slot);
        historyView.ranges.forget(slot);
        return removeCounter(slot);
    case ItemType::Table:
        tableSchedule.stop(slot);
        return removeTable(slot);
    case ItemType::Preset:
        return presets.erase(slot);
    case ItemType::Checkbox:
        return checkboxes.erase(slot);
    default:
        reportWrongType();
    }
}

ItemType Render::itemType(unsigned id) const
{
    return static_cast<ItemType>(id >> kSlotBits);
}

const std::string& Render::itemName(unsigned id) const
{
    static const std::string noName;
    const unsigned slot = itemSlot(id);
    switch (itemType(id)) {
    case ItemType::Label:
        return labels[slot];
    case ItemType::Counter:
        return counters[slot].name;
    case ItemType::Table:
        return tables[slot].name;
    case ItemType::Checkbox:
        return checkboxes[slot].name;
    default:
        return noName;
    }
}

Counter* Render::getCounter(unsigned id)
{
    return itemType(id) == ItemType::Counter ? counters[itemSlot(id)].counter.get() : nullptr;
}

Table* Render::getTable(unsigned id)
{
    return itemType(id) == ItemType::Table ? tables[itemSlot(id)].table.get() : nullptr;
}

bool Render::holdsTable(const Table* table) const
{
    auto slot = tables.begin();
    while (slot != tables.end() && tables[slot].table.get() != table)
        slot = tables.next(slot);
    return slot != tables.end();
}

ItemPreset& Render::getPreset(unsigned slot)
{
    return presets[slot];
}

void Render::forEachCounter(const std::function<void(ItemCounter&)>& visit)
{
    if (!visit)
        return;
    for (auto slot = counters.begin(); slot != counters.end(); slot = counters.next(slot))
        visit(counters[slot]);
}

/// Nothing is taken where the number stays: `setHistory` then keeps what there is.
History Render::resizedHistory(std::size_t samples) const
{
    History resized(samples);
    if (resized.capacity() == history.capacity())
        return resized;
    // From behind, so that each block of the history is made once.
    for (unsigned slot = counters.size(); resized.isOn() && slot-- > 0;)
        if (counters.contains(slot)) {
            resized.makeRoom(slot);
            resized.addAll(slot, history.past(slot));
        }
    return resized;
}

void Render::setHistory(History resized) noexcept
{
    if (resized.capacity() == history.capacity())
        return;
    history = std::move(resized);
    historyView.ranges.clear();
}

CounterValue Render::itemValue(unsigned id, std::size_t column)
{
    const CallScope call;
    const unsigned slot = itemSlot(id);
    switch (itemType(id)) {
    case ItemType::Counter:
        return counters[slot].counter->getter();
    case ItemType::Table:
        if (column == NO_INDEX)
            return static_cast<unsigned>(tables[slot].rows.size());
        return tables[slot].table->sumColumn(column);
    default:
        return {};
    }
}

} // namespace statistics
