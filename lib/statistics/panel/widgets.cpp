#include "widgets.h"

#include <imgui_internal.h>

#include <algorithm>

namespace statistics::widgets {

namespace {

constexpr float kLeastColumnWidth = 8.0f;     ///< pixels; ImGui fails on columns of no width
constexpr float kMostColumnWidth = 100000.0f; ///< and on endless ones
constexpr float kHeaderHeight = 20.0f;
constexpr float kHeaderMargin = 12.0f; ///< between neighbouring header buttons

const char* begin(const std::string& text)
{
    return text.data();
}

const char* end(const std::string& text)
{
    return text.data() + text.size();
}

/// ImGui would show less than the text, or nothing that tells it apart.
bool isOddLabel(const std::string& text)
{
    return text.empty() || text.find("##") != std::string::npos || text.find('\0') != std::string::npos;
}

ImVec2 sizeOf(const std::string& text)
{
    return ImGui::CalcTextSize(begin(text), end(text), false);
}

ImRect lastItemRect()
{
    return {ImGui::GetItemRectMin(), ImGui::GetItemRectMax()};
}

void drawClipped(const std::string& text, const ImVec2& min, const ImVec2& max, const ImVec2& align,
                 const ImRect& clip)
{
    const ImVec2 size = sizeOf(text);
    ImGui::RenderTextClippedEx(ImGui::GetWindowDrawList(), min, max, begin(text), end(text), &size, align,
                               &clip);
}

/// The item drawn last may be covered by others in the same place that want the mouse, too.
bool overlappedSelectable(bool selected, const ImVec2& size)
{
#if IMGUI_VERSION_NUM >= 18970
    ImGui::SetNextItemAllowOverlap();
    return ImGui::Selectable("##row", selected, ImGuiSelectableFlags_SpanAllColumns, size);
#else
    const bool pressed = ImGui::Selectable("##row", selected, ImGuiSelectableFlags_SpanAllColumns, size);
    ImGui::SetItemAllowOverlap();
    return pressed;
#endif
}

bool nextWindowHasSize()
{
    const ImGuiNextWindowData& data = ImGui::GetCurrentContext()->NextWindowData;
#if IMGUI_VERSION_NUM >= 19194
    return (data.HasFlags & ImGuiNextWindowDataFlags_HasSize) != 0;
#else
    return (data.Flags & ImGuiNextWindowDataFlags_HasSize) != 0;
#endif
}

} // namespace

ColumnsScope::ColumnsScope(int count, const char* id, float width)
{
    ImGuiWindow* window = ImGui::GetCurrentWindow();
    m_workRectEnd = window->WorkRect.Max.x;
    // ImGui keeps each width as a fraction of the set's, which it takes from the window's work area: make
    // that area the layout's own for the time of the columns.
    window->WorkRect.Max.x = window->Pos.x + window->DC.Indent.x + width;
    ImGui::BeginColumns(id, count, ImGuiOldColumnFlags_NoForceWithinWindow);
    m_isNew = window->DC.CurrentColumns->IsFirstFrame;
    stretchRows();
}

ColumnsScope::~ColumnsScope()
{
    ImGuiWindow* window = ImGui::GetCurrentWindow();
    const float end = columnsEnd();
    ImGui::EndColumns();
    window->WorkRect.Max.x = m_workRectEnd;
    // The panel scrolls sideways as far as the columns reach, not as far as the texts of the rows that
    // happen to be in view: those are cut at their column's border.
    window->DC.CursorMaxPos.x = std::max(window->DC.CursorMaxPos.x, end);
}

void ColumnsScope::setWidth(int column, float width) const
{
    const float least = width > kLeastColumnWidth ? width : kLeastColumnWidth;
    ImGui::SetColumnWidth(column, std::min(least, kMostColumnWidth));
    stretchRows();
}

/// Where the last column ends on the screen.
float ColumnsScope::columnsEnd()
{
    return ImGui::GetCurrentWindow()->Pos.x + ImGui::GetColumnOffset(ImGui::GetColumnsCount());
}

/// What spans all columns reaches the last one's end, wherever widths and the user's dragging put it.
void ColumnsScope::stretchRows()
{
    float& end = ImGui::GetCurrentWindow()->ParentWorkRect.Max.x;
    end = std::max(end, columnsEnd());
}

bool isInsideFrame()
{
    return ImGui::GetCurrentContext()->WithinFrameScope;
}

void suggestNextWindowSize(const ImVec2& size)
{
    if (!nextWindowHasSize())
        ImGui::SetNextWindowSize(size, ImGuiCond_FirstUseEver);
}

void text(const std::string& text)
{
    ImGui::TextUnformatted(begin(text), end(text));
}

bool treeNode(unsigned id, const std::string& text)
{
    const ImGuiID node = ImGui::GetCurrentWindow()->GetID(static_cast<int>(id));
    return ImGui::TreeNodeBehavior(node, 0, begin(text), end(text));
}

bool checkBox(const std::string& caption, bool* value)
{
    if (!isOddLabel(caption))
        return ImGui::Checkbox(caption.c_str(), value);
    bool changed = ImGui::Checkbox("##box", value);
    ImGui::SameLine(0.0f, ImGui::GetStyle().ItemInnerSpacing.x);
    text(caption);
    if (ImGui::IsItemClicked()) {
        *value = !*value;
        changed = true;
    }
    return changed;
}

bool menuItem(const std::string& caption)
{
    if (!isOddLabel(caption))
        return ImGui::MenuItem(caption.c_str(), nullptr, false, true);
    const ImVec2 position = ImGui::GetCursorScreenPos();
    const bool pressed = ImGui::Selectable("##entry", false, 0, sizeOf(caption));
    ImGui::GetWindowDrawList()->AddText(position, ImGui::GetColorU32(ImGuiCol_Text), begin(caption),
                                        end(caption));
    return pressed;
}

bool headerButton(const std::string& caption)
{
    const float width = std::max(ImGui::GetColumnWidth(-1) - kHeaderMargin, 1.0f);
    const bool pressed = ImGui::Button("##header", ImVec2(width, kHeaderHeight));
    const ImGuiStyle& style = ImGui::GetStyle();
    const ImRect button = lastItemRect();
    ImRect inside = button;
    inside.Expand(ImVec2(-style.FramePadding.x, -style.FramePadding.y));
    drawClipped(caption, inside.Min, inside.Max, style.ButtonTextAlign, button);
    return pressed;
}

bool rowSelectable(const std::string& text, bool selected)
{
    ImVec2 position = ImGui::GetCursorScreenPos();
    position.y += ImGui::GetCurrentWindow()->DC.CurrLineTextBaseOffset;
    const bool tall = text.find('\n') != std::string::npos;
    const bool pressed = overlappedSelectable(selected, ImVec2(0.0f, tall ? sizeOf(text).y : 0.0f));
    ImGui::GetWindowDrawList()->AddText(position, ImGui::GetColorU32(ImGuiCol_Text), begin(text), end(text));
    return pressed;
}

void progressBar(float fraction, const std::string& overlay)
{
    const float filled = fraction > 0.0f ? std::min(fraction, 1.0f) : 0.0f;
    ImGui::ProgressBar(filled, ImVec2(0.0f, 0.0f), "");
    if (overlay.empty() || !ImGui::IsItemVisible())
        return;
    const ImGuiStyle& style = ImGui::GetStyle();
    const ImRect bar = lastItemRect();
    const float rightmost = bar.Max.x - sizeOf(overlay).x - style.ItemInnerSpacing.x;
    const float behindFill = bar.Min.x + filled * bar.GetWidth() + style.ItemSpacing.x;
    const float left = std::max(std::min(behindFill, rightmost), bar.Min.x);
    drawClipped(overlay, ImVec2(left, bar.Min.y), bar.Max, ImVec2(0.0f, 0.5f), bar);
}

LineMetrics lineMetrics()
{
    const ImGuiStyle& style = ImGui::GetStyle();
    return {ImGui::GetFontSize(), style.FramePadding.y, style.ItemSpacing.y};
}

LineMeasure::LineMeasure()
{
    ImGuiWindowTempData& layout = ImGui::GetCurrentContext()->CurrentWindow->DC;
    m_start = layout.CursorPos;
    m_reach = layout.CursorMaxPos.x;
    layout.CursorMaxPos.x = m_start.x;
}

LineMeasure::~LineMeasure()
{
    float& reach = ImGui::GetCurrentContext()->CurrentWindow->DC.CursorMaxPos.x;
    reach = std::max(reach, m_reach);
}

ImVec2 LineMeasure::size() const
{
    const ImGuiWindowTempData& layout = ImGui::GetCurrentContext()->CurrentWindow->DC;
    return {layout.CursorMaxPos.x - m_start.x, layout.CursorPos.y - m_start.y};
}

HiddenLines::HiddenLines()
{
    const ImGuiContext& context = *ImGui::GetCurrentContext();
    const ImGuiWindow& window = *context.CurrentWindow;
    const float margin = context.FontSize * 2.0f;
    m_top = window.DC.CursorPos.y;
    m_visibleTop = window.ClipRect.Min.y - margin;
    m_visibleBottom = window.ClipRect.Max.y + margin;
}

void HiddenLines::skip(const ImVec2& size) const
{
    if (size.y > 0.0f)
        ImGui::ItemSize(ImVec2(size.x, size.y - ImGui::GetStyle().ItemSpacing.y));
}

bool hiddenTreeNode(unsigned id)
{
    ImGuiWindow* window = ImGui::GetCurrentWindow();
    const ImGuiID node = window->GetID(static_cast<int>(id));
    const bool open = window->DC.StateStorage->GetInt(node, 0) != 0;
    if (open)
        ImGui::TreePushOverrideID(node);
    return open;
}

} // namespace statistics::widgets
