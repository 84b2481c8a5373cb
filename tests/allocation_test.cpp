// What the library holds: a frame in which nothing new turns up allocates nothing, and what comes and goes
// leaves nothing behind.

#include "support/allocations.h"
#include "support/files.h"
#include "support/panel.h"
#include "support/test_access.h"

#include <statistics/statistics.h>

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

using namespace statistics;

int s_frame = 0;

CounterValue changingValue()
{
    return static_cast<float>(s_frame % 100) * 0.01f;
}

void addCounters(System& system)
{
    const unsigned group = system.createChildrenCounter("group", NO_INDEX, 0.0f, "%.1f");
    for (int index = 0; index < 200; ++index) {
        const std::string name = "a counter with a long name, number " + std::to_string(index);
        auto counter = index % 2 ? std::make_unique<Counter>(changingValue, "%.2f of 1")
                                 : std::make_unique<Counter>(0.0f, 1.0f, changingValue, "", "%g");
        system.createCounter(name, std::move(counter), 0.0f, group);
    }
}

void addTable(System& system)
{
    const unsigned id = system.createTable(
        "table", [] { return std::size_t{500}; }, 0.0f);
    const auto cell = [](std::size_t row) { return CounterValue(static_cast<int>(row) + s_frame % 10); };
    for (int column = 0; column < 3; ++column)
        system.getTable(id)->addColumn("column", cell, 0.3f, column ? "%d rows" : "");
    system.getTable(id)->addColumn(
        "tall", [](std::size_t row) { return CounterValue(row % 50 == 0 ? "two\nlines" : "one"); }, 0.1f);
    setKeyColumn(id, 0);
    addClipboardAction(id);
}

class SteadyFrame : public test::Panel {};

TEST_F(SteadyFrame, AllocatesNothing)
{
    System& system = *System::instance();
    addCounters(system);
    addTable(system);
    setOption(&Options::history, 30);
    system.createPreset("a preset", {});
    std::size_t allocated = 0; // by the library, not by the host around it
    ui.setScene([&] {
        ++s_frame;
        const std::size_t before = test::allocations();
        system.update(0.016f, true);
        system.draw();
        allocated += test::allocations() - before;
    });
    ui.frame();
    ui.click("group");
    ui.click("Presets");
    ui.frames(120);
    EXPECT_GT(allocated, 0u); // or nothing is counted at all

    allocated = 0;
    ui.frames(100);
    EXPECT_EQ(allocated, 0u);

    const std::size_t inView = test::liveAllocations();
    ui.click("group");
    ui.frames(10);
    EXPECT_LT(test::liveAllocations(), inView - 10) << "what a dozen bars kept";

    setOption(&Options::filter, true);
    system.setFilter("a counter with a long name -17");
    ui.frames(120);
    allocated = 0;
    ui.frames(100);
    EXPECT_EQ(allocated, 0u);
}

class LongRun : public test::Panel {
protected:
    static constexpr int kFramesPerCycle = 200;

    /// Items, rows, presets and snapshots come, are drawn and sampled for some frames, and go.
    void cycle()
    {
        const unsigned top = system().createLabel("top");
        setOption(&Options::history, 40);
        for (int index = 0; index < 50; ++index)
            system().createCounter(std::to_string(index),
                                   std::make_unique<Counter>(0.0f, 1.0f, changingValue, "%.2f", ""), 0.0f,
                                   top);
        const unsigned table = system().createTable(
            "rows", [] { return std::size_t(s_frame % 90); }, 0.1f, top);
        system().getTable(table)->addColumn(
            "row", [](std::size_t row) { return static_cast<int>(row); }, 0.5f);
        system().createPreset("preset", {{"", {0.0f, 2.0f}}});
        system().choosePreset(0);
        EXPECT_TRUE(system().createStatsAnalyzer(m_folder("snapshots"), "run", nullptr));
        TestAccess::takeSnapshot();
        TestAccess::data().statsAnalyzer->addToDiff(0);
        ui.frames(kFramesPerCycle);
        TestAccess::clearSnapshots();
        system().removeStatsAnalyzer();
        system().clearPresets();
        system().removeItem(top);
        setOption(&Options::history, 0);
    }

    std::vector<std::size_t> poolSizes() const
    {
        const Render& render = TestAccess::render();
        return {render.counters.size(), render.tables.size(), render.presets.size(),
                TestAccess::tree().m_nodes.size()};
    }

    test::TempDir m_folder;
};

/// STATISTICS_TEST_CYCLES=5000 makes a million frames of it.
int cycles()
{
    const char* given = std::getenv("STATISTICS_TEST_CYCLES");
    return given ? std::atoi(given) : 5;
}

TEST_F(LongRun, LeavesNothingBehind)
{
    ui.setScene([] {
        ++s_frame;
        System::instance()->update(0.016f, true);
        System::instance()->draw();
    });
    cycle();
    cycle();
    const std::vector<std::size_t> sizes = poolSizes();
    const std::size_t before = test::liveAllocations();
    const int count = cycles();
    for (int done = 0; done < count; ++done)
        cycle();
    EXPECT_EQ(poolSizes(), sizes);
    EXPECT_EQ(test::liveAllocations(), before);
}

} // namespace
