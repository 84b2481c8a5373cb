// Where a table's columns stand; rows out of view, which cost nothing and miss nothing.
#include "support/table_panel.h"

#include <gtest/gtest.h>
#include <imgui_internal.h>

#include <cmath>
#include <map>
#include <vector>

namespace {

using test::Lines;

class TableLayout : public test::TablePanel {
protected:
    TableLayout()
    {
        table.addColumn(
            "Third", [](std::size_t) { return std::string("third"); }, 0.3f);
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

    /// Of the first two columns; a dragging is as exact as the mouse.
    static void expectWidths(offscreen::Host& screen, float first)
    {
        EXPECT_NEAR(screen.text("3 B").min.x - screen.text("beta").min.x, first, 1.1f);
        EXPECT_NEAR(screen.text("third").min.x - screen.text("3 B").min.x, 255, 1.1f);
    }

    using Widths = std::vector<float>;
    static const ImGuiOldColumns& columnSet()
    {
        return ImGui::FindWindowByName("Statistics")->ColumnsStorage[0];
    }
    static float columnWidth(const ImGuiOldColumns& set, int column)
    {
        const float fraction = set.Columns[column + 1].OffsetNorm - set.Columns[column].OffsetNorm;
        return fraction * (set.OffMaxX - set.OffMinX);
    }

    ImVec2 scrollRange() { return ImGui::FindWindowByName("Statistics")->ScrollMax; }

    ImVec2 panelSize{1000, 600};
};

TEST_F(TableLayout, widthsAreSharesOf850UntilABorderIsDraggedWhateverThePanelDoes)
{
    for (const float first : {340.0f, 400.0f}) {
        for (const float width : {1000.0f, 1200.0f, 700.0f, 64.0f, 32.0f}) {
            showAt(width);
            const ImGuiWindow& window = *ImGui::FindWindowByName("Statistics");
            EXPECT_LE(window.WorkRect.Max.x, window.Pos.x + window.Size.x);
            showAt(1000);
            expectWidths(ui, first);
        }
        ui.moveTo("beta");
        showAt(660);
        ui.wheel(-100, 0);
        EXPECT_NEAR(ui.text("third").min.x - ui.text("3 B").min.x, 255, 1.1f);
        ui.wheel(100, 0);
        ImGui::GetStyle().IndentSpacing = 90;
        rows.resize(200, {"zeta", 3}); // with a scrollbar
        showAt(1000);
        expectWidths(ui, first);
        const test::Text cell = ui.text("3 B");
        const ImVec2 border(cell.min.x - ImGui::GetStyle().ItemSpacing.x, cell.center().y);
        ui.drag(border, ImVec2(border.x + 60, border.y));
    }
    offscreen::Host second;
    second.setScene([] { system().draw(); });
    second.frames(2);
    expectWidths(second, 340);
    ui.frames(2);
    expectWidths(ui, 460);
}

TEST_F(TableLayout, aBorderCanBeDraggedAnywhereAndBack)
{
    const auto borders = [this] {
        return Widths{ui.text("3 B").min.x, ui.text("third").min.x, columnWidth(columnSet(), 2)};
    };
    for (const float far : {65.0f, 250.0f, 1500.0f, -1500.0f}) {
        for (const int column : {1, 2}) {
            showAt(1000);
            const Widths before = borders();
            const ImVec2 from(before[static_cast<std::size_t>(column) - 1] - 8, ui.text("3 B").center().y);
            ui.moveTo(from);
            ui.press();
            ui.moveTo(ImVec2(from.x + far, from.y));
            for (int next = 0; next < 3; ++next)
                EXPECT_GT(columnWidth(columnSet(), next), 5) << far; // ImGui's own least, beside the mouse
            ui.moveTo(from);
            ui.release();
            EXPECT_EQ(borders(), before) << far;
        }
    }
}

TEST_F(TableLayout, thousandsOfColumnsCanBeShownAndDragged)
{
    for (const std::size_t count : {900u, 3000u, 5000u}) {
        table.m_header.resize(count, table.m_header[1]);
        for (const float scale : {2.0f, 0.05f, 1.0f}) {
            ui.setFontScale(scale);
            showAt(1000);
        }
        const test::Text& cell = ui.text("3 B");
        ui.drag(ImVec2(cell.min.x - 8, cell.center().y), ImVec2(cell.min.x + 1500, cell.center().y));
        show();
        EXPECT_TRUE(ui.read().contains("beta")) << count;
    }
}

TEST_F(TableLayout, twoHundredColumnsOfOddWidthsCanBeReachedAndSorted)
{
    table.m_header.resize(200, table.m_header[1]);
    table.m_header[199].caption = "Last";
    std::size_t column = 3;
    for (const float odd : {0.0f, -1.0f, NAN, -INFINITY, 1e-30f, INFINITY, 1e30f})
        table.m_header[column++].widthFraction = odd;
    showAt(32);
    showAt(1000);
    expectWidths(ui, 340);
    ui.moveTo("beta");
    ui.wheel(-1e5f, 0);
    ui.click("Last");
    EXPECT_EQ(table.m_sortColumn, 199u);
    EXPECT_EQ(ui.text("3 B").line, ui.text("Last").line + 1);
}

TEST_F(TableLayout, aRowIsAsWideAsItsColumnsAndThePanelScrollsAsFar)
{
    table.m_keyColumn = 2;
    table.addColumn("Fourth", table.m_header[0].getter, 0.7f);
    rows.resize(1000, {"x", 1});
    rows.push_back({std::string(500, 'y'), 1});
    show();
    const float range = scrollRange().x;
    EXPECT_NEAR(range, 850 * 1.7f + ImGui::GetStyle().IndentSpacing - panelSize.x, 50);
    ui.moveTo("Name");
    ui.wheel(-1e5f, 0);
    ui.click("beta"); // in the fourth column, beyond the layout's width
    EXPECT_EQ(table.m_selectedRow, 1u);
    ui.wheel(0, -1e6f);
    EXPECT_TRUE(ui.read().contains("yyyyy"));
    EXPECT_EQ(scrollRange().x, range) << "texts that happen to be in view don't count";
}

TEST_F(TableLayout, manyRowsDrawOnlyWhatIsInViewEachInItsPlace)
{
    constexpr int kMostVertices = 40 * 15 * 4; // of the lines in view, with some glyphs each
    table.m_keyColumn = 0;
    rows.assign(100000, {"", 1});
    table.m_header[1].getter = [](std::size_t row) { return 99999u - static_cast<unsigned>(row); };
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
    ui.wheel(0, -1e6f);
    ui.click("99999 B");
    EXPECT_EQ(table.m_selectedRow, 99999u);
    const float range = scrollRange().y;
    item.rows[50000][0] = "1\n2"; // behind the refresh's back: nobody looks at it
    ui.frames(2);
    EXPECT_EQ(scrollRange().y, range);
    rows.resize(50000);
    for (const char* name : {"1\n2\n3\n4", "1\n2\n3"}) {
        rows[100].name = name;
        show();
    }
    EXPECT_NEAR(range - scrollRange().y, 50000 * line - 2 * ImGui::GetTextLineHeight(), 1);
    EXPECT_LT(ImGui::GetDrawData()->TotalVtxCount, kMostVertices);
}

/// Against the whole table, drawn in a window as high as it is.
TEST_F(TableLayout, rowsOfDifferentHeightsStandWhereTheyWouldIfAllWereDrawn)
{
    constexpr int kRows = 80;
    const auto extraLines = [](int row) { return row % 7 == 3 ? row % 5 : 0; };
    const auto name = [](int row) { return std::to_string(100 + row); };
    rows.resize(kRows);
    table.m_header[0].getter = [](std::size_t row) { return 100 + static_cast<int>(row); };
    table.m_header[1].getter = [&](std::size_t row) {
        const auto breaks = static_cast<std::size_t>(extraLines(static_cast<int>(row)));
        return "a" + std::string(breaks, '\n') + "b" + (row % 4 == 1 ? "\n" : ""); // which begins no line
    };
    ImGui::GetIO().DisplaySize.y = 6000;
    for (const float scale : {1.0f, 1.5f, 2.0f}) {
        ui.setFontScale(scale);
        const bool whole = scale != 1.5f; // or ImGui rounds each line for itself
        ImGui::GetStyle().ItemSpacing.y = 3 + 2 * scale;
        panelSize.y = 5900;
        showAt(1000);
        const test::Text top = ui.text(name(0));
        const float line = top.max.y - top.min.y;
        std::map<std::string, float> places{{name(0), top.min.y}};
        for (int row = 1; row < kRows; ++row) {
            const auto extra = static_cast<float>(extraLines(row - 1));
            const float height = std::floor(line * (1 + extra) + ImGui::GetStyle().ItemSpacing.y);
            places[name(row)] = ui.text(name(row)).min.y;
            EXPECT_GE(places[name(row)] - places[name(row - 1)], height);
            EXPECT_LE(places[name(row)] - places[name(row - 1)], whole ? height : height + extra / 2);
        }
        panelSize.y = 300;
        showAt(1000);
        ui.moveTo("Name");
        std::size_t seen = 0;
        const ImGuiWindow& window = *ImGui::FindWindowByName("Statistics");
        for (float last = -1; last != window.Scroll.y; ui.wheel(0, -2)) {
            last = window.Scroll.y;
            for (const test::Text& text : ui.read().texts)
                if (places.count(text.text)) {
                    EXPECT_NEAR(text.min.y, places[text.text] - last, whole ? 0.01f : 1.01f);
                    const bool isCut = text.max.y > window.InnerClipRect.Max.y;
                    EXPECT_GE(ui.read().textsOnLineOf(text).size(), isCut ? 1u : 2u);
                    ++seen;
                }
        }
        EXPECT_GT(seen, static_cast<std::size_t>(kRows));
        EXPECT_TRUE(ui.read().contains(name(kRows - 1)));
    }
}

/// The numbers of the layout grow with the font.
TEST_F(TableLayout, atAnotherFontSizeNothingIsCut)
{
    ImGui::GetIO().DisplaySize.x = 2600;
    ui.setFontScale(2);
    ImGui::GetStyle().FramePadding.y = 20;
    showAt(2500);
    EXPECT_NEAR(ui.text("3 B").min.x - ui.text("beta").min.x, 680, 1.1f);
    EXPECT_NEAR(ui.text("third").min.x - ui.text("3 B").min.x, 510, 1.1f);
    const test::Text& header = ui.text("Name");
    const test::Rect button = ui.read().rectsAt(header.center()).back();
    EXPECT_EQ(button.size().y, 40);
    EXPECT_GE(header.min.y, button.min.y);
    EXPECT_LE(header.max.y, button.max.y);
}

} // namespace
