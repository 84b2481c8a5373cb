#include "balance.h"

#include <imgui.h>
#include <imgui_internal.h>

#include <algorithm>

namespace test {
namespace {

// Windows that were closed keep what was left open in them until they are begun anew.
void addLeftIn(const ImGuiWindow& window, OpenScopes& scopes)
{
    const std::string place = std::string(" in \"") + window.Name + "\"";
    const OpenScopes left = {{"ids", window.IDStack.Size - 1},
                             {"tree levels", window.DC.TreeDepth},
                             {"item widths", window.DC.ItemWidthStack.Size},
                             {"columns", window.DC.CurrentColumns ? 1 : 0}};
    for (const auto& [kind, count] : left) {
        scopes.emplace_back(kind + place, count);
    }
}

int countOf(const std::string& kind, const OpenScopes& scopes)
{
    const auto found = std::find_if(scopes.begin(), scopes.end(),
                                    [&kind](const auto& scope) { return scope.first == kind; });
    return found == scopes.end() ? 0 : found->second;
}

} // namespace

OpenScopes openScopes()
{
    const ImGuiContext& context = *ImGui::GetCurrentContext();
    OpenScopes scopes = {
        {"windows", context.CurrentWindowStack.Size},    {"style colours", context.ColorStack.Size},
        {"style variables", context.StyleVarStack.Size}, {"fonts", context.FontStack.Size},
        {"item flags", context.ItemFlagsStack.Size},     {"groups", context.GroupStack.Size},
        {"popups", context.BeginPopupStack.Size}};
    for (const ImGuiWindow* window : context.Windows) {
        if (window->LastFrameActive == context.FrameCount) {
            addLeftIn(*window, scopes);
        }
    }
    return scopes;
}

std::string describeImbalance(const OpenScopes& before, const OpenScopes& after)
{
    std::string description;
    for (const auto& [kind, count] : after) {
        if (const int left = count - countOf(kind, before)) {
            description += (description.empty() ? "" : "; ") + kind + ": " + std::to_string(left);
        }
    }
    return description;
}

#if IMGUI_VERSION_NUM >= 19130
void closeOpenScopes()
{
    ImGuiIO& io = ImGui::GetIO();
    io.ConfigErrorRecoveryEnableAssert = false;
    io.ConfigErrorRecoveryEnableDebugLog = false;
    io.ConfigErrorRecoveryEnableTooltip = false;
    ImGui::ErrorRecoveryTryToRecoverState(&ImGui::GetCurrentContext()->StackSizesInNewFrame);
    io.ConfigErrorRecoveryEnableAssert = true;
}
#else
void closeOpenScopes()
{
    ImGui::ErrorCheckEndFrameRecover(nullptr);
}
#endif

} // namespace test
