// The plot of a counter's past.

#include "history_plot.h"

#include "layout.h"
#include "widgets.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace statistics {

PastSummary::PastSummary(const Past& past)
{
    double sum = 0;
    for (std::size_t index = 0; index < past.size(); ++index) {
        const float sample = past[index];
        infinite += std::isinf(sample) ? 1 : 0;
        if (!std::isfinite(sample))
            continue;
        lowest = finite == 0 ? sample : std::min(lowest, sample);
        highest = finite == 0 ? sample : std::max(highest, sample);
        sum += static_cast<double>(sample);
        ++finite;
    }
    if (finite > 0)
        mean = sum / static_cast<double>(finite);
}

namespace widgets {

namespace {

constexpr float kTint = 0.15f; ///< alpha of what lies outside the limits

/// Where samples stand in the plot. In doubles: two floats may be further apart than a float can tell.
class Scale {
public:
    Scale(const ImVec2& min, const ImVec2& max, const PastSummary& summary, const PlotLimits& limits)
        : left(min.x),
          right(max.x),
          m_top(min.y),
          m_height(max.y - min.y),
          m_lowest(static_cast<double>(summary.lowest)),
          m_highest(static_cast<double>(summary.highest))
    {
        if (limits.hasMin)
            include(limits.min, summary.finite > 0);
        if (limits.hasMax)
            include(limits.max, summary.finite > 0 || limits.hasMin);
    }

    float y(float sample) const
    {
        const double range = m_highest - m_lowest;
        const double fromTop = range > 0 ? (m_highest - static_cast<double>(sample)) / range : 0.5;
        return m_top + static_cast<float>(fromTop) * m_height;
    }
    /// Of the point `index` of `count`.
    float x(std::size_t index, std::size_t count) const
    {
        const double way = count > 1 ? static_cast<double>(index) / static_cast<double>(count - 1) : 1;
        return left + static_cast<float>(way) * (right - left);
    }

    const float left;
    const float right;

private:
    void include(float limit, bool hasRange)
    {
        const auto value = static_cast<double>(limit);
        m_lowest = hasRange ? std::min(m_lowest, value) : value;
        m_highest = hasRange ? std::max(m_highest, value) : value;
    }

    float m_top;
    float m_height;
    double m_lowest;
    double m_highest;
};

float lineWidth()
{
    return std::max(1.0f, std::floor(layout::scaled(1.0f)));
}

/// A point of the line, as high as the samples that it stands for.
struct Span {
    bool isGap() const { return std::isnan(low); }
    float middle() const { return low / 2 + high / 2; }

    float low;
    float high;
};

Span spanOf(const Past& past, std::size_t from, std::size_t to)
{
    Span span{NAN, NAN};
    for (std::size_t index = from; index < to; ++index) {
        const float sample = past[index];
        if (!std::isfinite(sample))
            continue;
        span = span.isGap() ? Span{sample, sample}
                            : Span{std::min(span.low, sample), std::max(span.high, sample)};
    }
    return span;
}

/// From the oldest to the newest sample, one for each of `columns` pixels at the most.
std::vector<Span> spansOf(const Past& past, std::size_t columns)
{
    const std::size_t count = std::min(past.size(), columns);
    std::vector<Span> spans;
    spans.reserve(count);
    for (std::size_t column = 0; column < count; ++column)
        spans.push_back(spanOf(past, column * past.size() / count, (column + 1) * past.size() / count));
    return spans;
}

/// A line through all spans; one that stands between gaps is a dot.
void drawLine(const std::vector<Span>& spans, const Scale& scale, ImU32 color)
{
    ImDrawList* draw = ImGui::GetWindowDrawList();
    const float width = lineWidth();
    for (std::size_t index = 0; index < spans.size(); ++index) {
        const Span& span = spans[index];
        if (span.isGap())
            continue;
        const float x = scale.x(index, spans.size());
        draw->AddRectFilled(ImVec2(x - width / 2, scale.y(span.high) - width / 2),
                            ImVec2(x + width / 2, scale.y(span.low) + width / 2), color);
        if (index > 0 && !spans[index - 1].isGap())
            draw->AddLine(ImVec2(scale.x(index - 1, spans.size()), scale.y(spans[index - 1].middle())),
                          ImVec2(x, scale.y(span.middle())), color, width);
    }
}

/// What is drawn while it lives shows between two heights alone.
class [[nodiscard]] BandScope {
public:
    BandScope(const Scale& scale, float top, float bottom)
    {
        ImGui::PushClipRect(ImVec2(scale.left - 2 * lineWidth(), top),
                            ImVec2(scale.right + 2 * lineWidth(), std::max(top, bottom)), true);
    }
    ~BandScope() { ImGui::PopClipRect(); }
    BandScope(const BandScope&) = delete;
    BandScope& operator=(const BandScope&) = delete;
};

void drawIn(const std::vector<Span>& spans, const Scale& scale, float top, float bottom, ImU32 color)
{
    const BandScope band(scale, top, bottom);
    drawLine(spans, scale, color);
}

/// A line, and a tint beyond it up to the plot's edge.
void drawLimit(const Scale& scale, float y, float edge)
{
    ImVec4 tint = outsideColor;
    tint.w = kTint;
    ImDrawList* draw = ImGui::GetWindowDrawList();
    draw->AddRectFilled(ImVec2(scale.left, std::min(y, edge)), ImVec2(scale.right, std::max(y, edge)),
                        ImGui::GetColorU32(tint));
    draw->AddLine(ImVec2(scale.left, y), ImVec2(scale.right, y), ImGui::GetColorU32(labelColor), lineWidth());
}

} // namespace

void plot(const Past& past, const PastSummary& summary, const PlotLimits& limits, const ImVec2& size)
{
    const ImVec2 min = ImGui::GetCursorScreenPos();
    const ImVec2 max(min.x + size.x, min.y + size.y);
    ImGui::Dummy(size);
    ImGui::GetWindowDrawList()->AddRectFilled(min, max, ImGui::GetColorU32(ImGuiCol_FrameBg));
    const float edge = 2 * lineWidth();
    const Scale scale(ImVec2(min.x + edge, min.y + edge), ImVec2(max.x - edge, max.y - edge), summary,
                      limits);
    const std::vector<Span> spans = spansOf(past, static_cast<std::size_t>(scale.right - scale.left));
    if (limits.hasMax)
        drawLimit(scale, scale.y(limits.max), min.y);
    if (limits.hasMin)
        drawLimit(scale, scale.y(limits.min), max.y);
    // A sample on a limit isn't outside, as thick as its line may be.
    const float upper = limits.hasMax ? scale.y(limits.max) - lineWidth() : min.y;
    const float lower = limits.hasMin ? scale.y(limits.min) + lineWidth() : max.y;
    drawIn(spans, scale, upper, lower, ImGui::GetColorU32(ImGuiCol_PlotLines));
    drawIn(spans, scale, min.y, upper, ImGui::GetColorU32(outsideColor));
    drawIn(spans, scale, lower, max.y, ImGui::GetColorU32(outsideColor));
}

} // namespace widgets

} // namespace statistics
