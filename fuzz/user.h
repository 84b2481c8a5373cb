#pragma once

#include "script.h"

#include "offscreen/host.h"

#include <imgui_internal.h>

#include <iterator>

namespace fuzz {

/// The mouse and the keys, as the input tells.
class User {
public:
    User(Script& steps, offscreen::Host& host) : m_steps(steps), m_ui(host) {}

    void act()
    {
        switch (m_steps.byte() % 4) {
        case 0:
            return dragBorder();
        case 1:
            return pressKey();
        default:
            return moveMouse();
        }
    }

private:
    void moveMouse()
    {
        const auto x = static_cast<float>(m_steps.byte() * 4);
        const ImVec2 point(x, static_cast<float>(m_steps.byte() * 3));
        switch (m_steps.byte() % 7) {
        case 0:
            return m_ui.click(point);
        case 1:
            return m_ui.rightClick(point);
        case 2:
            return m_ui.doubleClick(point);
        case 3:
            return m_ui.moveTo(point);
        case 4:
            return m_ui.press();
        case 5:
            return m_ui.release();
        default:
            return m_ui.wheel(0.0f, m_steps.number() > 0.0f ? 3.0f : -3.0f);
        }
    }

    /// A drag from a border of some columns that the panel has shown.
    void dragBorder()
    {
        m_ui.frame();
        const ImGuiWindow* window = ImGui::FindWindowByName("Statistics");
        if (!window || window->ColumnsStorage.empty())
            return;
        const unsigned chosen = m_steps.byte() % static_cast<unsigned>(window->ColumnsStorage.Size);
        const ImGuiOldColumns& set = window->ColumnsStorage[static_cast<int>(chosen)];
        if (set.Columns.empty())
            return;
        const unsigned border = m_steps.byte() % static_cast<unsigned>(set.Columns.Size);
        const float offset = set.Columns[static_cast<int>(border)].OffsetNorm * (set.OffMaxX - set.OffMinX);
        const ImVec2 from(window->Pos.x + set.OffMinX + offset, set.LineMaxY - 1.0f);
        m_ui.moveTo(from);
        m_ui.press();
        m_ui.moveTo(ImVec2(from.x + static_cast<float>(m_steps.byte()) * 12.0f - 1530.0f, from.y));
        if (m_steps.byte() % 2)
            m_ui.release();
    }

    void pressKey()
    {
        static const ImGuiKey keys[] = {ImGuiKey_DownArrow,  ImGuiKey_UpArrow,  ImGuiKey_LeftArrow,
                                        ImGuiKey_RightArrow, ImGuiKey_PageDown, ImGuiKey_PageUp,
                                        ImGuiKey_Home,       ImGuiKey_End,      ImGuiKey_Space,
                                        ImGuiKey_Enter,      ImGuiKey_Tab,      ImGuiKey_Escape};
        const unsigned choice = m_steps.byte();
        if (choice % 16 == 15)
            return m_ui.setFontScale(0.1f + static_cast<float>(choice) * 0.02f);
        if (choice % 16 == 14)
            return ImGui::GetIO().AddInputCharacter(m_steps.byte());
        if (choice % 16 == 13)
            return m_ui.pressKey(choice > 127 ? ImGuiKey_Delete : ImGuiKey_Backspace);
        m_ui.pressKey(keys[choice % std::size(keys)]);
    }

    Script& m_steps;
    offscreen::Host& m_ui;
};

} // namespace fuzz
