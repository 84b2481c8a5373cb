#include "host_windows.h"

#include "files.h"

#include <GLFW/glfw3.h>
#include <imgui.h>
#include <statistics/statistics.h>

#include <algorithm>
#include <exception>
#include <string_view>

namespace demo {

using statistics::System;

namespace {

constexpr float kMargin = 12;      // pixels between windows
constexpr float kPanelWidth = 944; // a table at the third level of the tree, and a scrollbar
constexpr float kSettingsHeight = 270;
constexpr float kWarningsHeight = 200;
constexpr float kDetailsHeight = 320;
constexpr float kCaptionWidth = 150; // right of a slider or field
const ImVec4 kDim(0.55f, 0.62f, 0.70f, 1);
const ImVec4 kWarning(0.96f, 0.45f, 0.30f, 1);
const ImVec4 kFine(0.45f, 0.75f, 0.35f, 1);

/// Places the next window in the column right of the panel, the first time that it shows.
void placeRight(float top, float height)
{
    const float left = kPanelWidth + 2 * kMargin;
    const float width = std::max(ImGui::GetIO().DisplaySize.x - left - kMargin, 320.0f);
    ImGui::SetNextWindowPos(ImVec2(left, top), ImGuiCond_FirstUseEver);
    ImGui::SetNextWindowSize(ImVec2(width, height), ImGuiCond_FirstUseEver);
}

void showText(std::string_view text)
{
    ImGui::TextUnformatted(text.data(), text.data() + text.size());
}

void showWrapped(std::string_view text)
{
    ImGui::PushTextWrapPos(0);
    showText(text);
    ImGui::PopTextWrapPos();
}

void showDim(const std::string& text)
{
    ImGui::PushStyleColor(ImGuiCol_Text, kDim);
    showWrapped(text);
    ImGui::PopStyleColor();
}

/// "Name:   value" in two columns.
void showField(std::string_view line)
{
    constexpr float kValueColumn = 190; // pixels
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos) {
        showText(line);
        return;
    }
    ImGui::PushStyleColor(ImGuiCol_Text, kDim);
    showText(line.substr(0, colon));
    ImGui::PopStyleColor();
    ImGui::SameLine(kValueColumn);
    const std::size_t value = line.find_first_not_of(" \t", colon + 1);
    showWrapped(value == std::string_view::npos ? std::string_view() : line.substr(value));
}

} // namespace

void HostWindows::draw(float dt)
{
    drawScene();
    drawSettings();
    drawWarnings(dt);
    drawPanel();
    drawDetails();
}

void HostWindows::onKey(int key)
{
    Particles& particles = m_app.particles();
    System& panel = *System::instance();
    switch (key) {
    case GLFW_KEY_UP:
        return particles.setCount(particles.count() * 5 / 4);
    case GLFW_KEY_DOWN:
        return particles.setCount(particles.count() * 4 / 5);
    case GLFW_KEY_RIGHT:
        return particles.setSteps(particles.steps() + 1);
    case GLFW_KEY_LEFT:
        return particles.setSteps(particles.steps() - 1);
    case GLFW_KEY_SPACE:
        return particles.setPaused(!particles.paused());
    case GLFW_KEY_F1:
        return panel.setPanelOpen(!panel.panelOpen());
    default:
        return;
    }
}

void HostWindows::drawScene() const
{
    const ImVec2 size = ImGui::GetIO().DisplaySize;
    ImDrawList& list = *ImGui::GetBackgroundDrawList();
    const ImU32 top = IM_COL32(9, 12, 18, 255);
    const ImU32 bottom = IM_COL32(14, 21, 33, 255);
    list.AddRectFilledMultiColor(ImVec2(0, 0), size, top, top, bottom, bottom);
    // Right of the panel, which has no background, and below the other windows.
    m_app.particles().draw(list, size.x * 0.84f, size.y * 0.77f, std::min(size.x * 0.14f, size.y * 0.2f));
}

