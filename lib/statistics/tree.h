#pragma once

#include "call_scope.h"
#include "change_log.h"
#include "child_list.h"
#include "free_slot_vector.h"
#include "name_index.h"
#include "render.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace statistics {

class Filter;
class TreeLines; ///< the panel's memory of what it has drawn

/// The hierarchy of the panel. A node knows its place and the item that it shows; what an item is, how it
/// draws and what it is called lies with `Render`. Node 0 is the root. A tree owns its nodes, not the items:
/// destroying or replacing a tree frees no item.
///
/// Functors that run while a tree is walked may change it: walks look every node up again, and the tree tells
/// them what it removes. Nothing but drawing calls itself for the levels of a tree, so no depth is too deep.
class Tree {
public:
    struct Node {
        unsigned parent; ///< INVALID_ID for the root
        unsigned depth;  ///< 0 for the root
        unsigned item;   ///< INVALID_ID for the root
        /// In the order in which they were added. In a long list INVALID_ID may stand where one was removed.
        ChildList children;
    };

    /// Where a node stands while the revision stays.
    struct Spot {
        unsigned id;
        unsigned parent;
        unsigned position; ///< among the parent's children
    };

    class Walk;

    Tree();
    ~Tree() = default;
    /// Walks over a tree that is replaced end. None may be going through `other`.
    Tree(Tree&& other) noexcept;
    Tree& operator=(Tree&& other) noexcept;

    /// True if there is such a node to add children to; otherwise it is reported.
    bool checkParent(unsigned id) const;
    /// Adds a node for `item` as the last child. INVALID_ID, with a report, if there is no such parent.
    unsigned addChild(unsigned item, unsigned parentId);
    /// The first child of that name; INVALID_ID if there is none, or no such parent.
    unsigned findChild(unsigned parent, std::string_view name, const Render& render);
    /// Removes a node with all below it, and their items. A stale id does nothing; the root is reported and
    /// stays. Runs destructors of what hosts handed in, before it returns or behind the functor it runs in.
    void removeItem(unsigned id, Render& render);
    /// Empties a child list. The children stay where they are, reached by nothing. No walk may have begun
    /// below the node.
    void clearChildren(unsigned id);

    /// Puts the children of a node in the order that `isBefore` tells of their ids. No walk may be among
    /// them.
    template<typename IsBefore>
    void sortChildren(unsigned id, const IsBefore& isBefore);
    /// Has the node opened or closed when the tree is next drawn, opened with those above it. A stale id does
    /// nothing. No more is kept than one request a node, and none for one that is gone.
    void requestOpen(unsigned id, bool open);

    /// Inside an ImGui frame. Runs host functors: what the user presses acts at once. Null for a tree that is
    /// shown whole.
    void draw(Render& render, const Filter* filter = nullptr);
    /// The node whose line shows the counter in a slot; `INVALID_ID` if none was drawn, or it is gone.
    unsigned drawnCounter(unsigned slot) const;
    /// Samples the item of a node now, which runs host functors. A stale id does nothing.
    void updateNode(unsigned id, Render& render);
    /// Calls `visit` with the item of every node but the root, and with its parent's item: parents first.
    /// `visit` may change the tree.
    void forEach(const std::function<void(unsigned item, unsigned parentItem)>& visit) const;
    /// The same with node ids. `visit` may run host functors and change the tree.
    template<typename Visit>
    void forEachNode(const Visit& visit) const;
    /// The sum over a node's direct children; `Render::itemValue` tells what `column` means. Runs host
    /// functors.
    CounterValue sumChildren(unsigned node, std::size_t column, Render& render) const;

    unsigned item(unsigned id) const { return m_nodes[id].item; }
    unsigned depth(unsigned id) const { return m_nodes[id].depth; }
    /// True if the node exists; makes no report.
    bool contains(unsigned id) const { return m_nodes.contains(id); }
    /// The same, with a report if it doesn't.
    bool check(unsigned id) const { return m_nodes.check(id); }
    /// The id that the next `addChild` will give.
    unsigned nextId() const { return m_nodes.nextIndex(); }
    /// Where a node stands among its parent's children.
    std::size_t position(unsigned id) const { return m_derived.positions[id]; }
    /// Nodes that are new or whose list of children is another, for who remembers how they looked.
    const ChangeLog& changes() const { return m_derived.changes; }
    ChangeLog& changes() { return m_derived.changes; }
    /// The names from the first level down to the node, as a path.
    std::string path(unsigned id, const Render& render) const;
    /// Another number whenever a node comes or goes; the process never sees a number again.
    std::uint64_t revision() const { return m_revision; }

    free_slot_vector<Node> m_nodes;

private:
    class ChildWalk;
    class LevelScope;

    /// What has been added up so far on one level of a walk, and the column that its tables are asked for.
    struct LevelSum {
        std::size_t column;
        CounterValue sum;
    };
    using Sums = std::vector<LevelSum>;

    /// Follows from the nodes and what happens to them.
    struct Derived {
        NameIndex names;
        std::vector<unsigned> unindexed; ///< nodes added since the index was last used
        bool indexStale = true;          ///< from the first search on there is an index
        std::vector<unsigned> positions; ///< by node: among its parent's children, while they list it
        ChangeLog changes;
        std::shared_ptr<TreeLines> lines;            ///< null until the tree is first drawn
        std::unordered_map<unsigned, bool> openings; ///< nodes to open or close at the next draw
    };

