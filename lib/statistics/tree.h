#pragma once

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
/// Functors that run while a tree is walked may change it: walks go by position and look every node up again.
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
    void forEachNode(const std::function<void(unsigned id)>& visit) const;
    /// The sum over a node's direct children; `Render::itemValue` tells what `column` means.
    CounterValue sumChildren(unsigned node, std::size_t column, Render& render) const;

    unsigned item(unsigned id) const { return m_nodes[id].item; }
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
    class LevelScope;

    void drawNode(Render& render, unsigned id);
    bool drawLine(Render& render, unsigned id);
    void prepareLineHeights(const Render& render);
    std::size_t positionBehind(unsigned parent, std::size_t position, unsigned child) const;
    void removeSubtree(unsigned top, Render& render);
    void indexNewNodes(const Render& render);
    void rebuildIndex(const Render& render);

    // Derived from the nodes, can be thrown away at any time.
    NameIndex m_names;
    std::vector<unsigned> m_unindexed; ///< nodes added since the index was last used
    bool m_indexStale = false;
    std::vector<float> m_lineHeights; ///< by node, spacing included; 0 until the line was drawn
    widgets::LineMetrics m_lineMetrics{};
    unsigned m_layoutGeneration = 0;
};

} // namespace statistics
