// Which counters are outside their limits, by path.
#include "support/counter_panel.h"

#include <array>
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
    using ValueMinMax = std::vector<std::array<CounterValue, 3>>;
    const ValueMinMax within = {{30, 30, 1000},
                                {1000, 30, 1000},
                                {CounterValue(), 30, 1000},
                                {NAN, 30, 1000},
                                {3, 3.9f, 3.9f},
                                {INT_MAX, -FLT_MAX, FLT_MAX},
                                {text("b"), text("a"), text("c")}};
    const ValueMinMax outside = {{29, 30, 1000}, {1001, 30, 1000}, {3.95f, 3, 3.9f},
                                 {-1, 0u, 10u},  {0u, -1, 10},     {text("5"), 10, 40}};
    add("Plain", Counter(nullptr)); // without limits, so it isn't read
    for (const bool warns : {false, true}) {
        for (const auto& [value, min, max] : warns ? outside : within) {
            const unsigned id = add("Counter", limited(min, max, [&value = value] { return value; }));
            EXPECT_EQ(system().collectWarnings().size(), warns ? 1 : 0) << value.toString(nullptr);
            system().removeItem(id);
        }
    }
}

TEST_F(CollectWarnings, namesCountersByTheirPathParentsFirst)
{
    EXPECT_EQ(system().collectWarnings(), Warnings{});
    const unsigned client = system().createLabel("Client");
    const unsigned fps = outside("Fps", client);
    outside("Top");
    add("Without preset", Counter([] { return 1; }, "", "", "key")); // its limits are 0 and 0
    outside("Worst", fps);
    outside("a/b", client);
    outside("below nameless", system().createLabel(""));
    outside("", system().createLabel("", system().createLabel("Group")));
    const Warnings expected = {"Client/Fps",     "Client/Fps/Worst", "Client/a/b", "Top",
                               "Without preset", "below nameless",   "Group//"};
    EXPECT_EQ(system().collectWarnings(), expected);
    sample(); // makes no difference
    EXPECT_EQ(system().collectWarnings(), expected);
}

TEST_F(CollectWarnings, goesOnWhenAGetterChangesTheTreeAndLetsExceptionsThrough)
{
    bool fails = false;
    const auto change = [&] {
        system().removeItem(system().getItemIndex("First"));
        system().removeItem(system().getItemIndex("Last"));
        outside("New");
        if (fails)
            throw std::runtime_error("gone");
        return 20;
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