void HostWindows::drawSettings()
{
    placeRight(kMargin, kSettingsHeight);
    if (ImGui::Begin("Demo")) {
        drawWork();
        ImGui::Separator();
        drawFolders();
        if (!m_app.notices().message.empty()) {
            ImGui::Separator();
            showWrapped(m_app.notices().message);
        }
    }
    ImGui::End();
}

void HostWindows::drawWork()
{
    Particles& particles = m_app.particles();
    Settings& settings = m_app.settings();
    ImGui::PushItemWidth(-kCaptionWidth);
    int count = particles.count();
    if (ImGui::SliderInt("Particles", &count, Particles::kMinCount, Particles::kMaxCount))
        particles.setCount(count);
    int steps = particles.steps();
    if (ImGui::SliderInt("Steps in a frame", &steps, 1, Particles::kMaxSteps))
        particles.setSteps(steps);
    ImGui::SliderFloat("Frames/s at most", &settings.frameRateLimit, 10, 250, "%.0f");
    ImGui::PopItemWidth();

    bool paused = particles.paused();
    if (ImGui::Checkbox("Pause particles", &paused))
        particles.setPaused(paused);
    ImGui::SameLine();
    ImGui::Checkbox("Pause sampling", &settings.samplingPaused);
    bool panelOpen = System::instance()->panelOpen();
    ImGui::SameLine();
    if (ImGui::Checkbox("Panel", &panelOpen))
        System::instance()->setPanelOpen(panelOpen);
    showDim("Keys: up and down for particles, left and right for steps, space to pause, F1 for the panel.");
}

void HostWindows::drawFolders()
{
    std::string& name = m_app.presets().saveAsName();
    char text[64] = {};
    name.copy(text, sizeof(text) - 1);
    ImGui::PushItemWidth(-kCaptionWidth);
    if (ImGui::InputText("\"Save As\" name", text, sizeof(text)))
        name = text;
    ImGui::PopItemWidth();
    showDim("Presets: " + shortPath(m_app.presets().folder()));
    showDim("Snapshots: " + shortPath(m_app.snapshots().folder()));

    const std::size_t hidden = m_app.processes().hiddenCount();
    if (hidden > 0 && ImGui::Button(("Show " + std::to_string(hidden) + " hidden").c_str()))
        m_app.processes().showHidden();
}

void HostWindows::drawPanel()
{
    const float height = ImGui::GetIO().DisplaySize.y - 2 * kMargin;
    ImGui::SetNextWindowPos(ImVec2(kMargin, kMargin), ImGuiCond_FirstUseEver);
    ImGui::SetNextWindowSize(ImVec2(kPanelWidth, height), ImGuiCond_FirstUseEver);
    try {
        System::instance()->draw();
    } catch (const std::exception& error) {
        // "Clear tree" may meet a folder that it can't delete; the library has closed what it opened.
        m_app.notices().message = error.what();
    }
}

void HostWindows::drawWarnings(float dt)
{
    if (m_warningPeriod.due(dt))
        m_warnings = System::instance()->collectWarnings();
    placeRight(kSettingsHeight + 2 * kMargin, kWarningsHeight);
    if (ImGui::Begin("Warnings")) {
        ImGui::PushStyleColor(ImGuiCol_Text, m_warnings.empty() ? kFine : kWarning);
        if (m_warnings.empty())
            showText("Everything is within its limits.");
        for (const std::string& path : m_warnings)
            showText(path);
        ImGui::PopStyleColor();
    }
    ImGui::End();
}

void HostWindows::drawDetails()
{
    Notices::Details& details = m_app.notices().details;
    if (details.title.empty())
        return;
    placeRight(kSettingsHeight + kWarningsHeight + 3 * kMargin, kDetailsHeight);
    bool open = true;
    // The title changes with the row, the window stays the same.
    if (ImGui::Begin((details.title + "###Details").c_str(), &open)) {
        const std::string_view text = details.text;
        for (std::size_t start = 0; start < text.size();) {
            const std::size_t end = std::min(text.find('\n', start), text.size());
            showField(text.substr(start, end - start));
            start = end + 1;
        }
        if (text.empty())
            showText("It is gone.");
    }
    ImGui::End();
    if (!open)
        details = {};
}

} // namespace demo
