#include "tree_node.h"

#include <imgui_internal.h>

namespace statistics::widgets {

ImGuiID treeRootId()
{
    return ImGui::GetID(""); // of the root's TreePush
}

/// Over every byte, where ImGui's own labels are read for "###", and apart from what else stands in the
/// scope: an empty name isn't the scope itself.
ImGuiID treeNodeId(ImGuiID parent, const std::string& name)
{
    return ImHashData(name.data(), name.size(), ImHashStr("node", 0, parent));
}

bool treeNode(const std::string& name, bool opensAtFirst)
{
    const ImGuiID id = treeNodeId(ImGui::GetCurrentWindow()->IDStack.back(), name);
    ImGui::KeepAliveID(id); // as ImGui does for the ids that it makes itself
    const ImGuiTreeNodeFlags flags = opensAtFirst ? ImGuiTreeNodeFlags_DefaultOpen : 0;
    return ImGui::TreeNodeBehavior(id, flags, name.data(), name.data() + name.size());
}

} // namespace statistics::widgets
