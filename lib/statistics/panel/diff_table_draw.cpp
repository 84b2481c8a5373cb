// The comparison of snapshots: numbered rows, captions, one column per snapshot; rows that differ stand out.

#include "render.h"
#include "widgets.h"

#include <imgui.h>

#include <algorithm>
#include <utility>

namespace statistics {

namespace {

constexpr float kWidth = 850.0f; ///< pixels, all columns together
constexpr float kNumberWidth = 25.5f;
constexpr float kCaptionWidth = 229.50002f;
constexpr float kSnapshotsWidth = 595.0f; ///< shared by the snapshots
constexpr std::size_t kLeadColumns = 2;   ///< number and caption
const ImVec2 kHeaderSpacing(6.0f, 4.0f);
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

bool hasLineBreak(const std::string& text)
{
    return text.find('\n') != std::string::npos;
}

bool isTall(const DiffTableRow& row)
{
    const auto isTallValue = [](const CounterValue& value) {
        return value.isString() && hasLineBreak(value.toString(nullptr));
    };
    return hasLineBreak(row.caption) || std::any_of(row.values.begin(), row.values.end(), isTallValue);
}

void applyWidths(const widgets::ColumnsScope& columns, std::size_t snapshots)
{
    columns.setWidth(0, kNumberWidth);
    columns.setWidth(1, kCaptionWidth);
    for (std::size_t column = 0; column < snapshots; ++column)
        columns.setWidth(static_cast<int>(column + kLeadColumns),
                         kSnapshotsWidth / static_cast<float>(snapshots));
}

void drawHeaderCell(std::size_t column, const std::string& caption)
{
    const widgets::IdScope id(column);
    widgets::headerButton(caption);
    ImGui::NextColumn();
}

void drawHeader(const DiffTable& table)
{
    const widgets::StyleVarScope spacing(ImGuiStyleVar_ItemSpacing, kHeaderSpacing);
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
    const widgets::IdScope id(static_cast<int>(itemId(ItemType::DiffTable, 0)));
    const widgets::ColumnsScope columns(static_cast<int>(snapshots + kLeadColumns), "diff_table", kWidth);
    noteDiffShape(table);
    if (std::exchange(diffWidthsPending, false) || columns.isNew())
        applyWidths(columns, snapshots);
    drawHeader(table);
    widgets::forEachVisibleRow(table.m_rows.size(), m_diffUniformRows,
                               [&](std::size_t row) { drawRow(table, row, m_diffText); });
}

/// Looks at what has come and gone since the last draw. Every change of the contents goes along with a change
/// of the number of columns or rows.
void Render::noteDiffShape(const DiffTable& table)
{
    const std::size_t snapshots = table.m_columns.size();
    if (diffColumnCount == snapshots && m_diffRowCount == table.m_rows.size())
        return;
    diffWidthsPending |= diffColumnCount != snapshots;
    diffColumnCount = snapshots;
    m_diffRowCount = table.m_rows.size();
    m_diffUniformRows = std::none_of(table.m_rows.begin(), table.m_rows.end(), isTall);
}

} // namespace statistics
