// A frame in which nothing new turns up allocates nothing.

#include "support/allocations.h"
#include "support/panel.h"

#include <statistics/statistics.h>

#include <gtest/gtest.h>

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
    setKeyColumn(id, 0);
    addClipboardAction(id);
}

class SteadyFrame : public test::Panel {};

TEST_F(SteadyFrame, AllocatesNothing)
{
    System& system = *System::instance();
    addCounters(system);
    addTable(system);
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
}

} // namespace
