// The comparison: which rows and columns there are, which rows are flagged, and how it is drawn.
#include "support/panel.h"
#include "support/test_access.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace {

using statistics::CounterValue;
using statistics::DiffTable;
using Entries = DiffTable::Entries;

constexpr ImU32 kFlagged = IM_COL32(255, 153, 0, 255);

/// Titles, then "; caption: values" by row, each value behind the letter of its kind, a "!" in flagged rows.
std::string shape(const DiffTable& table)
{
    std::string text;
    for (const statistics::DiffTableColumn& column : table.m_columns)
        text += column.title + std::to_string(column.snapshot) + " ";
    for (const statistics::DiffTableRow& row : table.m_rows) {
        text += "; " + row.caption + (row.changed ? "!" : ":");
        for (const CounterValue& v : row.values) {
            text += v.isInt() ? " i" : v.isUInt() ? " u" : v.isDecimal() ? " d" : v.isString() ? " s" : " ";
            text += v.toString(v.isDecimal() ? "%g" : nullptr);
        }
    }
    return text;
}

TEST(ComparisonModel, flagsTheRowsWhoseValuesAreNotAllEqual)
{
    const CounterValue none;
    const CounterValue seven = std::string("7");
    DiffTable table;
    table.addSnapshot(
        "A", 0, {{"a", 7}, {"b", 7.0f}, {"c", none}, {"d", NAN}, {"", 5}, {"e", 0}, {"f", 1}, {"f", 2}});
    EXPECT_EQ(shape(table), "A0 ; a: i7; b: d7; c: ---; d: dnan; : i5; e: i0; f: i2");
    table.addSnapshot(
        "B", 1, {{"g", 1}, {"f", 2u}, {"d", NAN}, {"c", none}, {"b", seven}, {"a", seven}, {"h", 0.0f}});
    EXPECT_EQ(shape(table),
              "A0 B1 ; a: i7 s7; b! d7 s7; c: --- ---; d! dnan dnan; ! i5 i0; e: i0 i0; f: i2 u2; "
              "g! i0 i1; h: i0 d0");
}

TEST(ComparisonModel, aToleranceIsForNumbersAloneRelativeToTheLarger)
{
    const float infinity = std::numeric_limits<float>::infinity();
    using Pairs = std::vector<std::pair<CounterValue, CounterValue>>;
    const std::pair<bool, Pairs> cases[] = {
        {false, {{100, 95.5f}, {-100, -95.5f}, {4294967295u, 4200000000u}, {NAN, NAN}, {infinity, infinity}}},
        {true, {{95, 100u}, {-1, 1}, {0, 1e-30f}, {2147483647, -2147483647 - 1}, {CounterValue(), 0}}},
        {true, {{NAN, 1}, {infinity, -infinity}, {infinity, 3e38f}, {100, "95.5"}, {"north", "south"}}},
    };
    for (const auto& [flagged, pairs] : cases) {
        for (const auto& [first, second] : pairs) {
            DiffTable table;
            table.setTolerance(0.05f - 1e-6f);
            table.addSnapshot("A", 0, {{"x", first}});
            table.addSnapshot("B", 1, {{"x", second}});
            EXPECT_EQ(table.m_rows[0].changed, flagged) << shape(table);
            table.addSnapshot("C", 2, {{"x", first}});
            table.removeColumn(0);
            EXPECT_EQ(table.m_rows[0].changed, flagged) << shape(table);
        }
    }
}

