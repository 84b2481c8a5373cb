#include "columns.h"

#include "layout.h"

#include <imgui_internal.h>

#include <algorithm>

namespace statistics::widgets {

namespace {

/// Sets of more columns are dragged without pushing what follows, which ImGui does by recursion.
constexpr int kMostPushedColumns = 4096;

/// Keeps the borders of the frame before apart, before ImGui cuts the columns at them. Dragging one pushes
/// those behind it past the end of the set, and ImGui fails on a column that ends before it begins. `least`
/// and `most` are fractions of the set's width.
void settleBorders(ImGuiOldColumns& set, int count, float least, float most)
{
    if (set.Columns.Size != count + 1) {
        set.IsBeingResized = false; // ImGui makes the columns anew, and knows no widths before the dragging
        return;
    }
    ImGuiOldColumnData* borders = set.Columns.Data;
    // What the last column lost on the way to the right comes back on the way to the left.
    if (set.IsBeingResized)
        borders[count].OffsetNorm = borders[count].OffsetNormBeforeResize;
    for (int border = 1; border <= count; ++border) {
        const float before = borders[border - 1].OffsetNorm;
        borders[border].OffsetNorm = std::clamp(borders[border].OffsetNorm, before + least, before + most);
    }
}

} // namespace

ColumnsScope::ColumnsScope(int count, const char* id, float width)
    : m_workRectEnd(ImGui::GetCurrentWindow()->WorkRect.Max.x)
{
    ImGuiWindow* window = ImGui::GetCurrentWindow();
    const auto columns = static_cast<float>(count);
    const float setWidth = std::max(width, layout::kLeastColumnWidth * columns);
    m_mostWidth =
        std::clamp(layout::kMostColumnsWidth / columns, layout::kLeastColumnWidth, layout::kMostColumnWidth);
    settleBorders(*ImGui::FindOrCreateColumns(window, ImGui::GetColumnsID(id, count)), count,
                  layout::kLeastColumnWidth / setWidth, m_mostWidth / setWidth);
    // ImGui keeps each width as a fraction of the set's, which it takes from the window's work area: make
    // that area the layout's own for the time of the columns.
    window->WorkRect.Max.x = window->Pos.x + window->DC.Indent.x + layout::scaled(setWidth);
    const ImGuiOldColumnFlags pushing =
        count > kMostPushedColumns ? ImGuiOldColumnFlags_NoPreserveWidths : ImGuiOldColumnFlags_None;
    ImGui::BeginColumns(id, count, ImGuiOldColumnFlags_NoForceWithinWindow | pushing);
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
    ImGuiOldColumnData* border = &ImGui::GetCurrentWindow()->DC.CurrentColumns->Columns[column];
    border[1].OffsetNorm = border[0].OffsetNorm + fractionOf(width);
    stretchRows();
}

void ColumnsScope::widen(int column, float width) const
{
    ImVector<ImGuiOldColumnData>& borders = ImGui::GetCurrentWindow()->DC.CurrentColumns->Columns;
    const float more = fractionOf(width) - (borders[column + 1].OffsetNorm - borders[column].OffsetNorm);
    for (int border = column + 1; more > 0.0f && border < borders.Size; ++border)
        borders[border].OffsetNorm += more;
    stretchRows();
}

float ColumnsScope::fractionOf(float width) const
{
    const ImGuiOldColumns& set = *ImGui::GetCurrentWindow()->DC.CurrentColumns;
    const float least = width > layout::kLeastColumnWidth ? width : layout::kLeastColumnWidth;
    return layout::scaled(std::min(least, m_mostWidth)) / (set.OffMaxX - set.OffMinX);
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

} // namespace statistics::widgets
