// One line of the panel: caption, lower limit, bar with the value on it, upper limit; or caption and value.

#include "layout.h"
#include "render.h"
#include "tree_node.h"
#include "widgets.h"

#include <imgui.h>

#include <algorithm>
#include <cmath>

namespace statistics {

namespace {

constexpr float kBarBackgroundAlpha = 0.25f;

constexpr float kWarningWeight = 0.8f; ///< from here to 1 the bar turns from amber to red

const ImVec4 kLow{0.35f, 0.65f, 0.0f, 1.0f};
const ImVec4 kMid{0.96f, 0.65f, 0.14f, 1.0f};

ImVec4 mix(const ImVec4& a, const ImVec4& b, float t)
{
    return {a.x * (1.0f - t) + b.x * t, a.y * (1.0f - t) + b.y * t, a.z * (1.0f - t) + b.z * t,
            a.w * (1.0f - t) + b.w * t};
}

/// Weights below zero go on beyond `kLow`.
ImVec4 barColor(float weight)
{
    if (weight >= 1.0f)
        return widgets::outsideColor;
    if (weight >= kWarningWeight)
        return mix(kMid, widgets::outsideColor, (weight - kWarningWeight) * 5.0000005f);
    const float t = weight * 1.25f;
    return std::isfinite(t) ? mix(kLow, kMid, t) : kLow;
}

/// Calls `watch` behind the bar.
template<typename Watch>
void drawBar(float weight, const std::string& text, const Watch& watch)
{
    const ImVec4 color = barColor(weight);
    const widgets::ColorScope background(ImGuiCol_FrameBg,
                                         ImVec4(color.x, color.y, color.z, kBarBackgroundAlpha));
    const widgets::ColorScope fill(ImGuiCol_PlotHistogram, color);
    const widgets::ItemWidthScope width(layout::scaled(layout::kBarWidth));
    widgets::progressBar(weight, text);
    watch();
}

void drawLimit(const std::string& limit, bool crossed)
{
    if (!crossed)
        return widgets::text(limit);
    const widgets::ColorScope color(ImGuiCol_Text, widgets::outsideColor);
    widgets::text(limit);
}

template<typename Watch>
void drawLimitedValue(const std::string& value, const ShownLimits& limits, ECrossed crossed,
                      const Watch& watch)
{
    drawLimit(limits.texts.minText, crossed == ECrossed::Min);
    ImGui::SameLine(0.0f, -1.0f);
    drawBar(limits.weight, value, watch);
    ImGui::SameLine(0.0f, -1.0f);
    drawLimit(limits.texts.maxText, crossed == ECrossed::Max);
}

bool drawCaption(const std::string& name, bool hasChildren, bool opensAtFirst)
{
    const widgets::ColorScope color(ImGuiCol_Text, widgets::labelColor);
    if (hasChildren)
        return widgets::treeNode(name, opensAtFirst);
    widgets::text(name);
    return false;
}

} // namespace

bool Render::drawLabel(unsigned slot, bool hasChildren)
{
    return drawCaption(labels[slot], hasChildren, opensAtFirst);
}

bool Render::drawCounter(unsigned slot, bool hasChildren)
{
    const ItemCounter& item = counters[slot];
    const bool open = drawCaption(item.name, hasChildren, opensAtFirst);
    widgets::sameLineFrom(layout::kValueColumn);
    const auto watch = [&] {
        if (history.isOn())
            watchHistory(slot);
    };
    if (const ShownLimits* shown = shownLimits(item)) {
        const ECrossed crossed = options.markOutside ? shown->crossed : ECrossed::None;
        drawLimitedValue(item.valueText, *shown, crossed, watch);
    } else {
        widgets::text(item.valueText);
        watch();
    }
    return open;
}

} // namespace statistics
