// The comparison of snapshots: numbered rows, captions, one column per snapshot; rows that differ stand out.

#include "columns.h"
#include "item_scope.h"
#include "layout.h"
#include "render.h"
#include "visible_rows.h"
#include "widgets.h"

#include <imgui.h>

#include <algorithm>
#include <utility>

namespace statistics {

namespace {

constexpr std::size_t kLeadColumns = 2; ///< number and caption
const ImVec4 kChangedColor(1.0f, 0.6f, 0.0f, 1.0f);

/// Writes into the style itself, for the time of a row.
class [[nodiscard]] ChangedScope {
public:
    explicit ChangedScope(bool changed) : m_kept(ImGui::GetStyle().Colors[ImGuiCol_Text])
    {
        if (changed)
            ImGui::GetStyle().Colors[ImGuiCol_Text] = kChangedColor;
    }
    ~ChangedScope() { ImGui::GetStyle().Colors[ImGuiCol_Text] = m_kept; }
    ChangedScope(const ChangedScope&) = delete;
    ChangedScope& operator=(const ChangedScope&) = delete;

private:
    ImVec4 m_kept;
};

/// The numbers of rows as the column of the numbers needs them: all digits are as wide as this one.
float numberWidth(std::size_t rows)
{
    const std::string longest(std::to_string(rows).size(), '0');
    return std::max(layout::kNumberWidth, widgets::columnWidthFor(longest));
}

void applyWidths(const widgets::ColumnsScope& columns, const DiffTable& table)
{
    const std::size_t snapshots = table.m_columns.size();
    columns.setWidth(0, numberWidth(table.m_rows.size()));
    columns.setWidth(1, layout::kCaptionWidth);
    for (std::size_t column = 0; column < snapshots; ++column)
        columns.setWidth(static_cast<int>(column + kLeadColumns),
                         layout::kSnapshotsWidth / static_cast<float>(snapshots));
}

void findLines(const DiffTable& table, RowLines& lines)
{
    lines.forgetFrom(0);
    for (std::size_t row = 0; row < table.m_rows.size(); ++row) {
        lines.add(row, table.m_rows[row].caption);
        for (const CounterValue& value : table.m_rows[row].values)
            if (value.isString())
                lines.add(row, value.toString(nullptr));
    }
}

void drawHeaderCell(std::size_t column, const std::string& caption)
{
    const widgets::IdScope id(column);
    widgets::headerButton(caption);
    ImGui::NextColumn();
}

void drawHeader(const DiffTable& table)
{
    const widgets::HeaderScope spacing;
    drawHeaderCell(0, "N");
    drawHeaderCell(1, "Caption");
    for (std::size_t column = 0; column < table.m_columns.size(); ++column)
        drawHeaderCell(column + kLeadColumns, table.m_columns[column].title);
}

void drawRow(DiffTable& table, std::size_t position, std::string& text)
{
    const DiffTableRow& row = table.m_rows[position];
    const widgets::IdScope id(position);
    const ChangedScope color(row.changed);
    CounterValue(static_cast<unsigned>(position + 1)).print(text, nullptr);
    if (widgets::rowSelectable(text, table.m_selectedRow == position))
        table.m_selectedRow = position;
    ImGui::NextColumn();
    widgets::text(row.caption);
    ImGui::NextColumn();
    for (const CounterValue& value : row.values) {
        value.print(text, value.isDecimal() ? "%g" : nullptr);
        widgets::text(text);
        ImGui::NextColumn();
    }
}

} // namespace

void Render::drawDiffTable()
{
    DiffTable& table = diffTableFunctor();
    const std::size_t snapshots = table.m_columns.size();
    if (table.m_rows.empty()) {
        m_diffRowCount = 0; // what comes next may have as many columns and rows as what is gone
        return;
    }
    const widgets::IdScope id = itemScope(ItemType::DiffTable, 0);
    const widgets::ColumnsScope columns(static_cast<int>(snapshots + kLeadColumns), "diff_table",
                                        layout::kWidth);
    const bool changed = noteDiffShape(table);
    if (std::exchange(diffWidthsPending, false) || columns.isNew())
        applyWidths(columns, table);
    else if (changed)
        columns.widen(0, numberWidth(table.m_rows.size()));
    drawHeader(table);
    widgets::forEachVisibleRow(table.m_rows.size(), m_diffLines,
                               [&](std::size_t row) { drawRow(table, row, m_diffText); });
}

/// True if rows or columns have come or gone since the last draw: every change of the contents goes along
/// with a change of their numbers.
bool Render::noteDiffShape(const DiffTable& table)
{
    const std::size_t snapshots = table.m_columns.size();
    if (diffColumnCount == snapshots && m_diffRowCount == table.m_rows.size())
        return false;
    diffWidthsPending |= diffColumnCount != snapshots;
    diffColumnCount = snapshots;
    m_diffRowCount = table.m_rows.size();
    findLines(table, m_diffLines);
    return true;
}

} // namespace statistics
