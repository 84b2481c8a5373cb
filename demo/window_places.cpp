#include "window_places.h"

#include <algorithm>

namespace demo {

namespace {

constexpr float kMargin = 12;      ///< pixels between windows, as all here
constexpr float kPanelWidth = 944; ///< a table at the third level of the tree, and a scrollbar
constexpr float kLeastColumn = 320;
constexpr float kSettingsHeight = 270;
constexpr float kWarningsHeight = 200;
constexpr float kDetailsHeight = 320;

WindowPlaces sideBySide(ImVec2 display)
{
    const float left = kPanelWidth + 2 * kMargin;
    const float width = display.x - left - kMargin;
    const float warnings = kMargin + kSettingsHeight + kMargin;
    const float details = warnings + kWarningsHeight + kMargin;
    const float detailsHeight = std::clamp(display.y - details - kMargin, kWarningsHeight, kDetailsHeight);
    return {{{kMargin, kMargin}, {kPanelWidth, display.y - 2 * kMargin}},
            {{left, kMargin}, {width, kSettingsHeight}},
            {{left, warnings}, {width, kWarningsHeight}},
            {{left, std::min(details, display.y - kMargin - detailsHeight)}, {width, detailsHeight}}};
}

WindowPlaces stacked(ImVec2 display)
{
    const float low = std::clamp(display.y * 0.38f, 120.0f, 250.0f); // the windows below the panel
    const float panel = std::max(display.y - low - 3 * kMargin, low);
    const float half = (display.x - 3 * kMargin) / 2;
    const float right = 2 * kMargin + half;
    const float top = 2 * kMargin + panel;
    return {{{kMargin, kMargin}, {display.x - 2 * kMargin, panel}},
            {{kMargin, top}, {half, low}},
            {{right, top}, {half, low}},
            {{right, top}, {half, low}}};
}

} // namespace

WindowPlaces placesFor(ImVec2 display)
{
    const bool wide = display.x >= kPanelWidth + kLeastColumn + 3 * kMargin;
    return wide ? sideBySide(display) : stacked(display);
}

void setNextPlace(const Place& place, bool now)
{
    const ImGuiCond when = now ? ImGuiCond_Always : ImGuiCond_FirstUseEver;
    ImGui::SetNextWindowPos(place.position, when);
    ImGui::SetNextWindowSize(place.size, when);
}

void keepOnDisplay(const Place& place)
{
    const ImVec2 display = ImGui::GetIO().DisplaySize;
    const ImVec2 corner = ImGui::GetWindowPos();
    const ImVec2 size = ImGui::GetWindowSize();
    if (corner.x >= 0 && corner.y >= 0 && corner.x + size.x <= display.x && corner.y + size.y <= display.y)
        return;
    ImGui::SetWindowPos(place.position);
    ImGui::SetWindowSize(place.size);
}

} // namespace demo
