#include "running_imgui.h"

#include <imgui.h>
#include <imgui_internal.h>

#include <cstring>

namespace statistics {

namespace {

/// What ImGui tells of itself must be what its structures hold where this library's headers see them. From
/// one to the next the checks reach further into the context, so each is safe if those before it hold.
bool isLaidOutAlike(const ImGuiContext& context)
{
    if (&ImGui::GetIO() != &context.IO || &ImGui::GetStyle() != &context.Style ||
        ImGui::GetDrawListSharedData() != &context.DrawListSharedData ||
        ImGui::GetFrameCount() != context.FrameCount)
        return false;
    const ImGuiWindow* window = context.CurrentWindow;
    return !window || ImGui::GetStateStorage() == window->DC.StateStorage;
}

} // namespace

bool isRunningImGuiTheCompiledOne()
{
    return std::strcmp(ImGui::GetVersion(), IMGUI_VERSION) == 0 &&
           isLaidOutAlike(*ImGui::GetCurrentContext());
}

} // namespace statistics
