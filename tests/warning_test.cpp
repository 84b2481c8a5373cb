// Which counters are outside their limits, by path.
#include "support/counter_panel.h"

#include <cfloat>
#include <climits>
#include <cmath>
#include <list>
#include <stdexcept>

namespace {

using Warnings = std::list<std::string>;

class CollectWarnings : public test::CounterPanel {
protected:
    static CounterValue text(const char* content) { return CounterValue(std::string(content)); }

    static unsigned outside(const char* name, unsigned parent = 0)
    {
        return add(name, limited(0, 10, [] { return 20; }), parent);
    }
};

TEST_F(CollectWarnings, judgesTheLiveValueInItsOwnKind)
{
    struct Case {
        bool warns;
        CounterValue value, min, max;
    };
    const Case cases[] = {
        {true, 29, 30, 1000},
        {false, 30, 30, 1000},
        {false, 1000, 30, 1000},
        {true, 1001, 30, 1000},
        {false, 3, 3.9F, 3.9F}, // an integer reads its limits truncated
        {true, 3.95F, 3, 3.9F},
        {false, INT_MAX, -FLT_MAX, FLT_MAX},
        {true, -1, 0U, 10U},
        {true, 0U, -1, 10},
        {false, {}, 30, 1000},
        {false, NAN, 30, 1000},
        {false, text("b"), text("a"), text("c")},
        {true, text("5"), 10, 40},
    };
    for (const Case& c : cases) {
        const unsigned id = add("Counter", limited(c.min, c.max, [&] { return c.value; }));
        EXPECT_EQ(system().collectWarnings().size(), c.warns ? 1 : 0) << c.value.toString(nullptr);
        system().removeItem(id);
    }
}

TEST_F(CollectWarnings, namesCountersByTheirPathParentsFirst)
{
    EXPECT_EQ(system().collectWarnings(), Warnings{});
    const unsigned client = system().createLabel("Client");
    const unsigned fps = outside("Fps", client);
    outside("Top");
    outside("Worst", fps);
    outside("a/b", client);
    outside("below nameless", system().createLabel(""));
    outside("", system().createLabel("", system().createLabel("Group")));
    const Warnings expected = {"Client/Fps", "Client/Fps/Worst", "Client/a/b",
                               "Top",        "below nameless",   "Group//"};
    EXPECT_EQ(system().collectWarnings(), expected);
    sample();
    EXPECT_EQ(system().collectWarnings(), expected);
}

TEST_F(CollectWarnings, asksOnlyCountersThatHaveLimits)
{
    int asked = 0;
    int value = 0;
    add("Plain", Counter([&] { return ++asked; }));
    add("Of a preset", Counter([&] { return value; }, "", "", "key"));
    EXPECT_EQ(system().collectWarnings(), Warnings{}); // without a preset both limits are 0
    value = 1;
    EXPECT_EQ(system().collectWarnings(), Warnings{"Of a preset"});
    EXPECT_EQ(asked, 0);
}

TEST_F(CollectWarnings, goesOnWhenAGetterChangesTheTreeAndLetsExceptionsThrough)
{
    bool fails = false;
    const auto change = [&] {
        system().removeItem(system().getItemIndex("First"));
        system().removeItem(system().getItemIndex("Last"));
        outside("New");
        return fails ? throw std::runtime_error("gone") : 20;
    };
    outside("First");
    add("Changes", limited(0, 10, change));
    outside("Stays");
    outside("Last");
    EXPECT_EQ(system().collectWarnings(), (Warnings{"First", "Changes", "Stays", "New"}));
    fails = true;
    EXPECT_THROW(system().collectWarnings(), std::runtime_error);
    fails = false;
    EXPECT_EQ(system().collectWarnings(), (Warnings{"Changes", "Stays", "New"}));
}

} // namespace
