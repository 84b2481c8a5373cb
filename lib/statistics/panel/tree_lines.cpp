#include "tree_lines.h"

#include "render.h"
#include "tree.h"

#include <imgui_internal.h>

#include <algorithm>
#include <utility>

namespace statistics {

namespace {

constexpr std::size_t kMostLooks = 4;

/// Lines out of view, in one frame of a filtered tree: about a millisecond.
constexpr std::size_t kMostMeasured = 2048;

bool operator==(const ImVec2& a, const ImVec2& b)
{
    return a.x == b.x && a.y == b.y;
}

/// Another number whenever the user, the host or ImGui opens or closes a node, in view or not.
std::size_t sumOf(const ImGuiStorage& storage)
{
    std::size_t sum = 0;
    for (const auto& state : storage.Data)
        sum += std::size_t{state.key} * (state.val_i == 0 ? 1 : 3);
    return sum;
}

void copyOpen(const ImGuiStorage& from, ImGuiStorage& to)
{
    to.Data.resize(0);
    for (const auto& state : from.Data)
        if (state.val_i != 0)
            to.Data.push_back(state);
}

bool isLogging()
{
    return ImGui::GetCurrentContext()->LogEnabled;
}

/// While ImGui looks for a place to move to, acts by the keyboard on one that may be out of view, or writes
/// its log, it must see every line.
bool seesEveryLine(const ImGuiWindow& window)
{
    const ImGuiContext& context = *ImGui::GetCurrentContext();
    const bool navigated =
        context.NavWindow && context.NavWindow->RootWindowForNav == window.RootWindowForNav;
    return isLogging() || (navigated && (context.NavAnyRequest || context.NavActivateId != 0));
}

/// Lines between the nodes of an opened group, which newer releases draw from what they have seen of its
/// nodes.
bool connectsBranches()
{
#if IMGUI_VERSION_NUM >= 19200
    constexpr ImGuiTreeNodeFlags kLines =
        ImGuiTreeNodeFlags_DrawLinesFull | ImGuiTreeNodeFlags_DrawLinesToNodes;
    return (ImGui::GetStyle().TreeLinesFlags & kLines) != 0;
#else
    return false;
#endif
}

} // namespace

ExtentMeasure::ExtentMeasure() : m_window(*ImGui::GetCurrentContext()->CurrentWindow)
{
    ImGuiWindowTempData& layout = m_window.DC;
    m_start = layout.CursorPos;
    m_reach = layout.CursorMaxPos.x;
    m_layersBefore = layout.NavLayersActiveMaskNext;
    layout.CursorMaxPos.x = m_start.x;
    layout.NavLayersActiveMaskNext = 0;
}

ExtentMeasure::~ExtentMeasure()
{
    ImGuiWindowTempData& layout = m_window.DC;
    layout.CursorMaxPos.x = std::max(layout.CursorMaxPos.x, m_reach);
    layout.NavLayersActiveMaskNext = static_cast<short>(layout.NavLayersActiveMaskNext | m_layersBefore);
}

Extent ExtentMeasure::extent() const
{
    const ImGuiWindowTempData& layout = m_window.DC;
    Extent extent;
    extent.width = layout.CursorMaxPos.x - m_start.x;
    extent.height = layout.CursorPos.y - m_start.y;
    extent.navigable = layout.NavLayersActiveMaskNext != 0;
    return extent;
}

bool TreeLines::Metrics::operator==(const Metrics& other) const
{
    return openNodes == other.openNodes && font == other.font && fontSize == other.fontSize &&
           indent == other.indent && windowPadding == other.windowPadding &&
           framePadding == other.framePadding && itemSpacing == other.itemSpacing &&
           innerSpacing == other.innerSpacing;
}

TreeLines::Metrics TreeLines::presentMetrics()
{
    const ImGuiStyle& style = ImGui::GetStyle();
    return {ImGui::GetStateStorage(), ImGui::GetFont(),   ImGui::GetFontSize(), style.IndentSpacing,
            style.WindowPadding,      style.FramePadding, style.ItemSpacing,    style.ItemInnerSpacing};
}

ImGuiStorage* TreeLines::begin(Tree& tree, Render& render, const Filter* filter)
{
    m_filter = filter;
    m_measured = 0;
    tree.changes().open();
    render.lineChanges.open();
    useLook(presentMetrics());
    Look& look = m_looks.front();
    look.nodes.resize(tree.m_nodes.size());
    m_counterNodes.resize(render.counters.size(), INVALID_ID);
    forgetChanges(tree, render);
    ImGuiStorage* states = useStates();
    noteOpenNodes(*states);
    noteView();
    return states;
}

/// Each text of the filter begins with what the user has open now. Nodes that are closed aren't kept apart
/// from those that were never opened, so that what leads to a match is open.
ImGuiStorage* TreeLines::useStates()
{
    ImGuiStorage* usual = m_looks.front().metrics.openNodes;
    if (!m_filter)
        return usual;
    FilteredNodes& nodes = filteredNodes(usual);
    if (std::exchange(nodes.edition, m_filter->edition()) != m_filter->edition())
        copyOpen(*usual, *nodes.states);
    return nodes.states.get();
}

TreeLines::FilteredNodes& TreeLines::filteredNodes(const ImGuiStorage* usual)
{
    for (FilteredNodes& nodes : m_filteredNodes)
        if (nodes.usual == usual)
            return nodes;
    if (m_filteredNodes.size() == kMostLooks)
        m_filteredNodes.erase(m_filteredNodes.begin());
    m_filteredNodes.push_back({usual, 0, std::make_unique<ImGuiStorage>()});
    return m_filteredNodes.back();
}

void TreeLines::setOpen(ImGuiID node, bool open)
{
    ImGuiStorage* usual = ImGui::GetStateStorage();
    usual->SetInt(node, open ? 1 : 0);
    for (const FilteredNodes& nodes : m_filteredNodes)
        if (nodes.usual == usual)
            nodes.states->SetInt(node, open ? 1 : 0);
}

void TreeLines::noteOpenNodes(const ImGuiStorage& states)
{
    Look& look = m_looks.front();
    // While it logs, ImGui shows nodes as open that aren't.
    const std::size_t openNodes = sumOf(states) + std::size_t{isLogging()};
    const std::uint64_t version = m_filter ? m_filter->version() : 0;
    if (look.openNodes != openNodes || look.filterVersion != version)
        forgetBranches();
    look.openNodes = openNodes;
    look.filterVersion = version;
}

void TreeLines::useLook(const Metrics& metrics)
{
    const auto same = [&](const Look& look) { return look.metrics == metrics; };
    auto used = std::find_if(m_looks.begin(), m_looks.end(), same);
    if (used == m_looks.end()) {
        if (m_looks.size() == kMostLooks)
            m_looks.pop_back();
        used = m_looks.emplace(m_looks.end());
        used->metrics = metrics;
    }
    std::rotate(m_looks.begin(), used, used + 1);
}

void TreeLines::noteView()
{
    m_window = ImGui::GetCurrentContext()->CurrentWindow;
    m_viewTop = m_window->ClipRect.Min.y;
    m_viewBottom = m_window->ClipRect.Max.y;
    m_skipsLeaves = !seesEveryLine(*m_window);
    m_skipsBranches = m_skipsLeaves && !connectsBranches();
}

void TreeLines::forgetChanges(const Tree& tree, const Render& render)
{
    Look& look = m_looks.front();
    const auto forgetCounter = [&](unsigned slot) {
        if (const unsigned node = counterNode(tree, slot); node != INVALID_ID)
            forget(tree, node);
    };
    const bool allNodes = tree.changes().readFrom(look.nodesRead, [&](unsigned node) { forget(tree, node); });
    const bool allCounters = render.lineChanges.readFrom(look.countersRead, forgetCounter);
    if (allNodes && allCounters)
        return;
    look.nodes.assign(look.nodes.size(), {});
    look.blocks.clear();
}

/// Where the node above isn't known, nothing further up is either.
void TreeLines::forget(const Tree& tree, unsigned node)
{
    if (!tree.contains(node))
        return;
    Look& look = m_looks.front();
    if (const auto below = look.blocks.find(node); below != look.blocks.end())
        below->second.clear();
    do {
        look.nodes[node].known = false;
        const unsigned parent = tree.m_nodes[node].parent;
        if (!tree.contains(parent))
            return;
        const std::size_t block = tree.position(node) / kBlock;
        const auto around = look.blocks.find(parent);
        if (around != look.blocks.end() && block < around->second.size())
            around->second[block].known = false;
        node = parent;
    } while (look.nodes[node].known);
}

void TreeLines::forgetBranches()
{
    Look& look = m_looks.front();
    for (Extent& extent : look.nodes)
        extent.known = extent.known && !extent.hasBranches;
    look.blocks.clear();
}

/// Of lines that the filter leaves out all.
bool TreeLines::isEmpty(const Extent& extent)
{
    return extent.width == 0.0f && extent.height == 0.0f;
}

bool TreeLines::isHidden(const Extent& extent, float offset) const
{
    const float top = m_window->DC.CursorPos.y + offset;
    return top + extent.height < m_viewTop || top > m_viewBottom;
}

/// As far as drawing it would have; its width counts for the sideways scrolling.
void TreeLines::moveOn(const Extent& extent) const
{
    if (extent.height <= 0.0f)
        return;
    ImGui::ItemSize(ImVec2(extent.width, extent.height - ImGui::GetStyle().ItemSpacing.y));
    ImGuiWindowTempData& layout = m_window->DC;
    if (extent.navigable)
        layout.NavLayersActiveMaskNext =
            static_cast<short>(layout.NavLayersActiveMaskNext | (1 << layout.NavLayerCurrent));
}

bool TreeLines::skip(unsigned node)
{
    const std::vector<Extent>& nodes = m_looks.front().nodes;
    if (node >= nodes.size() || !nodes[node].known || !isHidden(nodes[node], 0.0f))
        return false;
    if (nodes[node].hasBranches ? !m_skipsBranches : !m_skipsLeaves)
        return false;
    moveOn(nodes[node]);
    return true;
}

bool TreeLines::skipUnmeasured(ELine line)
{
    Extent guess;
    guess.height = m_looks.front().heights[static_cast<std::size_t>(line)];
    if (guess.height <= 0.0f || !m_skipsLeaves || !isHidden(guess, 0.0f) || ++m_measured <= kMostMeasured)
        return false;
    moveOn(guess);
    return true;
}

std::size_t TreeLines::skipBlocks(unsigned parent, std::size_t position)
{
    const auto found = m_looks.front().blocks.find(parent);
    if (!m_skipsBranches || position % kBlock != 0 || found == m_looks.front().blocks.end())
        return position;
    const std::vector<Extent>& blocks = found->second;
    Extent skipped;
    for (std::size_t block = position / kBlock; block < blocks.size(); ++block, position += kBlock) {
        const Extent& next = blocks[block];
        if (!next.known || !(isEmpty(next) || isHidden(next, skipped.height)))
            break;
        skipped.width = std::max(skipped.width, next.width);
        skipped.height += next.height;
        skipped.navigable = skipped.navigable || next.navigable;
    }
    moveOn(skipped);
    return position;
}

void TreeLines::keep(unsigned node, const Extent& extent, ELine line)
{
    Look& look = m_looks.front();
    if (node < look.nodes.size())
        look.nodes[node] = extent;
    if (line != ELine::Other)
        look.heights[static_cast<std::size_t>(line)] = extent.height;
}

void TreeLines::keepBlock(unsigned parent, std::size_t position, const Extent& extent)
{
    std::vector<Extent>& blocks = m_looks.front().blocks[parent];
    const std::size_t block = position / kBlock;
    if (block >= blocks.size())
        blocks.resize(block + 1);
    blocks[block] = extent;
}

void TreeLines::keepCounter(unsigned slot, unsigned node)
{
    if (slot < m_counterNodes.size())
        m_counterNodes[slot] = node;
}

unsigned TreeLines::counterNode(const Tree& tree, unsigned slot) const
{
    const unsigned node = slot < m_counterNodes.size() ? m_counterNodes[slot] : INVALID_ID;
    return tree.contains(node) && tree.item(node) == itemId(ItemType::Counter, slot) ? node : INVALID_ID;
}

} // namespace statistics
