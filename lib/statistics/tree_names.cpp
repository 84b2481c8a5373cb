// Names: the search among children, by an index that is made at the first one, and the path of a node.

#include "tree.h"

#include "path.h"

namespace statistics {

/// Nodes that come before the first search are found by it.
void Tree::noteForIndex(unsigned id)
{
    if (!m_derived.indexStale)
        m_derived.unindexed.push_back(id);
}

unsigned Tree::findChild(unsigned parent, std::string_view name, const Render& render)
{
    if (!m_nodes.contains(parent))
        return INVALID_ID;
    indexNewNodes(render);
    return m_derived.names.find(NameIndex::hash(parent, name), INVALID_ID, [&](unsigned id) {
        return m_nodes.contains(id) && m_nodes[id].parent == parent &&
               render.itemName(m_nodes[id].item) == name;
    });
}

void Tree::indexNewNodes(const Render& render)
{
    if (m_derived.indexStale)
        return rebuildIndex(render);
    for (const unsigned id : m_derived.unindexed) {
        if (m_derived.names.isFull())
            return rebuildIndex(render);
        if (m_nodes.contains(id))
            m_derived.names.add(NameIndex::hash(m_nodes[id].parent, render.itemName(m_nodes[id].item)), id);
    }
    m_derived.unindexed.clear();
}

/// From the child lists, so that nodes which nothing lists any more are left out.
void Tree::rebuildIndex(const Render& render)
{
    std::size_t count = 0;
    for (auto id = m_nodes.begin(); id != m_nodes.end(); id = m_nodes.next(id))
        count += m_nodes[id].children.size();
    m_derived.names.reset(count);
    for (auto id = m_nodes.begin(); id != m_nodes.end(); id = m_nodes.next(id))
        for (const unsigned child : m_nodes[id].children)
            if (child != INVALID_ID)
                m_derived.names.add(NameIndex::hash(id, render.itemName(m_nodes[child].item)), child);
    m_derived.unindexed.clear();
    m_derived.indexStale = false;
}

std::string Tree::path(unsigned id, const Render& render) const
{
    std::vector<unsigned> way;
    for (; m_nodes[id].parent != INVALID_ID; id = m_nodes[id].parent)
        way.push_back(m_nodes[id].item);
    std::string path;
    for (auto item = way.rbegin(); item != way.rend(); ++item)
        appendName(path, render.itemName(*item));
    return path;
}

} // namespace statistics
