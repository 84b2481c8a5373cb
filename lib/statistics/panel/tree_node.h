#pragma once

#include <imgui.h>

#include <string>

namespace statistics::widgets {

/// A line that the user opens and closes, its text shown whole. It is known by its name in the present scope,
/// which is that of the node above it: a node that is removed and made again is found as the user left it,
/// and none starts open because another once did. True if it is open; then `ImGui::TreePop` ends it.
/// `opensAtFirst` holds until the user opens or closes it.
bool treeNode(const std::string& name, bool opensAtFirst = false);
/// The scope in which a tree's first level stands, told where its root is about to be drawn.
ImGuiID treeRootId();
/// What the node of this name is known by in the scope `parent`, ImGui's storage included.
ImGuiID treeNodeId(ImGuiID parent, const std::string& name);

} // namespace statistics::widgets
