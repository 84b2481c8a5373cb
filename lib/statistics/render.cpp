// Pools, names, freeing, sampling and the dispatch of drawing. The drawing of each kind has a file of its
// own.

#include "render.h"

#include "assertion.h"
#include "call_scope.h"
#include "stack_tracker.h"
#include "widgets.h"

#include <imgui.h>

#include <utility>

namespace statistics {

namespace {

constexpr float kLayoutWidth = 850.0f; ///< of the widest item, a table
constexpr float kPanelHeight = 600.0f; ///< at the panel's very first appearance

/// Builds the element before it takes a slot: what a constructor throws leaves no slot behind.
template<typename T>
unsigned place(free_slot_vector<T>& pool, ItemType type, T element)
{
    if (!ORV_ASSERT_MESSAGE(pool.nextIndex() < kMostSlots, "No more than 65536 items of one kind."))
        return INVALID_ID;
    return itemId(type, pool.emplace(std::move(element)));
}

/// Takes the element out of sight; it is destroyed when no functor can stand on it any more.
template<typename T>
void retire(free_slot_vector<T>& pool, unsigned slot)
{
    if (pool.contains(slot))
        CallScope::retire(std::move(pool[slot]));
    pool.erase(slot);
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

/// A getter that removes its own counter isn't called again, by the sample or judgement that it runs in: what
/// it reads may be gone with the counter.
void retireCounter(free_slot_vector<ItemCounter>& counters, unsigned slot)
{
    if (counters.contains(slot))
        counters[slot].counter->hasLimits = false;
    retire(counters, slot);
}

void reportWrongType()
{
    ORV_ASSERT(false && "Wrong statistics item type");
}

} // namespace

unsigned Render::createLabel(const std::string& text)
{
    return place(labels, ItemType::Label, text);
}

unsigned Render::createCounter(const std::string& name, std::unique_ptr<Counter> counter, float period)
{
    return place(counters, ItemType::Counter, ItemCounter(name, std::move(counter), period));
}

unsigned Render::createTable(const std::string& name, std::function<std::size_t()> rowCount, float period)
{
    return place(tables, ItemType::Table, ItemTable(name, std::move(rowCount), period));
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
    takeSnapshotFunctor = std::move(takeSnapshot);
    saveDiffFunctor = std::move(saveDiff);
    clearTreeFunctor = std::move(clearTree);
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
    // What the host's function holds may call back when it goes.
    CallScope::retire(std::exchange(saveDiffFunctor, nullptr));
    clearTreeFunctor = nullptr;
}

void Render::clearDiffTable()
{
    diffTableFunctor = nullptr;
}

void Render::clearPresets()
{
    CallScope::retire(std::exchange(presets, {}));
}

void Render::removeItem(unsigned id)
{
    const unsigned slot = itemSlot(id);
    switch (itemType(id)) {
    case ItemType::Label:
        return labels.erase(slot);
    case ItemType::Counter:
        return retireCounter(counters, slot);
    case ItemType::Table:
        return retire(tables, slot);
    case ItemType::Preset:
        return retire(presets, slot);
    case ItemType::Checkbox:
        return retire(checkboxes, slot);
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

bool Render::beginWindow()
{
    // Wide enough for a table at the second level of the tree, with a scrollbar beside it.
    const ImGuiStyle& style = ImGui::GetStyle();
    const float frame = 2.0f * (style.WindowPadding.x + style.IndentSpacing) + style.ScrollbarSize;
    widgets::suggestNextWindowSize(ImVec2(kLayoutWidth + frame, kPanelHeight));
    ImGui::SetNextWindowBgAlpha(0.0f);
    return ImGui::Begin("Statistics", &windowOpen, 0);
}

void Render::endWindow()
{
    ImGui::End();
}

bool Render::drawItem(unsigned id, unsigned /*depth*/, bool hasChildren)
{
    const unsigned slot = itemSlot(id);
    switch (itemType(id)) {
    case ItemType::Label:
        return drawLabel(slot, hasChildren);
    case ItemType::Counter:
        return drawCounter(slot, hasChildren);
    case ItemType::Table:
        return drawTable(slot);
    case ItemType::Preset:
        drawPreset(slot);
        return false;
    case ItemType::Checkbox:
        drawCheckbox(slot);
        return false;
    case ItemType::SnapshotControl:
        drawSnapshotControl();
        return false;
    case ItemType::DiffTable:
        drawDiffTable();
        return false;
    case ItemType::Root:
        ImGui::TreePush("");
        return true;
    default:
        reportWrongType();
        return false;
    }
}

void Render::endNode()
{
    ImGui::TreePop();
}

void Render::drawCheckbox(unsigned slot)
{
    const widgets::IdScope id(static_cast<int>(itemId(ItemType::Checkbox, slot)));
    ItemCheckbox& item = checkboxes[slot];
    bool value = item.value;
    if (!widgets::checkBox(item.name, &value))
        return;
    item.value = value;
    if (const std::function<void(bool)> onChange = item.onChange)
        onChange(value);
}

namespace {

void drawButton(const char* caption, const std::function<void()>& functor)
{
    if (!ImGui::Button(caption, ImVec2(0.0f, 0.0f)))
        return;
    if (const std::function<void()> pressed = functor)
        pressed();
}

} // namespace

void Render::drawSnapshotControl()
{
    drawButton("Clear tree", clearTreeFunctor);
    ImGui::SameLine(0.0f, -1.0f);
    drawButton("Take snapshot", takeSnapshotFunctor);
    ImGui::SameLine(0.0f, -1.0f);
    drawButton("Save diff", saveDiffFunctor);
}

} // namespace statistics
