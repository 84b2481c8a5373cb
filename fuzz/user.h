#pragma once

#include "script.h"

#include "offscreen/host.h"

#include <imgui_internal.h>

#include <iterator>
#include <string>

namespace fuzz {

/// The mouse and the keys, as the input tells.
class User {
public:
    User(Script& steps, offscreen::Host& host) : m_steps(steps), m_ui(host) {}

    void act()
    {
        switch (m_steps.byte() % 8) {
        case 0:
            return dragBorder();
        case 1:
            return pressKey();
        case 2:
        case 3:
            return editFilter();
        case 4:
        case 5:
            return clickText();
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

    /// In the field on top of the panel, where there is one.
    void editFilter()
    {
        static const ImGuiKey keys[] = {ImGuiKey_A,          ImGuiKey_C,      ImGuiKey_X,
                                        ImGuiKey_V,          ImGuiKey_Z,      ImGuiKey_Y,
                                        ImGuiKey_Home,       ImGuiKey_End,    ImGuiKey_LeftArrow,
                                        ImGuiKey_RightArrow, ImGuiKey_Delete, ImGuiKey_Backspace};
        const unsigned choice = m_steps.byte();
        if (choice % 8 == 0)
            return clickField();
        if (choice % 8 == 1)
            return ImGui::SetClipboardText(m_steps.text().c_str());
        if (choice % 8 == 2)
            return type(m_steps.text());
        m_ui.pressKey(keys[m_steps.byte() % std::size(keys)], choice > 127, choice % 8 < 6);
    }

    static void type(const std::string& text)
    {
        for (const char byte : text)
            ImGui::GetIO().AddInputCharacter(static_cast<unsigned char>(byte));
    }

    void clickField()
    {
        const ImGuiWindow* window = ImGui::FindWindowByName("Statistics");
        if (!window)
            return;
        const ImVec2 field(window->InnerRect.Min.x + static_cast<float>(m_steps.byte()),
                           window->DC.CursorStartPos.y + 2.0f);
        m_steps.byte() % 4 == 0 ? m_ui.doubleClick(field) : m_ui.click(field);
    }

    /// One of those that the user sees.
    void clickText()
    {
        const std::size_t count = m_ui.read().texts.size();
        if (count == 0)
            return;
        const ImVec2 point = m_ui.read().texts[m_steps.byte() % count].center();
        const unsigned how = m_steps.byte() % 8;
        if (how == 0)
            return m_ui.rightClick(point);
        how == 1 ? m_ui.doubleClick(point) : m_ui.click(point);
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
        m_ui.pressKey(keys[choice % std::size(keys)]);
    }

    Script& m_steps;
    offscreen::Host& m_ui;
};

} // namespace fuzz
