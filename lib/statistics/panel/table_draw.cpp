// Tables on the panel: a row of header buttons that sort, then the cells as they were read at the last
// refresh. Functors of the host run only where nothing of the table's own drawing is open, but for the
// refresh behind a click on a header.

#include "columns.h"
#include "render.h"

#include "call_scope.h"
#include "item_scope.h"
#include "layout.h"
#include "visible_rows.h"
#include "widgets.h"

#include <imgui.h>

#include <algorithm>
#include <utility>

namespace statistics {

namespace {

constexpr const char* kPopup = "tablePopup";

/// What the user did to the rows in this frame, by mouse or by the keys that stand for it, for which the
/// selection has moved already: view rows.
struct RowEvents {
    const bool byKeys; ///< keys count, too
    std::size_t doubleClicked = NO_INDEX;
    std::size_t rightClicked = NO_INDEX;
};

const std::string& cellText(const std::vector<std::string>& row, std::size_t column)
{
    static const std::string missing;
    return column < row.size() ? row[column] : missing;
}

/// Draws one cell. True if the mouse is over it.
bool drawCell(Table& table, std::size_t viewRow, std::size_t column, const std::string& text, bool selected,
              widgets::ERowKey& key)
{
    if (column != table.m_keyColumn) {
        widgets::text(text);
        return ImGui::IsItemHovered(0);
    }
    if (widgets::rowSelectable(text, selected))
        table.m_selectedRow = viewRow;
    key = widgets::pressedRowKey();
    return ImGui::IsItemHovered(0);
}

/// The row's own events come once, although the mouse is over the cell and over the row-wide selectable.
void drawRow(Table& table, const std::vector<std::string>& row, std::size_t viewRow, std::size_t columns,
             RowEvents& events)
{
    const widgets::IdScope id(viewRow);
    const bool selected = table.m_selectedRow == viewRow;
    bool hovered = false;
    auto pressed = widgets::ERowKey::None;
    for (std::size_t column = 0; column < columns; ++column) {
        hovered |= drawCell(table, viewRow, column, cellText(row, column), selected, pressed);
        ImGui::NextColumn();
    }
    const widgets::ERowKey key = events.byKeys ? pressed : widgets::ERowKey::None;
    if ((hovered && ImGui::IsMouseDoubleClicked(0)) || key == widgets::ERowKey::Act)
        events.doubleClicked = table.m_selectedRow = viewRow;
    const bool wantsMenu = (hovered && ImGui::IsMouseClicked(1, false)) || key == widgets::ERowKey::Menu;
    if (wantsMenu && !table.m_rowActions.empty())
        events.rightClicked = table.m_selectedRow = viewRow;
}

/// Draws the rows that are in view.
RowEvents drawRows(const ItemTable& item, std::size_t columns, bool byKeys)
{
    RowEvents events{byKeys};
    widgets::forEachVisibleRow(item.rows.size(), item.lines, [&](std::size_t viewRow) {
        drawRow(*item.table, item.rows[viewRow], viewRow, columns, events);
    });
    return events;
}

void openMenu(ItemTable& item, std::size_t viewRow)
{
    const Table& table = *item.table;
    item.menuRow = viewRow < table.m_order.size() ? table.m_order[viewRow] : NO_INDEX;
    ImGui::OpenPopup(kPopup);
}

/// The entry of the context menu that was clicked.
std::size_t clickedEntry(const Table& table)
{
    std::size_t clicked = NO_INDEX;
    for (std::size_t entry = 0; entry < table.m_rowActions.size(); ++entry) {
        const widgets::IdScope id(entry);
        if (widgets::menuItem(table.m_rowActions[entry].caption))
            clicked = entry;
    }
    return clicked;
}

/// Where the row stands now that the context menu was opened on; `NO_INDEX` if it isn't shown any more.
std::size_t menuRow(const ItemTable& item)
{
    const std::vector<std::size_t>& order = item.table->m_order;
    const auto found = std::find(order.begin(), order.end(), item.menuRow);
    const auto row = static_cast<std::size_t>(found - order.begin());
    return row < order.size() && row < item.rows.size() ? row : NO_INDEX;
}

void applyWidths(const widgets::ColumnsScope& columns, const Table& table)
{
    for (std::size_t column = 0; column < table.m_header.size(); ++column)
        columns.setWidth(static_cast<int>(column), table.m_header[column].widthFraction * layout::kWidth);
}

} // namespace

bool Render::drawTable(unsigned slot)
{
    Table& table = *tables[slot].table;
    if (table.m_header.empty())
        return false;
    const widgets::IdScope id = itemScope(ItemType::Table, slot);
    const std::size_t doubleClicked = drawTableColumns(slot, table);
    if (doubleClicked != NO_INDEX)
        table.runDefaultAction(doubleClicked);
    if (tableItem(slot, table))
        drawTableMenu(slot, table);
    return false;
}

/// Gives back the view row of a double click.
std::size_t Render::drawTableColumns(unsigned slot, Table& table)
{
    const std::size_t count = table.m_header.size();
    const widgets::ColumnsScope columns(static_cast<int>(count), tables[slot].name.c_str(), layout::kWidth);
    if (std::exchange(tables[slot].widthsPending, false) || columns.isNew())
        applyWidths(columns, table);
    drawTableHeader(slot, table, count);
    // The getters behind a header click may have removed the table.
    ItemTable* item = tableItem(slot, table);
    if (!item)
        return NO_INDEX;
    const RowEvents events = drawRows(*item, count, options.rowKeys);
    if (events.rightClicked != NO_INDEX)
        openMenu(*item, events.rightClicked);
    return events.doubleClicked < item->rows.size() ? events.doubleClicked : NO_INDEX;
}

namespace {

widgets::ESortArrow sortArrow(const Table& table, std::size_t column)
{
    if (column != table.m_sortColumn)
        return widgets::ESortArrow::None;
    return table.m_sortAscending ? widgets::ESortArrow::Up : widgets::ESortArrow::Down;
}

} // namespace

void Render::drawTableHeader(unsigned slot, Table& table, std::size_t columns)
{
    const widgets::HeaderScope spacing;
    for (std::size_t column = 0; column < columns; ++column) {
        const widgets::IdScope id(column);
        const widgets::ESortArrow arrow =
            options.sortArrows ? sortArrow(table, column) : widgets::ESortArrow::None;
        // Getters behind a click on an earlier column may have changed the columns.
        if (column < table.m_header.size() && widgets::headerButton(table.m_header[column].caption, arrow))
            sortTable(slot, table, column);
        ImGui::NextColumn();
    }
}

/// A click on a header: every click reverses the direction, on whichever column.
void Render::sortTable(unsigned slot, Table& table, std::size_t column)
{
    table.sort(column, !table.m_sortAscending);
    if (tableItem(slot, table))
        updateTable(slot);
}

/// The row may have moved since the menu was opened: an entry acts on it where it stands now, and the
/// selection goes there.
void Render::drawTableMenu(unsigned slot, Table& table)
{
    // A menu that is open all the same is that of a table that stood in the slot before.
    if (tables[slot].menuRow == NO_INDEX)
        return;
    std::size_t entry = NO_INDEX;
    if (const widgets::PopupScope menu(kPopup); menu.open)
        entry = clickedEntry(table);
    const std::size_t row = entry == NO_INDEX ? NO_INDEX : menuRow(tables[slot]);
    if (row == NO_INDEX)
        return;
    table.m_selectedRow = row;
    table.runAction(entry, row);
}

} // namespace statistics
