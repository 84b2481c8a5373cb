#include "tree.h"

#include "assertion.h"
#include "call_scope.h"
#include "stack_tracker.h"

#include <algorithm>
#include <utility>

namespace statistics {

namespace {

constexpr unsigned kFirstSlots = 100;

/// So many children behind one that is removed move up at once; where there are more it leaves a gap.
constexpr std::size_t kShortTail = 64;

/// So that the next `push_back` can't fail.
template<typename T>
void makeRoom(std::vector<T>& list)
{
    if (list.size() == list.capacity())
        list.reserve(list.size() * 2 + 1);
}

std::size_t countListed(const std::vector<unsigned>& children, std::size_t end)
{
    const auto last = children.begin() + static_cast<std::ptrdiff_t>(std::min(end, children.size()));
    return static_cast<std::size_t>(last - children.begin() - std::count(children.begin(), last, INVALID_ID));
}

} // namespace

std::uint64_t Tree::s_lastRevision = 0;

Tree::Tree()
{
    m_derived.positions.resize(kFirstSlots);
    m_nodes.grow(kFirstSlots);
    m_nodes.emplace(Node{INVALID_ID, 0, INVALID_ID, {}});
}

Tree::Tree(Tree&& other) noexcept
    : m_nodes(std::move(other.m_nodes)), m_derived(std::exchange(other.m_derived, {}))
{
}

Tree& Tree::operator=(Tree&& other) noexcept
{
    endWalks();
    m_nodes = std::move(other.m_nodes);
    m_derived = std::exchange(other.m_derived, {});
    noteChange();
    other.noteChange();
    return *this;
}

bool Tree::checkParent(unsigned parentId) const
{
    return ORV_ASSERT(parentId != INVALID_ID) && m_nodes.check(parentId);
}

/// What may fail for want of memory comes first: either nothing has happened, or all of it.
unsigned Tree::addChild(unsigned item, unsigned parentId)
{
    if (!checkParent(parentId))
        return INVALID_ID;
    makeRoom(m_nodes[parentId].children.ids());
    makeRoom(m_derived.unindexed);
    const unsigned id = nextId();
    if (id >= m_derived.positions.size())
        m_derived.positions.resize(id * std::size_t{2});
    m_nodes.emplace(Node{parentId, m_nodes[parentId].depth + 1, item, {}});
    std::vector<unsigned>& siblings = m_nodes[parentId].children.ids();
    m_derived.positions[id] = static_cast<unsigned>(siblings.size());
    siblings.push_back(id);
    noteForIndex(id);
    m_derived.changes.note(id);
    noteChange();
    return id;
}

void Tree::removeItem(unsigned id, Render& render)
{
    if (!m_nodes.contains(id))
        return;
    const CallScope call;
    // The root has no item to free: the report of that is all that happens.
    if (m_nodes[id].parent == INVALID_ID)
        return render.removeItem(m_nodes[id].item);
    if (isListed(id))
        unlist(id);
    removeSubtree(id, render);
}

/// False for a node whose parent's children were cleared: it lives on, but nothing leads to it.
bool Tree::isListed(unsigned id) const
{
    const unsigned parent = m_nodes[id].parent;
    if (!m_nodes.contains(parent))
        return false;
    const ChildList& siblings = m_nodes[parent].children;
    return position(id) < siblings.size() && siblings[position(id)] == id;
}

/// Takes a node out of its parent's children. That n siblings go one by one, in any order, must not move the
/// others n times: only a short tail moves up, and gaps are closed when they are half of the list.
void Tree::unlist(unsigned id)
{
    const unsigned parent = m_nodes[id].parent;
    std::vector<unsigned>& siblings = m_nodes[parent].children.ids();
    unsigned& gaps = m_nodes[parent].children.gaps();
    m_derived.changes.note(parent);
    if (siblings.size() - position(id) <= kShortTail) {
        takeOut(siblings, id);
    } else {
        siblings[position(id)] = INVALID_ID;
        ++gaps;
    }
    if (gaps * std::size_t{2} > siblings.size()) {
        // Walks that stand on the node go on from its place.
        m_derived.positions[id] = static_cast<unsigned>(countListed(siblings, position(id)));
        closeGaps(parent);
    }
}

/// Walks that are past it move up with those behind it.
void Tree::takeOut(std::vector<unsigned>& siblings, unsigned id)
{
    const std::size_t position = this->position(id);
    siblings.erase(siblings.begin() + static_cast<std::ptrdiff_t>(position));
    for (std::size_t behind = position; behind < siblings.size(); ++behind)
        if (siblings[behind] != INVALID_ID)
            m_derived.positions[siblings[behind]] = static_cast<unsigned>(behind);
    for (ChildWalk* walk = m_innermost; walk; walk = walk->m_outer)
        if (walk->m_parent == m_nodes[id].parent && walk->m_next > position)
            --walk->m_next;
}

void Tree::closeGaps(unsigned parent)
{
    std::vector<unsigned>& children = m_nodes[parent].children.ids();
    for (ChildWalk* walk = m_innermost; walk; walk = walk->m_outer)
        if (walk->m_parent == parent)
            walk->m_next = countListed(children, walk->m_next);
    children.erase(std::remove(children.begin(), children.end(), INVALID_ID), children.end());
    for (std::size_t position = 0; position < children.size(); ++position)
        m_derived.positions[children[position]] = static_cast<unsigned>(position);
    m_nodes[parent].children.gaps() = 0;
}

/// Items go parent first, nodes children first: that order decides which ids are given out next.
void Tree::removeSubtree(unsigned top, Render& render)
{
    render.removeItem(m_nodes[top].item);
    unsigned id = top;
    for (std::size_t position = 0;;) {
        const unsigned child = firstFrom(id, position);
        if (child != INVALID_ID) {
            render.removeItem(m_nodes[child].item);
            id = child;
            position = 0;
            continue;
        }
        const unsigned parent = m_nodes[id].parent;
        position = this->position(id) + 1;
        eraseNode(id);
        if (id == top)
            return;
        id = parent;
    }
}

/// The first child that stands at `position` or behind it; INVALID_ID if there is none.
unsigned Tree::firstFrom(unsigned parent, std::size_t position) const
{
    const ChildList& children = m_nodes[parent].children;
    while (position < children.size() && children[position] == INVALID_ID)
        ++position;
    return position < children.size() ? children[position] : INVALID_ID;
}

/// Its id may be given out again at once: no walk may take the new node for this one. Walks through its
/// children go on behind it.
void Tree::eraseNode(unsigned id)
{
    for (ChildWalk* walk = m_innermost; walk; walk = walk->m_outer) {
        if (walk->m_child == id)
            walk->m_child = INVALID_ID;
        if (walk->m_parent != id)
            continue;
        walk->m_parent = id == walk->m_top ? INVALID_ID : m_nodes[id].parent;
        walk->m_next = position(id);
    }
    m_derived.openings.erase(id);
    m_nodes.erase(id);
    noteChange();
}

/// The nodes that the walks stand on are gone.
void Tree::endWalks()
{
    for (ChildWalk* walk = m_innermost; walk; walk = walk->m_outer)
        walk->end();
}

// The address is taken back on every way out, which GCC doesn't see where it inlines this.
#if __GNUC__ >= 12
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdangling-pointer"
#endif
Tree::ChildWalk::ChildWalk(const Tree& tree, unsigned parent)
    : m_tree(tree), m_outer(tree.m_innermost), m_top(parent), m_parent(parent)
{
    m_tree.m_innermost = this;
}
#if __GNUC__ >= 12
#pragma GCC diagnostic pop
#endif

bool Tree::ChildWalk::enter()
{
    if (m_child == INVALID_ID || m_tree.m_nodes[m_child].children.empty())
        return false;
    m_parent = std::exchange(m_child, INVALID_ID);
    m_next = 0;
    return true;
}

bool Tree::ChildWalk::leave()
{
    if (m_parent == INVALID_ID || m_parent == m_top)
        return false;
    m_next = m_tree.position(m_parent) + 1;
    m_parent = m_tree.m_nodes[m_parent].parent;
    return true;
}

/// Walks that are below the node go on behind what they can no longer reach.
void Tree::clearChildren(unsigned id)
{
    m_nodes[id].children = {};
    m_derived.indexStale = true;
    m_derived.changes.note(id);
    noteChange();
    for (ChildWalk* walk = m_innermost; walk; walk = walk->m_outer) {
        if (walk->m_parent == id || isBelow(walk->m_parent, id)) {
            walk->m_parent = id;
            walk->m_child = INVALID_ID;
            walk->m_next = 0;
        }
    }
}

bool Tree::isBelow(unsigned id, unsigned ancestor) const
{
    while (m_nodes.contains(id) && m_nodes[id].parent != ancestor)
        id = m_nodes[id].parent;
    return m_nodes.contains(id);
}

void Tree::requestOpen(unsigned id, bool open)
{
    if (!m_nodes.contains(id))
        return;
    for (; m_nodes[id].parent != INVALID_ID; id = m_nodes[id].parent) {
        m_derived.openings[id] = open;
        if (!open)
            return;
    }
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

} // namespace statistics
