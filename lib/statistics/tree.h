#pragma once

#include "call_scope.h"
#include "free_slot_vector.h"
#include "name_index.h"
#include "render.h"
#include "widgets.h"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace statistics {

/// The hierarchy of the panel. A node knows its place and the item that it shows; what an item is, how it
/// draws and what it is called lies with `Render`. Node 0 is the root. A tree owns its nodes, not the items:
/// destroying or replacing a tree frees no item.
///
/// Functors that run while a tree is walked may change it: walks look every node up again, and the tree tells
/// them what it removes.
class Tree {
public:
    struct Node {
        unsigned parent;                ///< INVALID_ID for the root
        unsigned depth;                 ///< 0 for the root
        unsigned item;                  ///< INVALID_ID for the root
        std::vector<unsigned> children; ///< in the order in which they were added
    };

    Tree();

    /// True for a live node; others are reported.
    bool isParent(unsigned id) const;
    /// Adds a node for `item` as the last child. INVALID_ID, with a report, if there is no such parent.
    unsigned addChild(unsigned item, unsigned parentId);
    /// The first child of that name; INVALID_ID if there is none, or no such parent.
    unsigned findChild(unsigned parent, std::string_view name, const Render& render);
    /// Removes a node with all below it, and their items. A stale id does nothing; the root is reported and
    /// stays.
    void removeItem(unsigned id, Render& render);
    /// Empties a child list. The children stay where they are, reached by nothing.
    void clearChildren(unsigned id);

    void draw(Render& render);
    /// Samples the item of a node now. A stale id does nothing.
    void updateNode(unsigned id, Render& render);
    /// Calls `visit` with the item of every node but the root, and with its parent's item: parents first.
    void forEach(const std::function<void(unsigned item, unsigned parentItem)>& visit) const;
    /// The same with node ids. `visit` may change the tree.
    template<typename Visit>
    void forEachNode(const Visit& visit) const;
    /// The sum over a node's direct children; `Render::itemValue` tells what `column` means.
    CounterValue sumChildren(unsigned node, std::size_t column, Render& render) const;

    unsigned item(unsigned id) const { return m_nodes[id].item; }
    unsigned depth(unsigned id) const { return m_nodes[id].depth; }
    /// True if the node exists; makes no report.
    bool contains(unsigned id) const { return m_nodes.contains(id); }
    /// The same, with a report if it doesn't.
    bool check(unsigned id) const { return m_nodes.check(id); }
    /// The id that the next `addChild` will give.
    unsigned nextId() const { return m_nodes.nextIndex(); }
    /// The names from the first level down to the node, joined by "/".
    std::string path(unsigned id, const Render& render) const;

    free_slot_vector<Node> m_nodes;

private:
    class ChildWalk;
    class LevelScope;

    /// The walks that are under way, the innermost first. They stay with the tree when its nodes are
    /// replaced.
    struct Walks {
        Walks() = default;
        Walks(Walks&& /*other*/) noexcept {}
        Walks& operator=(Walks&& /*other*/) noexcept;
        ~Walks() = default;

        ChildWalk* innermost = nullptr;
    };

    void drawNode(Render& render, unsigned id);
    bool drawLine(Render& render, unsigned id);
    void skipHiddenLeaves(ChildWalk& walk) const;
    void prepareLines(const Render& render);
    void forgetLine(unsigned id);
    template<typename Visit>
    void visitBelow(unsigned parent, const Visit& visit) const;
    void unlist(unsigned id);
    void removeSubtree(unsigned top, Render& render);
    void eraseNode(unsigned id);
    void indexNewNodes(const Render& render);
    void rebuildIndex(const Render& render);

    // Derived from the nodes, can be thrown away at any time.
    NameIndex m_names;
    std::vector<unsigned> m_unindexed; ///< nodes added since the index was last used
    bool m_indexStale = false;
    /// What a node's own line was when it was last drawn, in pixels, spacing included.
    struct Line {
        ImVec2 size{0.0f, 0.0f}; ///< no height until it was drawn
        bool isLeaf = false;     ///< it had no children then
    };
    std::vector<Line> m_lines; ///< by node
    widgets::LineMetrics m_lineMetrics{};
    unsigned m_layoutGeneration = 0;
    mutable Walks m_walks;
};

/// Goes through the children of a node, which may come and go meanwhile, the node itself included: each child
/// that stays has its turn once, in order.
class [[nodiscard]] Tree::ChildWalk {
public:
    ChildWalk(const Tree& tree, unsigned parent);
    ~ChildWalk();
    ChildWalk(const ChildWalk&) = delete;
    ChildWalk& operator=(const ChildWalk&) = delete;

    /// Moves on to the next child; false if there is none.
    bool next()
    {
        if (m_parent == INVALID_ID || m_next >= m_tree.m_nodes[m_parent].children.size())
            return false;
        m_child = m_tree.m_nodes[m_parent].children[m_next++];
        return true;
    }
    /// INVALID_ID once it has been removed.
    unsigned child() const { return m_child; }

private:
    friend class Tree;

    const Tree& m_tree;
    ChildWalk* const m_outer;
    unsigned m_parent; ///< INVALID_ID once it has been removed
    unsigned m_child = INVALID_ID;
    std::size_t m_next = 0; ///< position of the child whose turn comes
};

template<typename Visit>
void Tree::forEachNode(const Visit& visit) const
{
    const CallScope call;
    if (!m_nodes.empty())
        visitBelow(m_nodes.begin(), visit);
}

template<typename Visit>
void Tree::visitBelow(unsigned parent, const Visit& visit) const
{
    ChildWalk walk(*this, parent);
    while (walk.next()) {
        visit(walk.child());
        if (walk.child() != INVALID_ID && !m_nodes[walk.child()].children.empty())
            visitBelow(walk.child(), visit);
    }
}

} // namespace statistics
