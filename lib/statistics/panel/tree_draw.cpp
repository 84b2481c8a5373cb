// Drawing a tree. Lines that lie out of view cost next to nothing: they are skipped by the size that they
// had when they were last drawn.

#include "tree.h"

#include "assertion.h"
#include "call_scope.h"
#include "stack_tracker.h"

#include <algorithm>

namespace statistics {

namespace {

/// Kinds that are one line and change their height only when `Render::layoutGeneration` tells.
bool isPlainLine(ItemType type)
{
    return type == ItemType::Counter || type == ItemType::Label || type == ItemType::Checkbox;
}

} // namespace

/// Closes the level that an item opened.
class [[nodiscard]] Tree::LevelScope {
public:
    explicit LevelScope(Render& render) : m_render(render) {}
    ~LevelScope() { m_render.endNode(); }
    LevelScope(const LevelScope&) = delete;
    LevelScope& operator=(const LevelScope&) = delete;

private:
    Render& m_render;
};

void Tree::draw(Render& render)
{
    const Orv::StackScope scope("statistics::Tree::draw", __FILE__, __LINE__);
    const CallScope call;
    if (!ORV_ASSERT(!m_nodes.empty()))
        return;
    prepareLines(render);
    drawNode(render, m_nodes.begin());
}

void Tree::drawNode(Render& render, unsigned id)
{
    if (!drawLine(render, id))
        return;
    const LevelScope level(render);
    ChildWalk walk(*this, id);
    for (skipHiddenLeaves(walk); walk.next(); skipHiddenLeaves(walk))
        drawNode(render, walk.child());
}

/// Moves on past the children without children of their own that lie out of view, without looking at them.
void Tree::skipHiddenLeaves(ChildWalk& walk) const
{
    if (walk.m_parent == INVALID_ID)
        return;
    const std::vector<unsigned>& children = m_nodes[walk.m_parent].children;
    const widgets::HiddenLines hidden;
    ImVec2 skipped(0.0f, 0.0f);
    for (std::size_t& next = walk.m_next; next < children.size() && children[next] < m_lines.size(); ++next) {
        const Line& line = m_lines[children[next]];
        if (!line.isLeaf || !hidden.contain(skipped.y, line.size.y))
            break;
        skipped.x = std::max(skipped.x, line.size.x);
        skipped.y += line.size.y;
    }
    hidden.skip(skipped);
}

/// Draws or skips the node's own line. True if its children follow.
bool Tree::drawLine(Render& render, unsigned id)
{
    const Node& node = m_nodes[id];
    const unsigned item = node.item;
    const bool hasChildren = !node.children.empty();
    if (!isPlainLine(render.itemType(item)))
        return render.drawItem(item, node.depth, hasChildren);
    if (m_lines.size() <= id)
        m_lines.resize(m_nodes.size());
    const ImVec2 known = m_lines[id].size;
    const widgets::HiddenLines hidden;
    if (known.y > 0.0f && hidden.contain(0.0f, known.y)) {
        hidden.skip(known);
        return hasChildren && widgets::hiddenTreeNode(item);
    }
    const widgets::LineMeasure measure;
    const bool open = render.drawItem(item, node.depth, hasChildren);
    if (m_nodes.contains(id))
        m_lines[id] = {measure.size(), !hasChildren};
    return open;
}

void Tree::prepareLines(const Render& render)
{
    const widgets::LineMetrics metrics = widgets::lineMetrics();
    if (metrics == m_lineMetrics && m_layoutGeneration == render.layoutGeneration)
        return;
    m_lineMetrics = metrics;
    m_layoutGeneration = render.layoutGeneration;
    m_lines.clear();
}

} // namespace statistics
