#pragma once

#include "script.h"

#include <imgui.h>
#include <imgui_internal.h>

#include <algorithm>
#include <cfloat>
#include <functional>
#include <utility>

namespace fuzz {

/// The host's own frame around the panel: its display, style, windows and what is open in them.
class Surroundings {
public:
    explicit Surroundings(std::function<void()> panel) : m_panel(std::move(panel)) {}

    void draw() const
    {
        if (m_scene & 1u)
            ImGui::LogToBuffer(-1);
        drawHostWindow();
        if (m_scene & 4u)
            m_panel();
        ImGui::PushStyleVar(ImGuiStyleVar_IndentSpacing, m_indent);
        try {
            m_panel();
        } catch (...) {
            close();
            throw;
        }
        close();
    }

    void change(Script& script)
    {
        const float number = length(script);
        const ImVec2 size(number, length(script));
        switch (script.byte() % 10) {
        case 0:
            m_scene = script.byte();
            return;
        case 1:
            ImGui::GetIO().DisplaySize = ImVec2(std::max(size.x, 0.0f), std::max(size.y, 0.0f));
            return;
        case 2:
            return ImGui::SetWindowSize("Statistics", size);
        case 3:
            return ImGui::SetWindowPos("Statistics", size);
        case 4:
            return ImGui::SetWindowCollapsed("Statistics", script.byte() % 2 == 0);
        case 5:
            return ImGui::SetWindowFocus(script.byte() % 2 == 0 ? "Host" : nullptr);
        case 6:
            return loseMouse(script.byte() % 2 == 0 ? ImVec2(-FLT_MAX, -FLT_MAX) : size);
        case 7:
            m_indent = number;
            return;
        default:
            return changeStyle(ImGui::GetStyle(), size, script);
        }
    }

private:
    static float length(Script& script)
    {
        static const float lengths[] = {0.0f, 1.0f, 7.5f, 40.0f, 300.0f, 1280.0f, 20000.0f, -9.0f};
        return lengths[script.byte() % 8];
    }

    void close() const
    {
        ImGui::PopStyleVar(1);
        if (m_scene & 1u)
            ImGui::LogFinish();
    }

    void drawHostWindow() const
    {
        ImGui::Begin("Host");
        if (m_scene & 8u)
            ImGui::OpenPopup("popup");
#if IMGUI_VERSION_NUM >= 18800 // earlier, any window that appears together with a modal one makes ImGui fail
        if (m_scene & 16u)
            ImGui::OpenPopup("modal");
#endif
        if (ImGui::BeginPopup("popup")) {
            ImGui::MenuItem("entry");
            ImGui::EndPopup();
        }
        if (ImGui::BeginPopupModal("modal")) {
            if ((m_scene & 16u) == 0)
                ImGui::CloseCurrentPopup();
            ImGui::EndPopup();
        }
        ImGui::End();
    }

    static void loseMouse(const ImVec2& point)
    {
#if IMGUI_VERSION_NUM >= 18700
        ImGui::GetIO().AddMousePosEvent(point.x, point.y);
#else
        ImGui::GetIO().MousePos = point;
#endif
    }

    static void changeStyle(ImGuiStyle& style, const ImVec2& size, Script& script)
    {
        switch (script.byte() % 8) {
        case 0:
            style.ItemSpacing = size;
            return;
        case 1:
            style.FramePadding = size;
            return;
        case 2:
            style.WindowPadding = size;
            return;
        case 3:
            style.ItemInnerSpacing = size;
            return;
        case 4:
            style.ScrollbarSize = std::max(size.x, 1.0f);
            return;
        case 5:
            style.FrameRounding = std::max(size.x, 0.0f);
            return;
#if IMGUI_VERSION_NUM >= 19200
        case 6:
            style.TreeLinesFlags =
                size.x > 10.0f ? ImGuiTreeNodeFlags_DrawLinesFull : ImGuiTreeNodeFlags_DrawLinesToNodes;
            return;
#endif
        default:
            style.ItemSpacing = style.FramePadding = style.WindowPadding = style.ItemInnerSpacing =
                ImVec2(4.0f, 4.0f);
        }
    }

    std::function<void()> m_panel;
    unsigned m_scene = 0;
    float m_indent = 21.0f;
};

} // namespace fuzz
