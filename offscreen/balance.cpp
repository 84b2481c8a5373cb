#include "balance.h"

#include <imgui.h>
#include <imgui_internal.h>

namespace offscreen {

OpenScopes openScopes()
{
    const ImGuiContext& context = *ImGui::GetCurrentContext();
    OpenScopes scopes = {
        {"windows", context.CurrentWindowStack.Size}, {"style colours", context.ColorStack.Size},
        {"style vars", context.StyleVarStack.Size},   {"fonts", context.FontStack.Size},
        {"item flags", context.ItemFlagsStack.Size},  {"groups", context.GroupStack.Size},
        {"popups", context.BeginPopupStack.Size}};
    // A window that was ended still shows what was left open inside, until it is begun anew.
    for (const ImGuiWindow* window : context.Windows) {
        if (window->LastFrameActive == context.FrameCount) {
            const std::string place = std::string(" in ") + window->Name;
            scopes["ids" + place] = window->IDStack.Size - 1;
            scopes["tree levels" + place] = window->DC.TreeDepth;
            scopes["item widths" + place] = window->DC.ItemWidthStack.Size;
            scopes["columns" + place] = window->DC.CurrentColumns ? 1 : 0;
        }
    }
    return scopes;
}

std::string describeImbalance(OpenScopes before, const OpenScopes& after)
{
    std::string description;
    for (const auto& [kind, count] : after)
        if (const int left = count - before[kind])
            description += (description.empty() ? "" : "; ") + kind + ": " + std::to_string(left);
    return description;
}

void closeOpenScopes()
{
#if IMGUI_VERSION_NUM >= 19130
    ImGuiIO& io = ImGui::GetIO();
    io.ConfigErrorRecoveryEnableAssert = false;
    io.ConfigErrorRecoveryEnableDebugLog = false;
    io.ConfigErrorRecoveryEnableTooltip = false;
    ImGui::ErrorRecoveryTryToRecoverState(&ImGui::GetCurrentContext()->StackSizesInNewFrame);
    io.ConfigErrorRecoveryEnableAssert = true;
#else
    ImGui::ErrorCheckEndFrameRecover(nullptr);
#endif
}

} // namespace offscreen
