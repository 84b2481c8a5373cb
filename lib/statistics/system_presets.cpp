// Presets: named sets of limits, of which the user picks one on the panel.

#include "system_data.h"

#include "assertion.h"
#include "call_scope.h"

#include <utility>

namespace statistics {

void System::createPreset(const std::string& name, const LimitMap& limits,
                          std::unique_ptr<PresetSaveLoadParams> params)
{
    const std::size_t index = limitPresets.size();
    const unsigned item = m_data->render.createPreset(
        name, index, [this] { return activePreset; }, [this](std::size_t chosen) { choosePreset(chosen); },
        [this](std::size_t accessed) -> LimitMap& { return lendLimits(accessed); }, std::move(params));
    if (item == INVALID_ID)
        return;
    limitPresets.push_back(limits);
    m_data->presetGroup.tree.addChild(item, m_data->presetGroup.groupNode);
}

/// A load or save functor holds the map while it creates presets, and a host may hold one while the user
/// presses a button: from the first loan on there is room for all that can ever be, so that no map moves.
LimitMap& System::lendLimits(std::size_t index)
{
    limitPresets.reserve(kMostSlots);
    return limitPresets.at(index);
}

void System::choosePreset(std::size_t index)
{
    if (!ORV_ASSERT(index < limitPresets.size()))
        return;
    activePreset = index;
    m_data->render.forEachCounter([this](ItemCounter& item) {
        const Limit* limit = limitOf(*item.counter);
        item.counter->setLimits(limit ? limit->min : 0.0f, limit ? limit->max : 0.0f);
        item.printLimits();
    });
    m_data->render.lineChanges.noteAll(); // the limits' texts may take other room
}

void System::clearPresets()
{
    CallScope::retire(std::exchange(limitPresets, {}));
    // The old label goes first: hosts that clear often must not fill the pool.
    Render& render = m_data->render;
    render.removeItem(m_data->presetGroup.tree.item(m_data->presetGroup.groupNode));
    m_data->presetGroup = PresetGroup(render);
    render.clearPresets();
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
