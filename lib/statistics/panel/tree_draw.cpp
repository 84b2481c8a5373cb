// Drawing a tree. What lies out of view is skipped by the room that it took when it was last drawn.

#include "tree.h"

#include "assertion.h"
#include "call_scope.h"
#include "stack_tracker.h"
#include "text_lines.h"
#include "tree_lines.h"

namespace statistics {

namespace {

/// Kinds that take the same room until `Tree` or `Render` note a change.
bool isPlainLine(ItemType type)
{
    return type == ItemType::Counter || type == ItemType::Label || type == ItemType::Checkbox ||
           type == ItemType::Root;
}

bool isOneLine(const std::string& text)
{
    return lineCount(text) == 1;
}

ELine lineOf(const ItemCounter& item, const ShownLimits* shown)
{
    if (!isOneLine(item.name) || !isOneLine(item.valueText))
        return ELine::Other;
    if (!shown)
        return ELine::Text;
    return isOneLine(shown->texts.minText) && isOneLine(shown->texts.maxText) ? ELine::Bar : ELine::Other;
}

ELine lineOf(const Render& render, unsigned item)
{
    const unsigned slot = itemSlot(item);
    switch (render.itemType(item)) {
    case ItemType::Label:
        return isOneLine(render.labels[slot]) ? ELine::Text : ELine::Other;
    case ItemType::Counter:
        return lineOf(render.counters[slot], render.shownLimits(render.counters[slot]));
    default:
        return ELine::Other;
    }
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

namespace {

/// Lets ImGui keep elsewhere for a time which nodes are open.
class [[nodiscard]] StateScope {
public:
    explicit StateScope(ImGuiStorage* states) : m_before(ImGui::GetStateStorage())
    {
        ImGui::SetStateStorage(states);
    }
    ~StateScope() { ImGui::SetStateStorage(m_before); }
    StateScope(const StateScope&) = delete;
    StateScope& operator=(const StateScope&) = delete;

private:
    ImGuiStorage* m_before;
};

} // namespace

void Tree::draw(Render& render, const Filter* filter)
{
    const Orv::StackScope scope("statistics::Tree::draw", __FILE__, __LINE__);
    const CallScope call;
    if (!ORV_ASSERT(!m_nodes.empty()))
        return;
    if (!m_derived.lines)
        m_derived.lines = std::make_shared<TreeLines>();
    takeOpenings(render);
    // Held: a functor may replace the tree.
    const std::shared_ptr<TreeLines> lines = m_derived.lines;
    const StateScope states(lines->begin(*this, render, filter));
    drawNode(render, *lines, m_nodes.begin());
}

unsigned Tree::drawnCounter(unsigned slot) const
{
    return m_derived.lines ? m_derived.lines->counterNode(*this, slot) : INVALID_ID;
}

/// True if all that was drawn takes the same room until a change is noted.
bool Tree::drawNode(Render& render, TreeLines& lines, unsigned id)
{
    if (!lines.shows(id) || lines.skip(id))
        return true;
    const unsigned item = m_nodes[id].item;
    const bool hasChildren = !m_nodes[id].children.empty();
    const ELine line = hasChildren || !lines.isFiltered() ? ELine::Other : lineOf(render, item);
    if (lines.skipUnmeasured(line))
        return false;
    render.opensAtFirst = lines.opensAtFirst(id);
    const ExtentMeasure measure;
    bool steady = isPlainLine(render.itemType(item));
    if (render.drawItem(item, m_nodes[id].depth, hasChildren && lines.showsBelow(id))) {
        const LevelScope level(render);
        steady = drawChildren(render, lines, id) && steady;
    }
    Extent extent = measure.extent();
    extent.hasBranches = hasChildren;
    extent.known = steady;
    lines.keep(id, extent, line);
    if (render.itemType(item) == ItemType::Counter)
        lines.keepCounter(itemSlot(item), id);
    return steady;
}

bool Tree::drawChildren(Render& render, TreeLines& lines, unsigned parent)
{
    ChildWalk walk(*this, parent);
    if (m_nodes[parent].children.size() > TreeLines::kBlock)
        return drawBlocks(render, lines, walk);
    bool steady = true;
    while (walk.next())
        steady = drawNode(render, lines, walk.child()) && steady;
    return steady;
}

/// Apart from short lists, which take less of the stack and are what goes deep.
bool Tree::drawBlocks(Render& render, TreeLines& lines, ChildWalk& walk)
{
    bool steady = true;
    while (walk.parent() != INVALID_ID && walk.m_next < m_nodes[walk.parent()].children.size())
        steady = drawBlock(render, lines, walk) && steady;
    return steady;
}

/// Draws the siblings up to the end of a block, behind those blocks that are skipped.
bool Tree::drawBlock(Render& render, TreeLines& lines, ChildWalk& walk)
{
    const unsigned parent = walk.parent();
    walk.m_next = lines.skipBlocks(parent, walk.m_next);
    const std::size_t start = walk.m_next;
    if (start >= m_nodes[parent].children.size())
        return true;
    const std::size_t end = start - start % TreeLines::kBlock + TreeLines::kBlock;
    const ExtentMeasure measure;
    bool steady = true;
    while (walk.next(end))
        steady = drawNode(render, lines, walk.child()) && steady;
    if (walk.parent() == INVALID_ID)
        return steady;
    Extent extent = measure.extent();
    extent.known = steady;
    lines.keepBlock(parent, start, extent);
    return steady;
}

} // namespace statistics
