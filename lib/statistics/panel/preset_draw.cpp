// A preset's row: a check box that acts as a radio button, and the host's buttons behind it. Each button may
// clear the presets, this row included: the row is looked up again behind every functor.

#include "assertion.h"
#include "item_scope.h"
#include "render.h"
#include "widgets.h"

#include <imgui.h>

#include <utility>

namespace statistics {

namespace {

std::size_t selectedPreset(const ItemPreset& item)
{
    const std::function<std::size_t()> getSelected = item.getSelectedFunctor;
    return getSelected();
}

} // namespace

void Render::drawPreset(unsigned slot)
{
    const widgets::IdScope id = itemScope(ItemType::Preset, slot);
    const widgets::ColorScope color(ImGuiCol_Text, widgets::labelColor);
    drawPresetCheckbox(slot);
    if (presets.contains(slot) && presets[slot].params)
        drawPresetButtons(slot);
}

/// Pressing chooses the preset whatever the box showed: a ticked box can't be unticked.
void Render::drawPresetCheckbox(unsigned slot)
{
    const std::size_t index = presets[slot].index;
    bool selected = selectedPreset(presets[slot]) == index;
    if (!presets.contains(slot) || !widgets::checkBox(presets[slot].name, &selected))
        return;
    const std::function<void(std::size_t)> select = presets[slot].selectFunctor;
    select(index);
}

void Render::drawPresetButtons(unsigned slot)
{
    const ItemPreset& item = presets[slot]; // good until the first functor runs
    if (!ORV_ASSERT_MESSAGE(item.accessPresetFunctor, "Cannot create Save/Load buttons for statistics "
                                                      "preset. Preset access function is not provided."))
        return;
    ImGui::SameLine(0.0f, -1.0f);
    widgets::text(item.params->text);
    if (drawPresetButton(slot, &PresetSaveLoadParams::loadFunctor, "Load", "Load preset"))
        runPresetFunctor(slot, &PresetSaveLoadParams::loadFunctor, presets[slot].index);
    if (drawPresetButton(slot, &PresetSaveLoadParams::saveFunctor, "Save", "Save active preset"))
        runPresetFunctor(slot, &PresetSaveLoadParams::saveFunctor, selectedPreset(presets[slot]));
    if (drawPresetButton(slot, &PresetSaveLoadParams::saveAsFunctor, "Save As", "Save active preset as"))
        runPresetFunctor(slot, &PresetSaveLoadParams::saveAsFunctor, selectedPreset(presets[slot]));
}

/// False without such a functor, or if an earlier button's functor has removed the row.
bool Render::drawPresetButton(unsigned slot, PresetFunctor functor, const char* caption, const char* tooltip)
{
    if (!presets.contains(slot) || !presets[slot].params || !((*presets[slot].params).*functor))
        return false;
    ImGui::SameLine(0.0f, -1.0f);
    const bool pressed = ImGui::Button(caption, ImVec2(0.0f, 0.0f));
    if (ImGui::IsItemHovered(0))
        ImGui::SetTooltip("%s", tooltip);
    return pressed;
}

/// Runs a functor of the row on the limits of the preset at `index`; nothing if there is no such preset.
void Render::runPresetFunctor(unsigned slot, PresetFunctor functor, std::size_t index)
{
    if (index >= presets.size() || !presets.contains(static_cast<unsigned>(index)) || !presets.contains(slot))
        return;
    PresetSaveLoadParams& params = *presets[slot].params;
    const PresetSaveLoadParams::Functor run = params.*functor;
    const std::function<LimitMap&(std::size_t)> limits = presets[slot].accessPresetFunctor;
    std::string text = run(limits(index), params);
    params.text = std::move(text);
}

} // namespace statistics
