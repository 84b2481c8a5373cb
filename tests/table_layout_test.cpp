// Where a table's columns stand; rows out of view, which cost nothing and miss nothing.
#include "support/table_panel.h"

#include <gtest/gtest.h>
#include <imgui_internal.h>

#include <cmath>

namespace {

using test::Lines;

class TableLayout : public test::TablePanel {
protected:
    TableLayout()
    {
        table.addColumn(
            "Third", [](std::size_t) { return std::string("third"); }, 0.3F);
        ui.setScene([this] {
            ImGui::SetNextWindowSize(panelSize);
            system().draw();
        });
    }

    void showAt(float width)
    {
        panelSize.x = width;
        show();
        ui.frame();
    }

    // Of the first two columns; a dragging is as exact as the mouse.
    static void expectWidths(test::Offscreen& screen, float first)
    {
        EXPECT_NEAR(screen.text("3 B").min.x - screen.text("beta").min.x, first, 1.1F);
        EXPECT_NEAR(screen.text("third").min.x - screen.text("3 B").min.x, 255, 1.1F);
    }

    ImVec2 scrollRange() { return ImGui::FindWindowByName("Statistics")->ScrollMax; }

    ImVec2 panelSize{1000, 600};
};

TEST_F(TableLayout, widthsAreSharesOf850UntilABorderIsDraggedWhateverThePanelDoes)
{
    for (const float first : {340.0F, 400.0F}) {
        for (const float width : {1000.0F, 1200.0F, 700.0F, 64.0F, 32.0F}) {
            showAt(width);
            showAt(1000);
            expectWidths(ui, first);
        }
        ui.moveTo("beta");
        showAt(660);
        ui.wheel(-100, 0);
        EXPECT_NEAR(ui.text("third").min.x - ui.text("3 B").min.x, 255, 1.1F);
        ui.wheel(100, 0);
        ImGui::GetStyle().IndentSpacing = 90;
        rows.resize(200, {"zeta", 3}); // with a scrollbar
        showAt(1000);
        expectWidths(ui, first);
        const test::Text cell = ui.text("3 B");
        const ImVec2 border(cell.min.x - ImGui::GetStyle().ItemSpacing.x, cell.center().y);
        ui.drag(border, ImVec2(border.x + 60, border.y));
    }
    test::Offscreen second;
    second.setScene([this] { system().draw(); });
    second.frames(2);
    expectWidths(second, 340);
    ui.frames(2);
    expectWidths(ui, 460);
}

TEST_F(TableLayout, twoHundredColumnsOfOddWidthsCanBeReachedAndSorted)
{
    table.m_header.resize(200, table.m_header[1]);
    table.m_header[199].caption = "Last";
    std::size_t column = 3;
    for (const float odd : {0.0F, -1.0F, NAN, -INFINITY, 1e-30F, INFINITY, 1e30F})
        table.m_header[column++].widthFraction = odd;
    showAt(32);
    showAt(1000);
    expectWidths(ui, 340);
    ui.moveTo("beta");
    ui.wheel(-1e5F, 0);
    ui.click("Last");
    EXPECT_EQ(table.m_sortColumn, 199U);
    EXPECT_EQ(ui.text("3 B").line, ui.text("Last").line + 1);
}

TEST_F(TableLayout, aRowIsAsWideAsItsColumnsAndThePanelScrollsAsFar)
{
    table.m_keyColumn = 2;
    table.addColumn("Fourth", table.m_header[0].getter, 0.7F);
    rows.resize(1000, {"x", 1});
    rows.push_back({std::string(500, 'y'), 1});
    show();
    const float range = scrollRange().x;
    EXPECT_NEAR(range, 850 * 1.7F + ImGui::GetStyle().IndentSpacing - panelSize.x, 50);
    ui.moveTo("Name");
    ui.wheel(-1e5F, 0);
    ui.click("beta"); // in the fourth column, beyond the layout's width
    EXPECT_EQ(table.m_selectedRow, 1U);
    ui.wheel(0, -1e6F);
    EXPECT_TRUE(ui.read().contains("yyyyy"));
    EXPECT_EQ(scrollRange().x, range) << "texts that happen to be in view don't count";
}

TEST_F(TableLayout, manyRowsDrawOnlyWhatIsInViewEachInItsPlace)
{
    constexpr int kMostVertices = 40 * 15 * 4; // of the lines in view, with some glyphs each
    table.m_keyColumn = 0;
    rows.assign(100000, {"", 1});
    table.m_header[1].getter = [](std::size_t row) { return 99999U - static_cast<unsigned>(row); };
    table.sort(1, true);
    show();
    const float line = ImGui::GetTextLineHeightWithSpacing();
    const float first = ui.text("0 B").min.y;
    float place = 0; // of the next row in the table
    ui.moveTo("Name");
    for (float top = 0; top < 325 * 60; top += 325) { // five steps of the wheel, of five lines each
        while (const test::Text* row = ui.read().find(std::to_string(std::lround(place / line)) + " B")) {
            EXPECT_EQ(row->min.y, first + place - top);
            place += line;
        }
        EXPECT_LT(ImGui::GetDrawData()->TotalVtxCount, kMostVertices);
        ui.wheel(0, -5);
    }
    EXPECT_GT(place, 325 * 60);
    ui.wheel(0, -1e6F);
    ui.click("99999 B");
    EXPECT_EQ(table.m_selectedRow, 99999U);
    const float range = scrollRange().y;
    item.rows[50000][0] = "1\n2"; // behind the refresh's back: nobody looks at it
    ui.frames(2);
    EXPECT_EQ(scrollRange().y, range);
    rows.resize(50000);
    rows[100].name = "1\n2\n3";
    show();
    EXPECT_NEAR(range - scrollRange().y, 50000 * line - 2 * ImGui::GetTextLineHeight(), 1);
}

} // namespace