TEST(ComparisonModel, columnsLeaveAndComeBackAtTheRightEnd)
{
    DiffTable table;
    table.m_selectedRow = 1;
    table.addSnapshot("A", 4, {{"x", 1}, {"only A", 5}});
    table.addSnapshot("B", 2, {{"x", 2}, {"y", 3}});
    table.addSnapshot("C", 9, {{"x", 2}, {"y", 3}});
    EXPECT_EQ(table.addColumn("another title", 2), 1u);
    EXPECT_EQ(table.addRow("y"), 2u);
    EXPECT_EQ(shape(table), "A4 B2 C9 ; x! i1 i2 i2; only A! i5 i0 i0; y! i0 i3 i3");
    table.removeColumn(3); // there is none
    table.removeColumn(4);
    EXPECT_EQ(shape(table), "B2 C9 ; x: i2 i2; only A: i0 i0; y: i3 i3");
    table.addSnapshot("A", 4, {{"only A", 5}});
    EXPECT_EQ(shape(table), "B2 C9 A4 ; x! i2 i2 i0; only A! i0 i0 i5; y! i3 i3 i0");
    for (const std::size_t snapshot : {9u, 2u, 4u})
        table.removeColumn(snapshot);
    EXPECT_EQ(shape(table), "");
    table.addSnapshot("B", 2, {{"y", 3}, {"x", 2}});
    EXPECT_EQ(shape(table), "B2 ; y: i3; x: i2");
    table.addSnapshot("B again", 2, {{"x", 4}, {"new", 5}});
    EXPECT_EQ(shape(table), "B2 ; y: i3; x: i4; new: i5");
    table.clear();
    EXPECT_EQ(shape(table), "");
    EXPECT_EQ(table.m_selectedRow, 1u); // a selection outlives its row
    const CounterValue negativeZero = std::string("-0.000");
    table.addSnapshot("A", 0, {{"x", 0.0f}});
    table.addSnapshot("B", 1, {{"x", -0.0f}});
    table.addSnapshot("C", 2, {{"x", negativeZero}});
    table.setValue(table.addRow("y"), 2, 1);
    EXPECT_EQ(shape(table), "A0 B1 C2 ; x! d0 d-0 s-0.000; y! i0 i0 i1");
    table.removeColumn(0);
    EXPECT_EQ(shape(table), "B1 C2 ; x: d-0 s-0.000; y! i0 i1");
}

TEST(ComparisonModel, findsTheRowsOfACopyThatAHostHasRearranged)
{
    DiffTable table;
    table.addSnapshot("A", 0, {{"x", 1}, {"y", 2}, {"z", 3}});
    table.addRow("x");
    DiffTable copy = table;
    std::swap(copy.m_rows[0], copy.m_rows[2]);
    EXPECT_EQ(copy.addRow("x"), 2u);
    EXPECT_EQ(table.addRow("x"), 0u);
    copy.m_rows.erase(copy.m_rows.begin());
    EXPECT_EQ(copy.addRow("z"), 2u);
    copy.m_rows.push_back({"by hand", {7}});
    EXPECT_EQ(copy.addRow("by hand"), 3u);
    EXPECT_EQ(shape(copy), "A0 ; y: i2; x: i1; z: i0; by hand: i7");
}

class Comparison : public test::Panel {
protected:
    Comparison()
    {
        EXPECT_TRUE(system().createStatsAnalyzer("a root that doesn't exist", "bench", {}));
        show();
        ui.click("Diff");
    }

    /// Without files: what is drawn comes from the records in memory.
    std::size_t tick(const Entries& values)
    {
        const std::size_t index = store().snapshots.size();
        store().snapshots.push_back({index, "s" + std::to_string(index), "bench", values});
        store().addToDiff(index);
        ui.frames(2);
        return index;
    }
    void untick(std::size_t snapshot)
    {
        store().removeFromDiff(snapshot);
        ui.frames(2);
    }
    /// Of the header's buttons, in half pixels.
    std::vector<long> headerWidths()
    {
        std::vector<long> widths;
        for (const test::Text& title : ui.read().textsOnLineOf(ui.text("Caption")))
            widths.push_back(std::lround(2 * ui.read().rectsAt(title.center()).back().size().x));
        return widths;
    }
    void scrollToEnd()
    {
        ui.moveTo(ui.window("Statistics").center());
        ui.wheel(0, -100000);
        ui.frames(2);
    }
    static statistics::StatisticsAnalyzer& store() { return *statistics::TestAccess::data().statsAnalyzer; }
    static std::size_t selected() { return system().getDiffTable().m_selectedRow; }
};

Entries numbered(const std::string& caption, int count, const CounterValue& value)
{
    Entries values;
    for (int i = 1; i <= count; ++i)
        values.emplace_back(caption + std::to_string(i), value);
    return values;
}

