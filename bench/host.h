#pragma once

// What several benchmarks share: frames without a window, and scenes to draw in them.

#include "offscreen/context.h"
#include "support/test_access.h"

#include <statistics/statistics.h>

#include <imgui.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace bench {

using offscreen::Context;

constexpr float kDisplayWidth = 1280.0f; ///< pixels

/// The library, up for the time of a benchmark.
struct Library {
    Library() { statistics::System::initialize(); }
    ~Library() { statistics::System::shutdown(); }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;

    statistics::System* operator->() const { return statistics::System::instance(); }
};

std::string name(std::size_t index);

/// A getter as hosts write them: reads one number of the host's.
statistics::Counter::Getter getter(const float& source);

/// `count` counters in groups of 100.
void addGroupedCounters(Library& library, std::size_t count, const std::vector<float>& sources, float period);

/// Opens every tree node of the host's items, as if the user had clicked each.
void openAllNodes();

constexpr float kLineHeight = 17.0f; ///< pixels: the default font and its spacing

} // namespace bench
