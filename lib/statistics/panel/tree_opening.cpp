// Nodes that the host wants open or closed: what the user's own clicks change is set in ImGui's storage.

#include "tree.h"
#include "tree_lines.h"
#include "tree_node.h"

#include <imgui.h>

#include <unordered_map>
#include <vector>

namespace statistics {

namespace {

/// What ImGui knows the nodes of a tree by, whether they are drawn or not. Each is worked out once, so that
/// chains of any depth take their length and not its square.
class NodeIds {
public:
    /// In the scope that the tree's root is about to be drawn in.
    NodeIds(const Tree& tree, const Render& render)
        : m_tree(tree), m_render(render), m_known{{tree.m_nodes.begin(), widgets::treeRootId()}}
    {
    }

    ImGuiID find(unsigned node)
    {
        std::vector<unsigned> way;
        for (; m_known.count(node) == 0; node = m_tree.m_nodes[node].parent)
            way.push_back(node);
        ImGuiID id = m_known[node];
        for (auto below = way.rbegin(); below != way.rend(); ++below)
            m_known[*below] = id = widgets::treeNodeId(id, m_render.itemName(m_tree.item(*below)));
        return id;
    }

private:
    const Tree& m_tree;
    const Render& m_render;
    std::unordered_map<unsigned, ImGuiID> m_known;
};

} // namespace

void Tree::takeOpenings(const Render& render)
{
    if (m_derived.openings.empty())
        return;
    NodeIds ids(*this, render);
    for (const auto& [node, open] : m_derived.openings)
        m_derived.lines->setOpen(ids.find(node), open);
    m_derived.openings.clear(); // not before: memory may fail
}

} // namespace statistics