    // These run host functors.
    bool drawNode(Render& render, TreeLines& lines, unsigned id);
    bool drawChildren(Render& render, TreeLines& lines, unsigned parent);
    bool drawBlocks(Render& render, TreeLines& lines, ChildWalk& walk);
    bool drawBlock(Render& render, TreeLines& lines, ChildWalk& walk);
    void addChildValue(Sums& sums, ChildWalk& walk, Render& render) const;

    // These don't.
    void takeOpenings(const Render& render);
    void foldSums(Sums& sums, const ChildWalk& walk, unsigned topDepth) const;
    static void foldSums(Sums& sums, std::size_t count);
    bool isListed(unsigned id) const;
    bool isBelow(unsigned id, unsigned ancestor) const;
    void unlist(unsigned id);
    void takeOut(std::vector<unsigned>& siblings, unsigned id);
    void closeGaps(unsigned parent);
    void removeSubtree(unsigned top, Render& render);
    unsigned firstFrom(unsigned parent, std::size_t position) const;
    void eraseNode(unsigned id);
    void noteForIndex(unsigned id);
    void indexNewNodes(const Render& render);
    void rebuildIndex(const Render& render);
    void endWalks();
    void noteChange() { m_revision = ++s_lastRevision; }

    Derived m_derived;
    std::uint64_t m_revision = ++s_lastRevision;
    mutable Sums m_sums;                      ///< memory for sums, empty between them
    mutable ChildWalk* m_innermost = nullptr; ///< the walks under way, each with the one around it

    static std::uint64_t s_lastRevision;
};

/// Goes through the children of a node, and from each into its own if asked to. Nodes may come and go
/// meanwhile, the one it began at included: each that stays has its turn once, in order.
class [[nodiscard]] Tree::ChildWalk {
public:
    ChildWalk(const Tree& tree, unsigned parent);
    ~ChildWalk() { m_tree.m_innermost = m_outer; }
    ChildWalk(const ChildWalk&) = delete;
    ChildWalk& operator=(const ChildWalk&) = delete;

    /// Moves on to the next child; false if there is none before position `end`.
    bool next(std::size_t end = NO_INDEX);
    /// Goes on with the children of the present child, if it is still there and has any.
    bool enter();
    /// Goes back to where the node stands whose children it went through; false at the node it began at.
    bool leave();
    /// INVALID_ID once it has been removed.
    unsigned child() const { return m_child; }
    /// Whose children it goes through; INVALID_ID once the node it began at has been removed.
    unsigned parent() const { return m_parent; }

private:
    friend class Tree;

    void end() { m_parent = m_child = INVALID_ID; }

    const Tree& m_tree;
    ChildWalk* const m_outer;
    const unsigned m_top;
    unsigned m_parent;
    unsigned m_child = INVALID_ID;
    std::size_t m_next = 0; ///< position of the child whose turn comes
};

inline bool Tree::ChildWalk::next(std::size_t end)
{
    if (m_parent == INVALID_ID)
        return false;
    const ChildList& children = m_tree.m_nodes[m_parent].children;
    do {
        if (m_next >= children.size() || m_next >= end)
            return false;
        m_child = children[m_next++];
    } while (m_child == INVALID_ID);
    return true;
}

/// Goes through all nodes but the root, parents first. Nodes may come and go meanwhile: each that stays has
/// its turn once, in order.
class [[nodiscard]] Tree::Walk {
public:
    explicit Walk(const Tree& tree) : m_children(tree, tree.m_nodes.begin()) {}

    /// Moves on to the next node; false if there is none.
    bool next();
    /// Goes on from this node, which must be where the spot tells.
    void moveTo(const Spot& spot);
    unsigned node() const { return m_children.child(); }
    Spot spot() const { return {node(), m_children.parent(), static_cast<unsigned>(m_children.m_next - 1)}; }

private:
    ChildWalk m_children;
};

inline bool Tree::Walk::next()
{
    m_children.enter();
    while (!m_children.next())
        if (!m_children.leave())
            return false;
    return true;
}

inline void Tree::Walk::moveTo(const Spot& spot)
{
    m_children.m_parent = spot.parent;
    m_children.m_child = spot.id;
    m_children.m_next = std::size_t{spot.position} + 1;
}

template<typename Visit>
void Tree::forEachNode(const Visit& visit) const
{
    const CallScope call;
    Walk walk(*this);
    while (walk.next())
        visit(walk.node());
}

template<typename IsBefore>
void Tree::sortChildren(unsigned id, const IsBefore& isBefore)
{
    if (m_nodes[id].children.empty())
        return;
    closeGaps(id);
    std::vector<unsigned>& children = m_nodes[id].children.ids();
    if (std::is_sorted(children.begin(), children.end(), isBefore))
        return;
    std::sort(children.begin(), children.end(), isBefore);
    for (std::size_t position = 0; position < children.size(); ++position)
        m_derived.positions[children[position]] = static_cast<unsigned>(position);
    m_derived.changes.note(id);
}

/// The getter of a children counter. It has a type of its own so that sums of sums are added up without one
/// calling the other: chains of them may be as long as a tree is deep.
struct ChildrenSum {
    /// Runs host functors.
    CounterValue operator()() const { return tree->sumChildren(node, column, *render); }

    const Tree* tree;
    Render* render;
    unsigned node;
    std::size_t column;
};

} // namespace statistics
