#pragma once

#include "past_range.h"

#include <imgui.h>

#include <cstddef>
#include <vector>

namespace statistics {

/// What a past comes to. Samples that aren't finite count for nothing but their number.
struct PastSummary {
    explicit PastSummary(const std::vector<float>& past);

    bool isConstant() const { return range.lowest == range.highest; }

    PastRange range;
    double mean = 0; ///< means nothing without a finite sample
    std::size_t samples;
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

/// A plot of the past, `size` in pixels: the finite samples, whose `range` is given, from the oldest to the
/// newest with gaps between them, both limits as lines, and what is outside of them in another colour. Where
/// there are more samples than pixels each column of pixels shows the lowest and the highest of its samples.
/// A limit so far away that the samples would lie flat isn't in the plot.
void plot(const std::vector<float>& samples, const PastRange& range, const PlotLimits& limits,
          const ImVec2& size);

} // namespace widgets

} // namespace statistics
