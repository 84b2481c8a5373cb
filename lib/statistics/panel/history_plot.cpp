// The plot of a counter's past.

#include "history_plot.h"

#include "layout.h"
#include "widgets.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

namespace statistics {

PastSummary::PastSummary(const std::vector<float>& past) : samples(past.size())
{
    double sum = 0;
    for (const float sample : past) {
        infinite += std::isinf(sample) ? 1 : 0;
        if (!std::isfinite(sample))
            continue;
        range.add(sample);
        sum += static_cast<double>(sample);
        ++finite;
    }
    if (finite > 0)
        mean = sum / static_cast<double>(finite);
}

namespace widgets {

namespace {

constexpr float kTint = 0.15f; ///< alpha of what lies outside the limits
// In widths of a line.
constexpr float kEdge = 2.0f; ///< of the plot around what is drawn in it
constexpr float kDot = 4.0f;

/// Where samples stand in the plot. In doubles: two floats may be further apart than a float can tell.
class Scale {
public:
    Scale(const ImVec2& min, const ImVec2& max, const PastRange& samples, const PlotLimits& limits)
        : left(min.x),
          right(max.x),
          m_top(min.y),
          m_height(max.y - min.y),
          m_lowest(static_cast<double>(samples.lowest)),
          m_highest(static_cast<double>(samples.highest)),
          m_most(samples.lowest < samples.highest ? (m_highest - m_lowest) * static_cast<double>(m_height)
                                                  : std::numeric_limits<double>::infinity())
    {
        if (limits.hasMin)
            include(limits.min);
        if (limits.hasMax)
            include(limits.max);
    }

    /// What is out of the plot stands above or below it.
    float y(float value) const
    {
        const double range = m_highest - m_lowest;
        const double fromTop = range > 0 ? (m_highest - static_cast<double>(value)) / range : 0.5;
        return m_top + static_cast<float>(std::clamp(fromTop, -1.0, 2.0)) * m_height;
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
    void include(float limit)
    {
        const double lowest = std::min(m_lowest, static_cast<double>(limit));
        const double highest = std::max(m_highest, static_cast<double>(limit));
        if (highest - lowest > m_most)
            return;
        m_lowest = lowest;
        m_highest = highest;
    }

    float m_top;
    float m_height;
    double m_lowest; ///< above `m_highest` while there is nothing
    double m_highest;
    double m_most; ///< of their difference: more, and the samples would be less than a pixel high
};

float lineWidth()
{
    return std::max(1.0f, std::floor(layout::scaled(1.0f)));
}

/// From the oldest to the newest sample the range of each point of the line, one for each of `columns` pixels
/// at the most. An empty one is a gap.
std::vector<PastRange> pointsOf(const std::vector<float>& samples, std::size_t columns)
{
    std::vector<PastRange> points(std::min(samples.size(), columns));
    for (std::size_t index = 0; index < samples.size(); ++index)
        points[index * points.size() / samples.size()].add(samples[index]);
    return points;
}

float middle(const PastRange& point)
{
    return point.lowest / 2 + point.highest / 2;
}

/// A line through all points; one that stands between gaps is a dot.
class Line {
public:
    Line(std::vector<PastRange> points, const Scale& scale) : m_points(std::move(points)), m_scale(scale) {}

    void draw(ImU32 color) const
    {
        for (std::size_t index = 0; index < m_points.size(); ++index)
            if (!isGap(index))
                drawPoint(index, color);
    }

private:
    bool isGap(std::size_t index) const { return index >= m_points.size() || m_points[index].isEmpty(); }

    void drawPoint(std::size_t index, ImU32 color) const
    {
        ImDrawList* draw = ImGui::GetWindowDrawList();
        const PastRange& point = m_points[index];
        const bool joined = !isGap(index - 1);
        const float half = lineWidth() * (joined || !isGap(index + 1) ? 0.5f : kDot / 2);
        const float x = m_scale.x(index, m_points.size());
        draw->AddRectFilled(ImVec2(x - half, m_scale.y(point.highest) - half),
                            ImVec2(x + half, m_scale.y(point.lowest) + half), color);
        if (joined)
            draw->AddLine(
                ImVec2(m_scale.x(index - 1, m_points.size()), m_scale.y(middle(m_points[index - 1]))),
                ImVec2(x, m_scale.y(middle(point))), color, lineWidth());
    }

    const std::vector<PastRange> m_points;
    const Scale& m_scale;
};

/// What is drawn while it lives shows between two heights alone.
class [[nodiscard]] BandScope {
public:
    BandScope(const Scale& scale, float top, float bottom)
    {
        ImGui::PushClipRect(ImVec2(scale.left - kEdge * lineWidth(), top),
                            ImVec2(scale.right + kEdge * lineWidth(), std::max(top, bottom)), true);
    }
    ~BandScope() { ImGui::PopClipRect(); }
    BandScope(const BandScope&) = delete;
    BandScope& operator=(const BandScope&) = delete;
};

void drawIn(const Line& line, const Scale& scale, float top, float bottom, ImU32 color)
{
    const BandScope band(scale, top, bottom);
    line.draw(color);
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

void plot(const std::vector<float>& samples, const PastRange& range, const PlotLimits& limits,
          const ImVec2& size)
{
    const ImVec2 min = ImGui::GetCursorScreenPos();
    const ImVec2 max(min.x + size.x, min.y + size.y);
    ImGui::Dummy(size);
    ImGui::GetWindowDrawList()->AddRectFilled(min, max, ImGui::GetColorU32(ImGuiCol_FrameBg));
    const float edge = kEdge * lineWidth();
    const Scale scale(ImVec2(min.x + edge, min.y + edge), ImVec2(max.x - edge, max.y - edge), range, limits);
    const BandScope whole(scale, min.y, max.y);
    if (limits.hasMax)
        drawLimit(scale, scale.y(limits.max), min.y);
    if (limits.hasMin)
        drawLimit(scale, scale.y(limits.min), max.y);
    // A sample on a limit isn't outside, as thick as its line may be.
    const float upper = limits.hasMax ? scale.y(limits.max) - lineWidth() : min.y;
    const float lower = limits.hasMin ? scale.y(limits.min) + lineWidth() : max.y;
    const Line line(pointsOf(samples, static_cast<std::size_t>(scale.right - scale.left)), scale);
    drawIn(line, scale, upper, lower, ImGui::GetColorU32(ImGuiCol_PlotLines));
    drawIn(line, scale, min.y, upper, ImGui::GetColorU32(outsideColor));
    drawIn(line, scale, lower, max.y, ImGui::GetColorU32(outsideColor));
}

} // namespace widgets

} // namespace statistics
