#pragma once

// A system that is up, and a host that draws its panel off-screen.

#include "offscreen/host.h"
#include "reports.h"

#include <statistics/statistics.h>

#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <vector>

namespace test {

using namespace offscreen;

/// A test that expects reports makes a Reports of its own; any that comes otherwise fails the test, and so
/// does a last frame that left something open in ImGui.
class Panel : public testing::Test {
protected:
    Panel()
    {
        statistics::System::initialize();
        ui.setScene([] { statistics::System::instance()->draw(); });
    }

    ~Panel() override
    {
        if (statistics::System::instance())
            statistics::System::shutdown();
        EXPECT_EQ(m_unexpected.texts(), std::vector<std::string>{});
        EXPECT_EQ(ui.imbalance(), "");
    }

    static statistics::System& system() { return *statistics::System::instance(); }
    /// The other options stay as they are.
    template<typename Value>
    static void setOption(Value statistics::Options::*option, std::common_type_t<Value> value)
    {
        statistics::Options options = system().options();
        options.*option = value;
        system().setOptions(options);
    }

    /// Time doesn't pass; samples what is new and what has no period.
    static void sample() { system().update(0, true); }

    /// What a user sees after the host's next turn. The first frame of a window only finds its size.
    const Frame& show()
    {
        sample();
        ui.frames(2);
        return ui.read();
    }

private:
    Reports m_unexpected;

protected:
    Host ui;
};

} // namespace test
