// The model of a table: order, cells, sums and actions.
#include "support/table_panel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <numeric>
#include <random>

namespace {

using statistics::CounterValue;
using statistics::NO_INDEX;
using statistics::Table;
using test::Indices;
using test::Lines;
using TableModel = test::TablePanel;

TEST_F(TableModel, rowsMoveOnlyWhenSortedAnewOrWhenTheirNumberChanges)
{
    const auto order = [&] {
        table.getSortedCell(0, 0);
        return table.m_order;
    };
    EXPECT_EQ(order(), (Indices{2, 0, 1}));
    rows[0].name = "zeta";
    EXPECT_EQ(order(), (Indices{2, 0, 1}));
    rows.push_back({"delta", 3});
    EXPECT_EQ(order(), (Indices{2, 3, 1, 0}));
    table.sort(1, false);
    EXPECT_EQ(order(), (Indices{0, 3, 2, 1})) << "equal rows in data order";
    rows.erase(rows.begin());
    EXPECT_EQ(order(), (Indices{2, 1, 0}));
    EXPECT_EQ(table.getSortedCell(0, 0), "delta");
    table.m_order[1] = 3; // by a host
    EXPECT_EQ(table.dataRow(1), NO_INDEX);
    EXPECT_EQ(statistics::getTableCell(id, 0, 1), "1 B") << "a cell by its data row";
    rows = {{"c", 1}, {"a", 1}, {"b", 1}};
    for (const bool ascending : {true, false}) {
        table.sort(1, ascending);
        EXPECT_EQ(table.m_order, (Indices{0, 1, 2})) << "equal rows keep data order";
    }
}

TEST_F(TableModel, aRefreshReadsEachCellOnceAndTheRowCountOncePerCell)
{
    sample();
    EXPECT_EQ(counts, 1u + 2 * 2 + 6) << "its own, one for each cell, two for each comparison of the sort";
    for (const std::size_t cells : {6u, 0u}) {
        reads = counts = 0;
        system().updateNode(id);
        EXPECT_EQ(reads, cells);
        EXPECT_EQ(counts, 1 + cells);
        rows.clear();
    }
    EXPECT_EQ(table.m_order.size(), 3u) << "no cell is read, so nothing sorts";
}

TEST(TableSort, valuesThatDontOrderLoseNoRow)
{
    const CounterValue nan = std::numeric_limits<float>::quiet_NaN();
    const CounterValue mixed[] = {1, 2u, nan, 1.5f, std::string("2"), {}, -1};
    std::mt19937 random(11);
    const std::pair<const char*, std::function<CounterValue(std::size_t)>> cases[] = {
        {"NaN", [&](auto row) { return row % 3 ? static_cast<unsigned>(row * 7 % 97) : nan; }},
        {"mixed kinds", [&](auto row) { return mixed[row * 5 % std::size(mixed)]; }},
        {"another answer each time", [&](auto) { return mixed[random() % std::size(mixed)]; }},
    };
    Indices all(5000);
    std::iota(all.begin(), all.end(), 0);
    for (const auto& [values, read] : cases) {
        Table table([&] { return all.size(); });
        table.addColumn("Value", read, 1);
        for (const bool ascending : {true, false}) {
            table.sort(0, ascending);
            std::sort(table.m_order.begin(), table.m_order.end());
            EXPECT_EQ(table.m_order, all) << values;
        }
    }
}

TEST(TableRows, areAsHighAsTheHighestOfTheirTextsUntilARowAboveComesAgain)
{
    statistics::RowLines lines;
    for (const auto& [row, text] :
         {std::pair(5, "these\nare\nthree"), std::pair(2, "two\nlines\n"), std::pair(2, "these\nare\nthree"),
          std::pair(2, "two\nlines"), std::pair(5, "two\nlines"), std::pair(7, "one\n")})
        lines.add(static_cast<std::size_t>(row), text);
    Indices extra;
    for (const std::size_t row : {2u, 3u, 5u, 6u, 9u})
        extra.push_back(lines.extraBefore(row));
    EXPECT_EQ(extra, (Indices{0, 2, 2, 3, 3}));
}

TEST_F(TableModel, aColumnOutOfRangeIsReportedByTheSortAndTheSumAndHasNoCells)
{
    test::Reports reports;
    EXPECT_EQ(table.sumColumn(1), 6);
    EXPECT_EQ(counts, 1u);
    table.sort(2, false);
    EXPECT_TRUE(table.sumColumn(2).isEmpty());
    EXPECT_EQ(reports.take(), Lines(2, "column < m_header.size()"));
    EXPECT_EQ(table.m_sortColumn, 0u);
    EXPECT_TRUE(table.m_sortAscending);
    EXPECT_EQ(table.getSortedCell(2, 0) + table.getSortedCell(0, 3) + table.getCell(NO_INDEX, 0), "");
    rows.clear();
    EXPECT_TRUE(table.sumColumn(1).isEmpty());
}

TEST_F(TableModel, theTextOfARowIsItsCellsOfThisMomentBetweenTabs)
{
    sample();
    rows[0] = {"", 30};
    EXPECT_EQ(table.rowText(0), "\t30 B");
    table.addColumn(
        "Empty", [](std::size_t) { return CounterValue(); }, 0.1f, "%d B");
    table.addColumn(
        "Text", [](std::size_t) { return std::string("100 %d\t\""); }, 0.1f, "%s%n");
    EXPECT_EQ(table.rowText(2), "alpha\t2 B\t---\t100 %d\t\"");
    table.m_header.clear();
    EXPECT_EQ(table.rowText(0), "");
    table.addColumn("None", {}, 0.1f);
    EXPECT_THROW(table.rowText(0), std::bad_function_call);
}

TEST_F(TableModel, actionsGetTheDataRowAndRunOnNoRowThatIsNotThere)
{
    Indices got;
    statistics::setDefaultAction(id, [&](std::size_t row) { got.push_back(row); });
    statistics::addRowAction(id, "Note", table.m_defaultAction);
    table.runDefaultAction(0); // before the first refresh
    sample();
    for (const std::size_t view : {std::size_t{0}, std::size_t{3}, NO_INDEX}) {
        table.runDefaultAction(view);
        table.runAction(0, view);
        table.runAction(1, view);
    }
    EXPECT_EQ(got, (Indices{2, 2}));
}

TEST_F(TableModel, aNodeWithoutATableIsHarmlessAndOneThatIsNotThereReported)
{
    const unsigned label = statistics::label("Label", 0);
    for (const std::size_t reported : {0u, 5u}) {
        test::Reports reports;
        statistics::setKeyColumn(label, 1);
        statistics::addRowAction(label, "Action", {});
        statistics::setDefaultAction(label, {});
        statistics::addClipboardAction(label);
        EXPECT_EQ(statistics::getTableCell(label, 0, 0), "");
        EXPECT_EQ(reports.take().size(), reported);
        system().removeItem(label);
    }
}

} // namespace
