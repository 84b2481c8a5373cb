#include "visible_rows.h"

#include <imgui.h>
#include <imgui_internal.h>

#include <cmath>

namespace statistics::widgets {

namespace {

/// True while ImGui looks in this window for the next place of keyboard navigation.
bool isNavigationSearching(const ImGuiContext& context, const ImGuiWindow& window)
{
    return context.NavMoveScoringItems && context.NavWindow &&
           context.NavWindow->RootWindowForNav == window.RootWindowForNav;
}

} // namespace

/// ImGui ends each line at a whole pixel.
VisibleRows::VisibleRows(std::size_t count, const RowLines& lines)
    : m_count(count),
      m_lines(lines),
      m_start(ImGui::GetCursorScreenPos().y),
      m_lineHeight(std::ceil(ImGui::GetTextLineHeight())),
      m_rowHeight(std::floor(ImGui::GetTextLineHeightWithSpacing()))
{
}

float VisibleRows::top(std::size_t row) const
{
    return m_rowHeight * static_cast<float>(row) +
           m_lineHeight * static_cast<float>(m_lines.extraBefore(row));
}

/// The row that covers `offset`, the first or the last one if none does.
std::size_t VisibleRows::rowAt(float offset) const
{
    std::size_t first = 0;
    std::size_t last = m_count - 1;
    while (first < last) {
        const std::size_t middle = first + (last - first) / 2;
        if (top(middle + 1) > offset)
            last = middle;
        else
            first = middle + 1;
    }
    return first;
}

VisibleRows::Range VisibleRows::rangeAt(float top, float bottom) const
{
    return top > bottom ? Range() : Range{rowAt(top - m_start), rowAt(bottom - m_start) + 1};
}

/// With the rows next to it, which a key may lead to.
VisibleRows::Range VisibleRows::rangeAround(const ImRect& place) const
{
    const Range range = rangeAt(place.Min.y, place.Max.y);
    if (range.end == 0)
        return range;
    return {range.begin - std::min<std::size_t>(range.begin, 1), std::min(range.end + 1, m_count)};
}

std::array<VisibleRows::Range, 5> VisibleRows::ranges() const
{
    const ImGuiContext& context = *ImGui::GetCurrentContext();
    ImGuiWindow* window = context.CurrentWindow;
    if (m_count == 0)
        return {};
    // Where the host's spacing lets rows run upwards, nothing tells which of them are in view.
    if (context.LogEnabled || m_rowHeight <= 0.0f)
        return {Range{0, m_count}};
    std::array<Range, 5> ranges{rangeAt(window->ClipRect.Min.y, window->ClipRect.Max.y)};
    if (isNavigationSearching(context, *window)) {
        ranges[0] = rangeAround(window->ClipRect);
        ranges[1] = rangeAround(context.NavScoringRect);
        ranges[2] = rangeAround(context.NavScoringNoClipRect);
        if (context.NavTabbingDir == -1)
            ranges[3] = {m_count - 1, m_count};
    }
    if (context.NavId != 0 && window->NavLastIds[0] == context.NavId) {
        ranges[4] = rangeAround(ImGui::WindowRectRelToAbs(window, window->NavRectRel[0]));
    }
    std::sort(ranges.begin(), ranges.end(), [](const Range& a, const Range& b) { return a.begin < b.begin; });
    return ranges;
}

void VisibleRows::moveTo(std::size_t row) const
{
    ImGuiWindowTempData& layout = ImGui::GetCurrentWindow()->DC;
    const float spacing = ImGui::GetStyle().ItemSpacing.y;
    layout.CursorPos.y = m_start + top(row);
    layout.CursorMaxPos.y = std::max(layout.CursorMaxPos.y, layout.CursorPos.y - spacing);
    layout.CursorPosPrevLine.y = layout.CursorPos.y - m_rowHeight;
    layout.PrevLineSize.y = m_rowHeight - spacing;
    if (layout.CurrentColumns)
        layout.CurrentColumns->LineMinY = layout.CursorPos.y;
}

} // namespace statistics::widgets
