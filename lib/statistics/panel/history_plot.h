#pragma once

#include "history.h"

#include <imgui.h>

#include <cstddef>

namespace statistics {

/// What a past comes to. Samples that aren't finite count for nothing but their number.
struct PastSummary {
    explicit PastSummary(const Past& past);

    bool isConstant() const { return finite > 0 && lowest == highest; }

    float lowest = 0; ///< means nothing without a finite sample, as do the next two
    float highest = 0;
    double mean = 0;
    std::size_t finite = 0;   ///< number of finite samples
    std::size_t infinite = 0; ///< number of infinite ones
};

/// The limits that a plot shows. What is above `max` or below `min` is outside. FLT_MAX and beyond stand for
/// no limit.
struct PlotLimits {
    bool hasMin = false;
    bool hasMax = false;
    float min = 0;
    float max = 0;
};

namespace widgets {

/// A plot of the past, `size` in pixels: the finite samples from the oldest to the newest with gaps between
/// them, both limits as lines, and what is outside of them in another colour. Where there are more samples
/// than pixels each column of pixels shows the lowest and the highest of its samples.
void plot(const Past& past, const PastSummary& summary, const PlotLimits& limits, const ImVec2& size);

} // namespace widgets

} // namespace statistics
