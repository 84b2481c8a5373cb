// A table on the panel, as its user meets it: headers, rows, the menu.
#include "support/table_panel.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <functional>
#include <utility>

namespace {

using statistics::NO_INDEX;
using test::Indices;
using test::Lines;

class TableOnPanel : public test::TablePanel {
protected:
    /// The sizes of the rows from top to bottom, as digits.
    std::string order()
    {
        std::string digits;
        for (const test::Text& text : ui.read().texts)
            digits += text.text.find(" B") == 1 ? text.text.substr(0, 1) : "";
        return digits;
    }

    /// The cells that are drawn as selected, with the mouse out of the way.
    Lines selected()
    {
        ui.moveTo(ImVec2(1, 1));
        Lines result;
        const auto highlights = ui.read().rectsOf(ImGui::GetColorU32(ImGuiCol_Header));
        for (const test::Text& text : ui.read().texts)
            if (!highlights.empty() && highlights[0].contains(text.center()))
                result.push_back(text.text);
        EXPECT_LE(highlights.size(), 1u);
        return result;
    }

    Indices noted; // data rows that actions got
    const std::function<void(std::size_t)> note = [this](std::size_t row) { noted.push_back(row); };
};

TEST_F(TableOnPanel, comesAscendingAndEachHeaderClickTurnsTheDirection)
{
    EXPECT_EQ(shownLines(), (Lines{"Name | Size", "alpha | 2 B", "beta | 3 B", "gamma | 1 B"}));
    using Click = std::pair<const char*, const char*>;
    for (const auto& [header, sizes] :
         {Click("Size", "321"), Click("Name", "231"), Click("Name", "132"), Click("Size", "123")}) {
        ui.click(header); // without another update
        EXPECT_EQ(order(), sizes) << header;
    }
    struct Clicked {};
    schedule.start(0, 10);
    rows[0].size = 9;
    reads = 0;
    ui.setScene([this] {
        system().draw();
        if (reads > 0)
            throw Clicked(); // so that this frame is the last
    });
    EXPECT_THROW(ui.click("Size"), Clicked);
    EXPECT_EQ(order(), "921") << "read anew for the same frame";
    EXPECT_EQ(schedule.timer(0), FLT_MAX);
}

TEST_F(TableOnPanel, showsTheLastRefreshAndCallsNothingOfTheHost)
{
    show();
    rows[0] = {"zeta", 9};
    reads = counts = 0;
    system().update(1, false);
    ui.click("beta");
    EXPECT_EQ(order(), "231");
    EXPECT_EQ(reads + counts, 0u);
    EXPECT_EQ(shownLines()[2], "zeta | 9 B") << "a new value in its old place";
}

TEST_F(TableOnPanel, onlyAKeyColumnShowsTheSelection)
{
    statistics::setKeyColumn(id, 7); // no such column
    show();
    ui.click("beta");
    EXPECT_EQ(table.m_selectedRow, NO_INDEX);
    ui.doubleClick("gamma");
    EXPECT_EQ(table.m_selectedRow, 2u);
    EXPECT_EQ(selected(), Lines{});
    statistics::setKeyColumn(id, 0);
    ui.frame();
    EXPECT_EQ(selected(), (Lines{"gamma", "1 B"}));
    ui.click("3 B"); // the whole row takes the click
    EXPECT_EQ(selected(), (Lines{"beta", "3 B"}));
    rows[0] = {"zzz", 9};
    ui.click("Name");
    EXPECT_EQ(selected(), (Lines{"gamma", "1 B"})) << "a place in the view";
    ui.setScene([this] {
        system().draw();
        if (table.m_selectedRow == 0)
            throw table.m_selectedRow; // so that this frame is the last
    });
    EXPECT_THROW(ui.click("zzz"), std::size_t);
    EXPECT_TRUE(ui.read().rectsOf(ImGui::GetColorU32(ImGuiCol_Header)).empty()) << "not a frame later";
    table.m_selectedRow = 1;
    rows.resize(1);
    show();
    EXPECT_EQ(selected(), Lines{});
    EXPECT_EQ(table.m_selectedRow, 1u);
}

TEST_F(TableOnPanel, aDoubleClickActsOnceOnTheDataRowAndWithoutEntriesThereIsNoMenu)
{
    for (const std::size_t key : {NO_INDEX, std::size_t{0}, std::size_t{1}}) {
        statistics::setKeyColumn(id, key);
        statistics::setDefaultAction(id, note);
        show();
        for (const char* cell : {"alpha", "2 B", "beta"})
            ui.doubleClick(cell);
        EXPECT_EQ(std::exchange(noted, {}), (Indices{2, 2, 0}));
        ui.rightClick("gamma");
        EXPECT_EQ(lines(), shownLines());
        EXPECT_EQ(table.m_selectedRow, 1u);
    }
}

TEST_F(TableOnPanel, aMenuOffersTheActionsInOrderAndActsOnTheClickedRow)
{
    statistics::addRowAction(id, "100 %##", note);
    statistics::addClipboardAction(id);
    statistics::addRowAction(id, "No\nthing", {});
    statistics::addRowAction(id, "100 %##", note);
    statistics::addClipboardAction(id);
    const Lines entries = {"100 %##", "Copy to Clipboard", "No", "thing", "100 %##", "Copy to Clipboard"};
    table.sort(1, false);
    const Lines closed = shownLines();
    for (std::size_t entry = 0; entry < entries.size(); ++entry) {
        ui.rightClick("beta"); // on top of the view, the host's first row
        const Lines open = lines();
        EXPECT_EQ(Lines(open.begin() + 4, open.end()), entries);
        ui.click(entries[entry], entry / 4);
        EXPECT_EQ(lines(), closed);
    }
    EXPECT_EQ(noted, (Indices{0, 0}));
    EXPECT_EQ(ui.clipboard(), "beta\t3 B");
    ui.rightClick("1 B");
    rows[1] = {"g\tamma", 10};
    ui.click("Copy to Clipboard");
    EXPECT_EQ(ui.clipboard(), "g\tamma\t10 B") << "the values of this moment";
}

TEST_F(TableOnPanel, anEntryActsOnTheDataRowThatTheMenuWasOpenedOnWhereverItStandsByThen)
{
    const test::HostRow top{"aaa", 0}, last{"zzz", 0};
    const struct {
        const char* meanwhile;
        std::function<void()> happens;
        std::size_t place; // of "beta" by then, if its data are still there
    } cases[] = {
        {"new values", [this] { rows[0].name = "zeta"; }, 1},
        {"a row at the end", [&] { rows.push_back(last); }, 1},
        {"a row on top", [&] { rows.push_back(top); }, 2},
        {"another order", [this] { table.sort(0, false); }, 1},
        {"another column", [this] { table.sort(1, false); }, 0},
        {"fewer rows", [this] { rows.resize(1); }, 0},
        {"no rows", [this] { rows.clear(); }, NO_INDEX},
    };
    statistics::addRowAction(id, "Note", note);
    for (const auto& [meanwhile, happens, place] : cases) {
        rows = {{"beta", 3}, {"gamma", 1}, {"alpha", 2}};
        table.sort(0, true);
        table.m_selectedRow = NO_INDEX;
        show();
        ui.rightClick("beta");
        EXPECT_EQ(table.m_selectedRow, 1u);
        happens();
        table.m_selectedRow = 3; // moved by the host
        show();
        ui.click("Note");
        EXPECT_EQ(std::exchange(noted, {}), place == NO_INDEX ? Indices{} : Indices{0}) << meanwhile;
        EXPECT_EQ(table.m_selectedRow, place == NO_INDEX ? 3 : place) << meanwhile;
    }
    rows = {{"beta", 3}};
    show();
    ui.rightClick("beta");
    system().removeItem(id);
    statistics::addRowAction(addTable("Other", rows), "Not for this row", note);
    EXPECT_EQ(shownLines(), (Lines{"Name | Size", "beta | 3 B"}));
}

TEST_F(TableOnPanel, twoTablesUnderOneParentAnswerEachForItself)
{
    test::HostRows others = {{"uno", 5}, {"dos", 6}};
    const unsigned other = addTable("Others", others);
    statistics::addRowAction(id, "Mine", note);
    statistics::addRowAction(other, "Theirs", [this](std::size_t row) { noted.push_back(100 + row); });
    show();
    ui.click("Name", 1);
    ui.click("Size");
    EXPECT_EQ(order(), "32156");
    for (const auto& [row, entry] : {std::pair("beta", "Mine"), std::pair("dos", "Theirs")}) {
        ui.rightClick(row);
        EXPECT_NE(ui.read().contains("Mine"), ui.read().contains("Theirs"));
        ui.click(entry);
    }
    EXPECT_EQ(noted, (Indices{0, 101}));
}

TEST_F(TableOnPanel, textsAreShownWholeAndThoseThatLookAlikeAnswerEachForItself)
{
    table.m_header[0].caption = table.m_header[1].caption = "%s##id";
    rows = {{"a##b###c", 1}, {"a##b###c", 2}, {"", 3}, {"", 4}, {"two\nlines 100 %d", 5}, {"##", 6}};
    const Lines whole = {"%s##id | %s##id", "## | 6 B",      "two | 5 B", "lines 100 %d", "4 B", "3 B",
                         "a##b###c | 2 B",  "a##b###c | 1 B"};
    for (const std::size_t key : {NO_INDEX, std::size_t{0}}) {
        table.m_sortAscending = true;
        statistics::setKeyColumn(id, key);
        show();
        ui.click("%s##id", 1);
        EXPECT_EQ(lines(), whole);
    }
    ui.click("a##b###c", 1);
    EXPECT_EQ(selected(), (Lines{"a##b###c", "1 B"}));
    ui.click("lines 100 %d");
    EXPECT_EQ(table.m_selectedRow, 1u);
    const float left = ui.text("##").min.x;
    for (const char* size : {"4 B", "3 B"}) {
        ui.click(ImVec2(left, ui.text(size).center().y)); // in its empty key cell
        EXPECT_EQ(selected(), Lines{size});
    }
}

TEST_F(TableOnPanel, columnsMayComeLateAndGo)
{
    const auto linesNow = [this] {
        ui.frames(2);
        return lines();
    };
    table.m_keyColumn = 0;
    show();
    const auto columns = std::exchange(table.m_header, {});
    EXPECT_EQ(shownLines(), Lines{});
    table.m_header = columns;
    EXPECT_EQ(linesNow(), Lines{"Name | Size"}) << "that refresh read no cells";
    EXPECT_EQ(shownLines()[1], "alpha | 2 B");
    table.m_header.push_back(columns[1]);
    EXPECT_EQ(linesNow()[1], "alpha | 2 B");
    EXPECT_EQ(shownLines()[1], "alpha | 2 B | 2 B");
    table.m_header.resize(1);
    EXPECT_EQ(linesNow()[1], "alpha");
    rows.clear();
    EXPECT_EQ(shownLines(), Lines{"Name"});
}

} // namespace
