#pragma once

#include <imgui.h>

#include <algorithm>

/// The numbers of the panel's layout: pixels at ImGui's own font, which is 13 pixels high. `scaled` makes
/// them those of the present font.
namespace statistics::layout {

constexpr float kFontSize = 13.0f;

constexpr float kWidth = 850.0f;       ///< of a table and of the comparison, all columns together
constexpr float kPanelHeight = 600.0f; ///< at the panel's very first appearance
constexpr float kValueColumn = 215.0f; ///< from the left of the window, at any depth
constexpr float kBarWidth = 275.0f;
constexpr float kFilterWidth = 275.0f; ///< of the field on top of the panel
constexpr float kMarkWidth = 1.0f;     ///< of lowest and highest in the bar
constexpr float kMarkAlpha = 0.6f;

// The tooltip of a counter.
inline const ImVec2 kPlotSize(300.0f, 90.0f);
constexpr float kNumbersColumn = 70.0f; ///< from the left of the tooltip
constexpr float kTooltipWidth = 450.0f; ///< where longer texts are wrapped

constexpr float kHeaderHeight = 20.0f;
constexpr float kHeaderGap = 12.0f; ///< between neighbouring header buttons
inline const ImVec2 kHeaderSpacing(6.0f, 4.0f);

// The comparison.
constexpr float kNumberWidth = 25.5f;
constexpr float kCaptionWidth = 229.50002f;
constexpr float kSnapshotsWidth = 595.0f; ///< shared by the snapshots

// ImGui fails on columns of no width and on endless ones.
constexpr float kLeastColumnWidth = 8.0f;
constexpr float kMostColumnWidth = 100000.0f;
constexpr float kMostColumnsWidth = 1e7f; ///< of a set: up to here a float tells neighbouring pixels apart

/// A font of less than a quarter of the usual size can't be read; the numbers stay above one pixel.
inline float scaled(float pixels)
{
    return pixels * std::max(ImGui::GetFontSize() / kFontSize, 0.25f);
}

inline ImVec2 scaled(const ImVec2& pixels)
{
    return {scaled(pixels.x), scaled(pixels.y)};
}

} // namespace statistics::layout
