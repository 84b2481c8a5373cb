// The line on top of the panel in which the user filters the host's items.

#include "filter.h"

#include "layout.h"
#include "text_field.h"
#include "widgets.h"

#include <imgui.h>

#include <utility>

namespace statistics {

namespace {

constexpr const char* kField = "##text";

} // namespace

/// What is typed is answered in the same frame.
void Filter::drawLine(const Tree& tree, const Render& render)
{
    const widgets::IdScope id("filter");
    drawField();
    ImGui::SameLine(0.0f, -1.0f);
    const bool cleared = ImGui::Button("Clear", ImVec2(0.0f, 0.0f));
    // Behind the field, which takes back on Escape what was typed. Where the panel hasn't been in focus yet,
    // the key has just closed a menu over it.
    bool* const wasFocused = ImGui::GetStateStorage()->GetBoolRef(ImGui::GetID("focus"));
    const bool inFocus = ImGui::IsWindowFocused(0);
    if (cleared || (std::exchange(*wasFocused, inFocus) && inFocus && widgets::isEscapePressed()))
        set({});
    refresh(tree, render);
    if (isOn())
        drawMatchCount();
}

/// The text may have been set by the host meanwhile, or cleared: that goes before what is being typed, which
/// newer releases of ImGui hand over once more when the field is left.
void Filter::drawField()
{
    const bool setElsewhere = m_fieldEdition != m_edition;
    if (setElsewhere) {
        widgets::leaveTextField(kField);
        m_field = widgets::editable(m_text);
    }
    ImGui::SetNextItemWidth(layout::scaled(layout::kFilterWidth));
    const bool typed = widgets::textField(kField, "words of a path, -word without it", m_field);
    if (typed && setElsewhere)
        return;
    if (typed)
        set(m_field);
    m_fieldEdition = m_edition;
}

void Filter::drawMatchCount() const
{
    ImGui::SameLine(0.0f, -1.0f);
    if (m_matchCount == 0)
        ImGui::TextUnformatted("no match");
    else
        ImGui::Text(m_matchCount == 1 ? "%zu match" : "%zu matches", m_matchCount);
}

} // namespace statistics
