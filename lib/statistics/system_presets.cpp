// Presets: named sets of limits, of which the user picks one on the panel.

#include "system_data.h"

#include "assertion.h"
#include "call_scope.h"

#include <deque>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace statistics {

const Limit* limitOf(const Counter& counter, const LimitMap& limits)
{
    const auto found = limits.find(counter.limitKey);
    return found != limits.end() ? &found->second : nullptr;
}

void System::createPreset(const std::string& name, const LimitMap& limits,
                          std::unique_ptr<PresetSaveLoadParams> params)
{
    Render& render = m_data->render;
    const std::size_t index = limitPresets.size();
    const unsigned item = render.createPreset(
        name, index, [this] { return activePreset; }, [this](std::size_t chosen) { choosePreset(chosen); },
        [this](std::size_t accessed) -> LimitMap& { return limitPresets.at(accessed); }, std::move(params));
    if (item == INVALID_ID)
        return;
    Rollback making([&] { render.removeItem(item); });
    limitPresets.push_back(limits);
    Rollback storing([&] { limitPresets.pop_back(); });
    m_data->presetGroup.tree.addChild(item, m_data->presetGroup.groupNode);
    storing.done();
    making.done();
}

namespace {

/// What a preset gives to one counter.
struct GivenLimits {
    Limit limit;
    LimitTexts texts; ///< empty for a counter without limits
};

/// In pool order; zeros for counters that the preset doesn't know.
std::vector<GivenLimits> givenLimits(const free_slot_vector<ItemCounter>& counters, const LimitMap& limits)
{
    std::vector<GivenLimits> given;
    given.reserve(counters.size());
    for (auto slot = counters.begin(); slot != counters.end(); slot = counters.next(slot)) {
        const Counter& counter = *counters[slot].counter;
        const Limit* known = limitOf(counter, limits);
        given.push_back({known ? *known : Limit{0.0f, 0.0f}, {}});
        const Limit& limit = given.back().limit;
        if (counters[slot].limits != INVALID_ID)
            given.back().texts = LimitTexts(limit.min, limit.max, counter.limitFormat);
    }
    return given;
}

} // namespace

/// All that needs memory is made before anything changes.
void System::choosePreset(std::size_t index)
{
    if (!ORV_ASSERT(index < limitPresets.size()))
        return;
    Render& render = m_data->render;
    free_slot_vector<ItemCounter>& counters = render.counters;
    std::vector<GivenLimits> given = givenLimits(counters, limitPresets[index]);
    activePreset = index;
    auto next = given.begin();
    for (auto slot = counters.begin(); slot != counters.end(); slot = counters.next(slot), ++next) {
        counters[slot].counter->setLimits(next->limit.min, next->limit.max);
        if (counters[slot].limits != INVALID_ID)
            std::swap(render.printedLimits[counters[slot].limits].texts, next->texts);
    }
    render.lineChanges.noteAll(); // the limits' texts may take other room
}

/// The group's label stays: the user finds the group open or closed as it was.
void System::clearPresets()
{
    const CallScope call;
    // What needs memory comes first.
    const CallScope::Owner<std::deque<LimitMap>> cleared(std::make_unique<std::deque<LimitMap>>());
    PresetGroup& group = m_data->presetGroup;
    Tree tree;
    const unsigned node = tree.addChild(group.tree.item(group.groupNode), 0);
    m_data->render.clearPresets();

    // A functor may hold its limits still.
    cleared->swap(limitPresets);
    group.tree = std::move(tree);
    group.groupNode = node;
}

std::size_t System::getActivePreset() const
{
    return activePreset;
}

ItemPreset& System::getPreset(unsigned slot)
{
    return m_data->render.getPreset(slot);
}

} // namespace statistics
