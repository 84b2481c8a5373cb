// A preset's row: a check box that acts as a radio button, and the host's buttons behind it. Each button may
// clear the presets, this row included: the row is looked up again behind every functor.

#include "assertion.h"
#include "item_scope.h"
#include "pinned.h"
#include "render.h"
#include "widgets.h"

#include <imgui.h>

#include <utility>

namespace statistics {

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
    bool selected = pin(presets[slot].getSelectedFunctor)() == index;
    if (presets.contains(slot) && widgets::checkBox(presets[slot].name, &selected))
        pin(presets[slot].selectFunctor)(index);
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
        runPresetFunctor(slot, &PresetSaveLoadParams::loadFunctor, EPresetLimits::OwnRow);
    if (drawPresetButton(slot, &PresetSaveLoadParams::saveFunctor, "Save", "Save active preset"))
        runPresetFunctor(slot, &PresetSaveLoadParams::saveFunctor, EPresetLimits::Active);
    if (drawPresetButton(slot, &PresetSaveLoadParams::saveAsFunctor, "Save As", "Save active preset as"))
        runPresetFunctor(slot, &PresetSaveLoadParams::saveAsFunctor, EPresetLimits::Active);
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

/// Runs a functor of the row on a preset's limits; nothing if there is no such preset, or if the functors
/// that tell it have put another row in this one's place.
void Render::runPresetFunctor(unsigned slot, PresetFunctor functor, EPresetLimits which)
{
    PresetSaveLoadParams* const params = presets[slot].params.get();
    const auto isSameRow = [&] { return presets.contains(slot) && presets[slot].params.get() == params; };
    const std::size_t index =
        which == EPresetLimits::Active ? pin(presets[slot].getSelectedFunctor)() : presets[slot].index;
    if (!isSameRow() || index >= presets.size() || !presets.contains(static_cast<unsigned>(index)))
        return;
    LimitMap& limits = pin(presets[slot].accessPresetFunctor)(index);
    if (!isSameRow() || !(params->*functor))
        return;
    std::string text = pin(params->*functor)(limits, *params);
    if (isSameRow())
        params->text = std::move(text);
}

} // namespace statistics