TEST_F(Comparison, rowsAreNumberedAndThoseThatDifferAreFlagged)
{
    const CounterValue odd = std::string("%s##");
    tick({{"same", 7}, {"differs", 1000000.0f}, {"100% ##whole", 0.5f}, {"text", odd}});
    EXPECT_NE(ui.text("1e+06").color, kFlagged); // nothing to differ from
    tick({{"same", 7.0f}, {"differs", 2u}, {"100% ##whole", 0.5f}, {"text", odd}});
    std::vector<std::string> lines = ui.read().lines();
    lines.erase(lines.begin(), lines.end() - 4);
    EXPECT_EQ(lines, (std::vector<std::string>{"1 | same | 7 | 7", "2 | differs | 1e+06 | 2",
                                               "3 | 100% ##whole | 0.5 | 0.5", "4 | text | %s## | %s##"}));
    for (const test::Text& text : ui.read().texts)
        EXPECT_EQ(text.color == kFlagged, text.line == ui.text("differs").line) << text.text;
    EXPECT_NE(ImGui::GetColorU32(ImGuiCol_Text), kFlagged);
}

TEST_F(Comparison, aClickAnywhereInARowSelectsIt)
{
    tick(numbered("c", 4, 0.25f));
    EXPECT_EQ(selected(), statistics::NO_INDEX);
    ui.click("2");
    EXPECT_EQ(selected(), 1u);
    ui.click("0.25", 2);
    ui.click("N"); // the comparison can't be sorted
    EXPECT_EQ(selected(), 2u);
    untick(0);
    tick(numbered("d", 3, 1)); // a selection outlives its row
    const std::vector<test::Rect> marks = ui.read().rectsOf(ImGui::GetColorU32(ImGuiCol_Header));
    ASSERT_FALSE(marks.empty());
    EXPECT_TRUE(marks.back().contains(ui.text("d3").center()));
    EXPECT_FALSE(marks.back().contains(ui.text("d2").center()));
}

TEST_F(Comparison, widthsAreSetAnewOnlyWhenTheNumberOfSnapshotsChanges)
{
    tick({}); // without rows there is nothing to show
    EXPECT_FALSE(ui.read().contains("Caption"));
    untick(0);
    const std::size_t first = tick({{"x", 1}});
    EXPECT_EQ(headerWidths(), (std::vector<long>{27, 435, 1166}));
    const std::size_t second = tick({});
    EXPECT_EQ(headerWidths(), (std::vector<long>{27, 435, 571, 571}));
    untick(second);
    const test::Rect caption = ui.read().rectsAt(ui.text("Caption").center()).back();
    const ImVec2 border(caption.max.x + 4, caption.center().y);
    ui.drag(border, ImVec2(border.x + 30, border.y));
    const std::vector<long> dragged = headerWidths();
    EXPECT_NEAR(static_cast<double>(dragged.at(1)), 435 + 60, 2);
    untick(first);
    EXPECT_FALSE(ui.read().contains("Caption"));
    tick({{"y", 1}}); // as many as before: the user's widths stay
    EXPECT_EQ(headerWidths(), dragged);
    untick(3);
    tick(numbered("row ", 2000, 1)); // but for the numbers, which are longer
    EXPECT_EQ(headerWidths().at(0), 2 * (4 * 7 + 10 - 12));
    EXPECT_EQ(headerWidths().at(1), dragged.at(1));
    for (int i = 0; i < 120; ++i) // more than ImGui can show side by side
        tick({{"x", i}});
    EXPECT_EQ(headerWidths().at(1), 435);
}

TEST_F(Comparison, ofThousandsOfRowsThoseInViewAreDrawnAndAllCanBeReached)
{
    tick(numbered("first ", 5000, 1));
    tick(numbered("second ", 5000, 2));
    EXPECT_TRUE(ui.read().contains("first 1"));
    EXPECT_LT(ui.read().texts.size(), 300u);
    scrollToEnd();
    EXPECT_LT(ui.read().texts.size(), 300u);
    const std::vector<test::Text> last = ui.read().textsOnLineOf(ui.text("second 5000"));
    EXPECT_EQ(last.back().color, kFlagged);
    EXPECT_EQ(last.front().text, "10000");
    EXPECT_GT(last.at(1).min.x, last.front().max.x);
    ui.click("second 4999");
    EXPECT_EQ(selected(), 9998u);
}

TEST_F(Comparison, rowsOfSeveralLinesCanBeReachedToTheLast)
{
    untick(tick(numbered("c", 100, 1)));
    tick(numbered("c", 100, std::string("two\nlines"))); // as many rows and columns as before, but higher
    scrollToEnd();
    EXPECT_GE(ui.text("c100").min.y, ui.text("c99").min.y + 2 * ImGui::GetFontSize());
}

} // namespace
