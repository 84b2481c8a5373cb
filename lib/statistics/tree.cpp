#include "tree.h"

#include "assertion.h"
#include "call_scope.h"
#include "stack_tracker.h"

#include <algorithm>

namespace statistics {

namespace {

constexpr unsigned kFirstSlots = 100;
constexpr char kSeparator = '/';

} // namespace

Tree::Tree()
{
    m_nodes.grow(kFirstSlots);
    m_nodes.emplace(Node{INVALID_ID, 0, INVALID_ID, {}});
}

bool Tree::isParent(unsigned parentId) const
{
    return ORV_ASSERT(parentId != INVALID_ID) && m_nodes.check(parentId);
}

unsigned Tree::addChild(unsigned item, unsigned parentId)
{
    if (!isParent(parentId))
        return INVALID_ID;
    const unsigned id = m_nodes.emplace(Node{parentId, m_nodes[parentId].depth + 1, item, {}});
    m_nodes[parentId].children.push_back(id);
    m_unindexed.push_back(id);
    forgetLine(id);
    forgetLine(parentId);
    return id;
}

void Tree::forgetLine(unsigned id)
{
    if (id < m_lines.size())
        m_lines[id] = {};
}

unsigned Tree::findChild(unsigned parent, std::string_view name, const Render& render)
{
    if (!m_nodes.contains(parent))
        return INVALID_ID;
    indexNewNodes(render);
    return m_names.find(NameIndex::hash(parent, name), INVALID_ID, [&](unsigned id) {
        return m_nodes.contains(id) && m_nodes[id].parent == parent &&
               render.itemName(m_nodes[id].item) == name;
    });
}

void Tree::indexNewNodes(const Render& render)
{
    // A tree that is never searched must not gather ids for ever.
    if (m_indexStale || m_unindexed.size() > m_nodes.size())
        return rebuildIndex(render);
    for (const unsigned id : m_unindexed) {
        if (m_names.isFull())
            return rebuildIndex(render);
        if (m_nodes.contains(id))
            m_names.add(NameIndex::hash(m_nodes[id].parent, render.itemName(m_nodes[id].item)), id);
    }
    m_unindexed.clear();
}

/// From the child lists, so that nodes which nothing lists any more are left out.
void Tree::rebuildIndex(const Render& render)
{
    std::size_t count = 0;
    for (auto id = m_nodes.begin(); id != m_nodes.end(); id = m_nodes.next(id))
        count += m_nodes[id].children.size();
    m_names.reset(count);
    for (auto id = m_nodes.begin(); id != m_nodes.end(); id = m_nodes.next(id))
        for (const unsigned child : m_nodes[id].children)
            m_names.add(NameIndex::hash(id, render.itemName(m_nodes[child].item)), child);
    m_unindexed.clear();
    m_indexStale = false;
}

void Tree::removeItem(unsigned id, Render& render)
{
    if (!m_nodes.contains(id))
        return;
    const CallScope call;
    const unsigned parent = m_nodes[id].parent;
    // The root has no item to free: the report of that is all that happens.
    if (parent == INVALID_ID)
        return render.removeItem(m_nodes[id].item);
    if (m_nodes.contains(parent))
        unlist(id);
    removeSubtree(id, render);
}

/// Takes a node out of its parent's children. Walks that are past it move up with those behind it.
void Tree::unlist(unsigned id)
{
    const unsigned parent = m_nodes[id].parent;
    std::vector<unsigned>& siblings = m_nodes[parent].children;
    const auto found = std::find(siblings.begin(), siblings.end(), id);
    if (found == siblings.end())
        return;
    const auto position = static_cast<std::size_t>(found - siblings.begin());
    siblings.erase(found);
    for (ChildWalk* walk = m_walks.innermost; walk; walk = walk->m_outer)
        if (walk->m_parent == parent && walk->m_next > position)
            --walk->m_next;
}

/// Items go parent first, nodes children first: that order decides which ids are given out next.
void Tree::removeSubtree(unsigned top, Render& render)
{
    struct Step {
        unsigned node;
        std::size_t position;
    };
    std::vector<Step> steps;
    const auto enter = [&](unsigned id) {
        render.removeItem(m_nodes[id].item);
        steps.push_back({id, 0});
    };
    enter(top);
    while (!steps.empty()) {
        Step& step = steps.back();
        const std::vector<unsigned>& children = m_nodes[step.node].children;
        if (step.position < children.size()) {
            enter(children[step.position++]);
        } else {
            eraseNode(step.node);
            steps.pop_back();
        }
    }
}

/// Its id may be given out again at once: no walk may take the new node for this one.
void Tree::eraseNode(unsigned id)
{
    m_nodes.erase(id);
    for (ChildWalk* walk = m_walks.innermost; walk; walk = walk->m_outer) {
        if (walk->m_parent == id)
            walk->m_parent = INVALID_ID;
        if (walk->m_child == id)
            walk->m_child = INVALID_ID;
    }
}

// The address is taken back on every way out, which GCC doesn't see where it inlines this.
#if __GNUC__ >= 12
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdangling-pointer"
#endif
Tree::ChildWalk::ChildWalk(const Tree& tree, unsigned parent)
    : m_tree(tree), m_outer(tree.m_walks.innermost), m_parent(parent)
{
    m_tree.m_walks.innermost = this;
}
#if __GNUC__ >= 12
#pragma GCC diagnostic pop
#endif

Tree::ChildWalk::~ChildWalk()
{
    m_tree.m_walks.innermost = m_outer;
}

/// The nodes that the walks stood on are gone.
Tree::Walks& Tree::Walks::operator=(Walks&& /*other*/) noexcept
{
    for (ChildWalk* walk = innermost; walk; walk = walk->m_outer)
        walk->m_parent = walk->m_child = INVALID_ID;
    return *this;
}

void Tree::clearChildren(unsigned id)
{
    m_nodes[id].children.clear();
    m_indexStale = true;
    for (ChildWalk* walk = m_walks.innermost; walk; walk = walk->m_outer)
        if (walk->m_parent == id)
            walk->m_next = 0;
}

void Tree::updateNode(unsigned id, Render& render)
{
    const Orv::StackScope scope("statistics::Tree::updateNode", __FILE__, __LINE__);
    if (m_nodes.contains(id))
        render.updateNode(m_nodes[id].item);
}

void Tree::forEach(const std::function<void(unsigned, unsigned)>& visit) const
{
    forEachNode([&](unsigned id) { visit(m_nodes[id].item, m_nodes[m_nodes[id].parent].item); });
}

CounterValue Tree::sumChildren(unsigned node, std::size_t column, Render& render) const
{
    CounterValue sum;
    if (!m_nodes.contains(node))
        return sum;
    ChildWalk walk(*this, node);
    while (walk.next())
        sum += render.itemValue(m_nodes[walk.child()].item, column);
    return sum;
}

std::string Tree::path(unsigned id, const Render& render) const
{
    std::vector<unsigned> way;
    for (; m_nodes[id].parent != INVALID_ID; id = m_nodes[id].parent)
        way.push_back(m_nodes[id].item);
    std::string path;
    for (auto item = way.rbegin(); item != way.rend(); ++item) {
        if (!path.empty())
            path += kSeparator;
        path += render.itemName(*item);
    }
    return path;
}

} // namespace statistics
