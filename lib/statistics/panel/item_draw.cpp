// The dispatch of drawing: each kind of item has a source of its own, but for the
// small ones here.

#include "item_scope.h"
#include "pinned.h"
#include "render.h"
#include "widgets.h"

#include <imgui.h>

namespace statistics {

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

namespace {

/// A tooltip of the widget that was just drawn; none if the text is empty.
void showWhilePointedAt(const std::string& text)
{
    if (!text.empty() && ImGui::IsItemHovered(0))
        ImGui::SetTooltip("%s", text.c_str());
}

} // namespace

void Render::drawCheckbox(unsigned slot)
{
    const widgets::IdScope id = itemScope(ItemType::Checkbox, slot);
    ItemCheckbox& item = checkboxes[slot]; // good until its functor runs
    bool value = item.value;
    const bool clicked = widgets::checkBox(item.name, &value);
    showWhilePointedAt(item.note);
    if (!clicked)
        return;
    if (item.onChange)
        pin(item.onChange)(value); // may throw, or remove the box
    if (checkboxes.contains(slot))
        checkboxes[slot].value = value;
}

namespace {

/// Runs the functor of a button that is pressed.
void drawButton(const char* caption, std::function<void()>& functor)
{
    if (ImGui::Button(caption, ImVec2(0.0f, 0.0f)) && functor)
        pin(functor)();
}

} // namespace

void Render::drawSnapshotControl()
{
    drawButton("Clear tree", clearTreeFunctor);
    drawClearTreeNote();
    ImGui::SameLine(0.0f, -1.0f);
    drawButton("Take snapshot", takeSnapshotFunctor);
    ImGui::SameLine(0.0f, -1.0f);
    drawButton("Save diff", saveDiffFunctor);
}

/// It looks at the disk, so it is made when the user begins to point at the button, and again when the
/// library has changed what is there.
void Render::drawClearTreeNote()
{
    if (!ImGui::IsItemHovered(0))
        clearTreeNote.clear();
    else if (clearTreeNote.empty() && clearTreeNoteFunctor)
        clearTreeNote = clearTreeNoteFunctor();
    showWhilePointedAt(clearTreeNote);
}

} // namespace statistics
