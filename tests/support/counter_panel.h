#pragma once

// A panel whose tests create counters and read their lines.

#include "panel.h"

#include <memory>
#include <utility>

namespace test {

class CounterPanel : public Panel {
protected:
    using Counter = statistics::Counter;
    using CounterValue = statistics::CounterValue;

    static unsigned add(const std::string& name, Counter counter, unsigned parent = 0, float period = 0)
    {
        return system().createCounter(name, std::make_unique<Counter>(std::move(counter)), period, parent);
    }

    static Counter limited(CounterValue min, CounterValue max, Counter::Getter getter)
    {
        return {std::move(min), std::move(max), std::move(getter), "", ""};
    }

    static void keep(std::size_t samples) { setOption(&statistics::Options::history, samples); }
    /// The line of a caption, as it is seen after the host's next turn.
    std::string line(std::string_view caption) { return show().lines()[ui.text(caption).line]; }
};

} // namespace test
