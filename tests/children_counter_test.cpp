// Counters whose value is the sum of their children.
#include "support/counter_panel.h"

#include <climits>
#include <list>
#include <tuple>

namespace {

using statistics::NO_INDEX;
using Texts = std::vector<std::string>;

class ChildrenCounter : public test::CounterPanel {
protected:
    static unsigned leaf(const std::string& name, const CounterValue& value, unsigned parent)
    {
        return add(name, Counter([value] { return value; }), parent);
    }

    /// A table with one column, in which each row gives its number, from 1.
    static void table(const char* name, const std::size_t& rows, unsigned parent)
    {
        const unsigned id = system().createTable(
            name, [&rows] { return rows; }, 0, parent);
        system().getTable(id)->addColumn(
            "Cell", [](std::size_t row) { return static_cast<int>(row) + 1; }, 1);
    }
};

TEST_F(ChildrenCounter, sumsItsDirectChildrenInTheKindOfTheFirst)
{
    using Values = std::vector<CounterValue>;
    const CounterValue text(std::string("a"));
    const std::tuple<Values, std::string, Texts> cases[] = {
        {Values(), "Sum | ---", Texts()},
        {Values{{}, 2, {}, 3}, "Sum | 5 MB", Texts()},
        {Values{2, UINT_MAX - 2}, "Sum | -1 MB", Texts()},
        {Values{1, 2.5f, 4}, "Sum | 5 MB", Texts{"canCast(m_type, other.m_type)"}},
        {Values{text, text}, "Sum | a", Texts{"false"}},
    };
    for (const auto& [children, shown, reported] : cases) {
        const test::Reports reports;
        const unsigned sum = system().createChildrenCounter("Sum", 0, 0, "%d MB");
        leaf("too deep", 100, system().createLabel("Label", sum));
        for (const CounterValue& value : children)
            leaf("Leaf " + std::to_string(&value - children.data()), value, sum);
        EXPECT_EQ(line("Sum"), shown);
        EXPECT_EQ(reports.expressions(), reported);
        system().removeItem(sum);
    }
}

TEST_F(ChildrenCounter, sumsSumsAnewAndFollowsItsChildren)
{
    const unsigned total = statistics::childrenCounter("Total", 0, 0, 0, "%d MB");
    const unsigned inner = system().createChildrenCounter("Inner", 0, 1000, "", total);
    const unsigned one = leaf("One", 1, inner);
    leaf("Four", 4, total);
    EXPECT_EQ(line("Total"), "Total | 5 MB");
    leaf("Two", 2, inner); // counts at once, although "Inner" itself shows it only after its period
    EXPECT_EQ(line("Total"), "Total | 7 MB");
    system().removeItem(one);
    EXPECT_EQ(system().createChildrenCounter("Total", NO_INDEX, 5, "%x"), total);
    EXPECT_EQ(line("Total"), "Total | 6 MB");
}

TEST_F(ChildrenCounter, sumsAColumnOfItsTablesLiveOrTheirRowsAtTheLastRefresh)
{
    std::size_t four = 4;
    const std::size_t six = 6;
    const std::size_t none = 0;
    for (const auto& [name, column] : {std::pair("Cells", std::size_t{0}), std::pair("Rows", NO_INDEX)}) {
        const unsigned sum = system().createChildrenCounter(name, column, 0, "");
        table("Four", four, sum);
        table("Six", six, sum);
        table("None", none, sum);
    }
    table("None", none, system().createChildrenCounter("No cells", 0, 0, ""));
    table("None", none, system().createChildrenCounter("No rows", NO_INDEX, 0, ""));
    EXPECT_EQ(line("Rows"), "Rows | 0"); // counters are sampled before tables
    EXPECT_EQ(line("Rows"), "Rows | 10");
    four = 1;
    EXPECT_EQ(line("Cells"), "Cells | 22");
    four = 0;
    sample();
    EXPECT_EQ(line("Rows"), "Rows | 6");
    EXPECT_EQ(line("No cells"), "No cells | ---");
    EXPECT_EQ(line("No rows"), "No rows | 0");
    table("Six", six, system().createChildrenCounter("No column", 1, 0, ""));
    const test::Reports reports;
    EXPECT_EQ(line("No column"), "No column | ---");
    EXPECT_EQ(reports.expressions(), Texts{"column < m_header.size()"});
}

TEST_F(ChildrenCounter, asksTheTablesOfEachSumForItsOwnColumnAlsoWhereOneHasGone)
{
    const std::size_t four = 4;
    const std::size_t six = 6;
    const unsigned outer = system().createChildrenCounter("Outer", NO_INDEX, 0, "");
    const unsigned inner = system().createChildrenCounter("Inner", 0, 0, "", outer);
    table("Four", four, inner);
    bool leaves = false;
    const auto leave = [&] {
        if (leaves)
            system().removeItem(inner);
        return 0u;
    };
    add("Leaves", Counter(leave), inner, 1000);
    table("Six", six, outer);
    sample();
    EXPECT_EQ(line("Outer"), "Outer | 16"); // 1 + 2 + 3 + 4, and 6 rows
    leaves = true;
    EXPECT_EQ(line("Outer"), "Outer | 16");
    EXPECT_EQ(line("Outer"), "Outer | 6");
}

TEST_F(ChildrenCounter, hasLimitsOfItsOwnOrOfThePreset)
{
    system().createPreset("Preset", {{"key", {1, 9}}});
    system().choosePreset(0);
    const unsigned own = system().createChildrenCounter("Own", 0, 0, 2, 8, "%d MB", "<%d>");
    int calls = 0;
    const auto count = [&] {
        ++calls;
        return 5;
    };
    add("Leaf", Counter(count), own, 1000);
    leaf("Leaf", 5, system().createChildrenCounter("Preset's", 0, 0, "key", "%d MB", "<%g>"));
    EXPECT_EQ(line("Own"), "Own | <2> | 5 MB | <8>");
    EXPECT_EQ(calls, 1 + 2); // by itself, and for the text and the bar of the sum
    EXPECT_EQ(line("Preset's"), "Preset's | <1> | 5 MB | <9>");
    leaf("Much", 5, own);
    EXPECT_EQ(system().collectWarnings(), std::list<std::string>{"Own"});
}

} // namespace
