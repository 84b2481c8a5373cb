// The past of counters on the panel: marks in the bars, a tooltip with a plot, a context menu that copies.

#include "history_draw.h"

#include "clipboard.h"
#include "format.h"
#include "history_plot.h"
#include "layout.h"
#include "system_data.h"
#include "widgets.h"

#include <imgui.h>

#include <algorithm>
#include <cfloat>
#include <charconv>
#include <cmath>
#include <utility>

namespace statistics {

namespace {

constexpr const char* kPopup = "historyPopup";

bool isNumber(const CounterValue& value)
{
    return !value.isString() && !value.isEmpty();
}

/// As the counter would have given it.
CounterValue inKind(const CounterValue& number, Past::EKind kind)
{
    switch (kind) {
    case Past::EKind::Int:
        return number.toInt();
    case Past::EKind::UInt:
        return number.toUInt();
    default:
        return number.toFloat();
    }
}

/// Beyond lies "no limit", which some kinds read as their last number.
bool isFiniteLimit(const CounterValue& limit)
{
    return isNumber(limit) && std::abs(limit.toFloat()) < FLT_MAX;
}

bool takeLimit(const CounterValue& limit, Past::EKind kind, float& taken)
{
    if (!isFiniteLimit(limit))
        return false;
    taken = inKind(limit, kind).toFloat();
    return true;
}

PlotLimits limitsOf(const Counter& counter, Past::EKind kind)
{
    PlotLimits limits;
    if (counter.hasLimits) {
        limits.hasMin = takeLimit(counter.min, kind, limits.min);
        limits.hasMax = takeLimit(counter.max, kind, limits.max);
    }
    return limits;
}

/// In the bar that was drawn last.
void drawMark(CounterValue sample, const Counter& counter)
{
    const float weight = sample.weight(counter.min, counter.max);
    if (!std::isfinite(weight))
        return;
    const float place = std::clamp(weight, 0.0f, 1.0f);
    const ImVec2 min = ImGui::GetItemRectMin();
    const ImVec2 max = ImGui::GetItemRectMax();
    const float width = std::max(1.0f, std::floor(layout::scaled(layout::kMarkWidth)));
    const float x = std::floor(min.x + place * (max.x - min.x - width));
    ImGui::GetWindowDrawList()->AddRectFilled(ImVec2(x, min.y), ImVec2(x + width, max.y),
                                              ImGui::GetColorU32(ImGuiCol_Text, layout::kMarkAlpha));
}

void drawMarks(const Counter& counter, Past::EKind kind, const PastRange& range)
{
    const PlotLimits limits = limitsOf(counter, kind);
    if (!limits.hasMin || !limits.hasMax || range.isEmpty())
        return;
    drawMark(inKind(range.lowest, kind), counter);
    if (range.lowest < range.highest)
        drawMark(inKind(range.highest, kind), counter);
}

} // namespace

/// Behind the item that shows the counter's value.
void Render::watchHistory(unsigned slot)
{
    const Counter& counter = *counters[slot].counter;
    if (counter.hasLimits && ImGui::IsItemVisible()) {
        const Past past = history.past(slot);
        drawMarks(counter, past.kind, historyView.ranges.range(slot, past));
    }
    if (ImGui::IsItemHovered(0))
        historyView.slot = slot;
}

namespace {

/// In the counter's own format. A mean of integers isn't one: it is rounded where the format wants an
/// integer, and has decimals elsewhere.
std::string meanText(double mean, const std::string& format)
{
    using EKind = Orv::FormatArgument::EKind;
    const EKind wanted = Orv::numberArgument(format.c_str()).kind;
    const bool whole = wanted == EKind::Signed || wanted == EKind::Unsigned;
    return CounterValue(static_cast<float>(whole ? std::round(mean) : mean)).toString(orNull(format));
}

std::string sampleText(float sample, Past::EKind kind, const std::string& format)
{
    return inKind(sample, kind).toString(orNull(format));
}

bool passesTime(float period)
{
    return period > 0 && std::isfinite(period);
}

/// How much is shown, and over what time in the unit of the period.
std::string spanText(std::size_t samples, float period)
{
    const auto count = static_cast<unsigned>(samples);
    std::string text = Orv::orv_format("%u sample%s", count, count == 1 ? "" : "s");
    if (!passesTime(period))
        return text;
    return text + Orv::orv_format(" over %g", static_cast<double>(samples) * static_cast<double>(period));
}

/// What the plot doesn't tell by itself.
std::string noteText(const PastSummary& summary)
{
    if (summary.samples == 0)
        return "No past: there has been no number yet.";
    if (summary.finite == 0)
        return summary.infinite > 0 ? "No finite sample: infinite." : "No finite sample: not a number.";
    const std::size_t gaps = summary.samples - summary.finite;
    std::string note = summary.isConstant() ? "Constant." : "";
    if (gaps > 0)
        note += Orv::orv_format("%s%u not finite.", note.empty() ? "" : " ", static_cast<unsigned>(gaps));
    return note;
}

void showPair(const char* caption, const std::string& value)
{
    {
        const widgets::ColorScope color(ImGuiCol_Text, widgets::labelColor);
        ImGui::TextUnformatted(caption);
    }
    widgets::sameLineFrom(layout::kNumbersColumn);
    widgets::text(value);
}

/// Where a number stands for no limit, the host's print of it says nothing.
std::string limitText(const CounterValue& limit, const std::string& text)
{
    return isNumber(limit) && !isFiniteLimit(limit) ? "none" : text;
}

void showNumbers(const ItemCounter& item, const ShownLimits* shown, Past::EKind kind,
                 const PastSummary& summary)
{
    const Counter& counter = *item.counter;
    if (summary.finite > 0) {
        showPair("lowest", sampleText(summary.range.lowest, kind, counter.format));
        showPair("mean", meanText(summary.mean, counter.format));
        showPair("highest", sampleText(summary.range.highest, kind, counter.format));
    }
    showPair("last", item.valueText);
    if (shown)
        showPair("limits", limitText(counter.min, shown->texts.minText) + " to " +
                               limitText(counter.max, shown->texts.maxText));
}

void showPast(const ItemCounter& item, const ShownLimits* shown, const Past& past, float period)
{
    const std::vector<float> samples = past.samples(); // side by side: they are read more than once
    const PastSummary summary(samples);
    if (!samples.empty()) {
        widgets::plot(samples, summary.range, limitsOf(*item.counter, past.kind),
                      layout::scaled(layout::kPlotSize));
        widgets::text(spanText(samples.size(), period));
    }
    showNumbers(item, shown, past.kind, summary);
    const std::string note = noteText(summary);
    if (!note.empty())
        widgets::text(note);
}

void showTooltip(const std::string& path, const Render& render, unsigned slot)
{
    const widgets::TooltipScope tooltip(layout::kTooltipWidth);
    if (!tooltip.open)
        return;
    {
        const widgets::ColorScope color(ImGuiCol_Text, widgets::labelColor);
        widgets::text(path);
    }
    const ItemCounter& item = render.counters[slot];
    showPast(item, render.shownLimits(item), render.history.past(slot), render.counterSchedule.period(slot));
}

void showPointedAt(System::Data& data)
{
    Render::HistoryView& view = data.render.historyView;
    const unsigned slot = std::exchange(view.slot, INVALID_ID);
    const unsigned node = slot == INVALID_ID ? INVALID_ID : data.tree.drawnCounter(slot);
    if (node == INVALID_ID)
        return;
    const std::string path = data.tree.path(node, data.render);
    showTooltip(path, data.render, slot);
    if (ImGui::IsMouseClicked(1, false)) {
        view.menuNode = node;
        view.menuPath = path;
        ImGui::OpenPopup(kPopup);
    }
}

void addNumber(std::string& text, float number)
{
    char digits[128];
    const auto end = std::to_chars(digits, digits + sizeof(digits), number, std::chars_format::fixed);
    text.append(digits, end.ptr);
}

/// A line for each sample: its time, 0 for the newest and in the unit of the period, a tab and its value.
/// Without a period the time is the number of the sample.
std::string historyText(const Past& past, float period)
{
    const double step = passesTime(period) ? static_cast<double>(period) : 1.0;
    std::string text;
    for (std::size_t index = 0; index < past.size(); ++index) {
        const auto age = static_cast<double>(past.size() - 1 - index);
        addNumber(text, age > 0 ? static_cast<float>(-age * step) : 0.0f);
        text += '\t';
        addNumber(text, past[index]);
        text += '\n';
    }
    return text;
}

bool menuEntry(const char* caption)
{
    const widgets::IdScope id(caption);
    return widgets::menuItem(caption);
}

/// Of the counter that the menu was opened on, wherever it stands by now.
void drawEntries(System::Data& data)
{
    const Render::HistoryView& view = data.render.historyView;
    if (menuEntry("Copy path"))
        setClipboardText(view.menuPath);
    const bool there =
        data.tree.contains(view.menuNode) && data.tree.path(view.menuNode, data.render) == view.menuPath;
    const unsigned slot = there ? itemSlot(data.tree.item(view.menuNode)) : 0;
    if (!there || !data.render.getCounter(data.tree.item(view.menuNode)))
        return;
    const ItemCounter& item = data.render.counters[slot];
    const Past past = data.render.history.past(slot);
    if (menuEntry("Copy value"))
        setClipboardText(item.valueText);
    if (past.size() > 0 && menuEntry("Copy history"))
        setClipboardText(historyText(past, data.render.counterSchedule.period(slot)));
}

} // namespace

void drawHistoryView(System::Data& data)
{
    const widgets::IdScope scope("history");
    showPointedAt(data);
    if (const widgets::PopupScope menu(kPopup); menu.open)
        drawEntries(data);
    data.render.historyView.ranges.endDraw();
}

} // namespace statistics
