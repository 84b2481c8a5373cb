// What code reads: every counter with its path and limits, the path of an item, the preset in force.
#include "support/counter_panel.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace {

using statistics::CounterReading;
using statistics::CounterValue;
using statistics::INVALID_ID;
using statistics::NO_INDEX;

class Reading : public test::CounterPanel {
protected:
    static std::string describe(const CounterReading& reading)
    {
        const std::string value = reading.value.toString(nullptr);
        const std::string limits =
            reading.min ? " in " + reading.min->toString(nullptr) + ".." + reading.max->toString(nullptr)
                        : "";
        return reading.path + " = " + value + limits + (reading.outside ? " outside" : "");
    }

    static std::vector<std::string> all()
    {
        std::vector<std::string> readings;
        system().forEachCounter([&](const CounterReading& reading) {
            EXPECT_EQ(system().getItemIndex(reading.path), reading.id) << reading.path;
            readings.push_back(describe(reading));
        });
        return readings;
    }
};

TEST_F(Reading, visitsEveryCounterInTreeOrderWithItsValueOfNow)
{
    int value = 0;
    const unsigned group = system().createLabel("Group");
    add("Last", Counter([] { return CounterValue(std::string("north")); }));
    add("Below", limited(1, 10, [&] { return CounterValue(value); }), group, 1000);
    system().createTable(
        "Table", [] { return 3; }, 1, group);
    EXPECT_EQ(all(), (std::vector<std::string>{"Group/Below = 0 in 1..10 outside", "Last = north"}));
    value = 10;
    EXPECT_EQ(all(), (std::vector<std::string>{"Group/Below = 10 in 1..10", "Last = north"}));
    system().forEachCounter({});
}

TEST_F(Reading, goesOnWhenGettersAndVisitorsRemoveWhatTheyStandOn)
{
    add("Removes itself", Counter([] {
            system().removeItem(system().getItemIndex("Removes itself"));
            return CounterValue(1);
        }));
    add("First", Counter([] { return CounterValue(2); }));
    add("Second", Counter([] { return CounterValue(3); }));
    std::vector<std::string> paths;
    system().forEachCounter([&](const CounterReading& reading) {
        system().removeItem(reading.id);
        system().removeItem(system().getItemIndex("Second"));
        paths.push_back(reading.path);
    });
    EXPECT_EQ(paths, (std::vector<std::string>{"Removes itself", "First"}));
}

TEST_F(Reading, namesCountersByWhereTheyStandWhenTheirTurnComes)
{
    const unsigned before = system().createLabel("Before");
    add("Replaces its group", Counter([=] {
            system().removeItem(before);
            add("Comes", Counter([] { return CounterValue(2); }), system().createLabel("Behind"));
            return CounterValue(1);
        }),
        before);
    std::vector<std::string> readings;
    system().forEachCounter([&](const CounterReading& reading) { readings.push_back(describe(reading)); });
    EXPECT_EQ(readings, (std::vector<std::string>{"Before/Replaces its group = 1", "Behind/Comes = 2"}));
}

TEST_F(Reading, leavesPathsOutForWhoKeepsThemWhileTheRevisionStays)
{
    const unsigned group = system().createLabel("Group");
    add("Below", Counter([] { return CounterValue(1); }), group);
    add("Adds", Counter([added = false]() mutable {
            if (std::exchange(added, true))
                return CounterValue(2);
            system().removeItem(system().getItemIndex("Goes"));
            add("New", Counter([] { return CounterValue(3); }));
            return CounterValue(2);
        }));
    add("Goes", Counter([] { return CounterValue(4); }));
    const auto values = [] {
        std::string text;
        const auto append = [&](const CounterReading& reading) {
            text += reading.path + reading.value.toString(nullptr) + " ";
        };
        system().forEachCounter(append, false);
        return text;
    };
    const std::uint64_t before = system().revision();
    EXPECT_EQ(values(), "1 2 ");
    const std::uint64_t after = system().revision();
    EXPECT_NE(after, before);
    EXPECT_EQ(values(), "1 2 3 ");
    EXPECT_EQ(system().revision(), after);
    statistics::System::shutdown();
    statistics::System::initialize();
    EXPECT_GT(system().revision(), after);
}

TEST_F(Reading, namesItemsByPathAndThePresetInForce)
{
    const unsigned inner = system().createLabel("Inner", system().createLabel("O"));
    EXPECT_EQ(system().path(inner), "O/Inner");
    system().removeItem(inner);
    for (const unsigned none : {0u, inner, INVALID_ID})
        EXPECT_EQ(system().path(none), "") << none;

    EXPECT_EQ(system().getActivePreset(), NO_INDEX);
    system().createPreset("Only", {});
    EXPECT_EQ(system().getActivePreset(), NO_INDEX);
    system().choosePreset(0);
    EXPECT_EQ(system().getActivePreset(), 0u);
}

} // namespace
