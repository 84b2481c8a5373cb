#include "host_windows.h"

#include "particles_view.h"
#include "text_view.h"
#include "texts/shown_text.h"
#include "user_folders.h"

#include <GLFW/glfw3.h>
#include <imgui.h>
#include <statistics/statistics.h>

#include <algorithm>
#include <filesystem>

namespace demo {

using statistics::System;

namespace {

constexpr float kCaptionWidth = 150;         ///< right of a slider or field
constexpr std::size_t kMostWarnings = 200;   ///< lines
constexpr std::size_t kHistory = 240;        ///< samples: a minute of what is sampled four times a second
constexpr std::size_t kLongestMessage = 300; ///< bytes
constexpr const char* kPanelTitle = "Statistics"; ///< that the library gives its window
const ImVec4 kWarning(0.96f, 0.45f, 0.30f, 1);
const ImVec4 kGood(0.45f, 0.75f, 0.35f, 1);

/// All that the plain panel doesn't have, and the groups open that a user looks at first.
void setUpPanel()
{
    statistics::Options options;
    options.history = kHistory;
    options.background = 0.9f;
    options.filter = options.markOutside = options.sortArrows = options.sortSnapshots = options.rowKeys =
        true;
    System::instance()->setOptions(options);
    for (const char* group : {"Frame", "Work"})
        System::instance()->openNode(statistics::getItemIndex(group), true);
}

} // namespace

HostWindows::HostWindows(App& app) : m_app(app)
{
    setUpPanel();
    app.notices().copy = [](const std::string& text) { ImGui::SetClipboardText(text.c_str()); };
}

void HostWindows::draw(float dt)
{
    const ImVec2 display = ImGui::GetIO().DisplaySize;
    m_displayChanged = display.x != m_display.x || display.y != m_display.y;
    m_displayResized = m_displayChanged && m_display.x > 0;
    m_display = display;
    m_places = placesFor(display);
    drawScene();
    drawSettings();
    drawWarnings(dt);
    drawPanel();
    drawDetails();
}

bool HostWindows::begin(const char* title, const Place& place, bool* open) const
{
    setNextPlace(place, m_displayResized);
    const bool visible = ImGui::Begin(title, open);
    if (m_displayChanged)
        keepOnDisplay(place);
    return visible;
}

void HostWindows::onKey(int key)
{
    Particles& particles = m_app.particles();
    System& panel = *System::instance();
    switch (key) {
    case GLFW_KEY_F3:
        return particles.setCount(particles.count() * 5 / 4);
    case GLFW_KEY_F2:
        return particles.setCount(particles.count() * 4 / 5);
    case GLFW_KEY_F5:
        return particles.setSteps(particles.steps() + 1);
    case GLFW_KEY_F4:
        return particles.setSteps(particles.steps() - 1);
    case GLFW_KEY_F6:
        return particles.setPaused(!particles.paused());
    case GLFW_KEY_F1:
        return panel.setPanelOpen(!panel.panelOpen());
    default:
        return;
    }
}

void HostWindows::drawScene() const
{
    const ImVec2 size = m_display;
    ImDrawList& list = *ImGui::GetBackgroundDrawList();
    const ImU32 top = IM_COL32(9, 12, 18, 255);
    const ImU32 bottom = IM_COL32(14, 21, 33, 255);
    list.AddRectFilledMultiColor(ImVec2(0, 0), size, top, top, bottom, bottom);
    // Right of the panel and below the other windows.
    drawParticles(m_app.particles().all(), list, size.x * 0.84f, size.y * 0.77f,
                  std::min(size.x * 0.14f, size.y * 0.2f));
}

void HostWindows::drawSettings()
{
    if (begin("Demo", m_places.settings)) {
        drawWork();
        ImGui::Separator();
        drawFolders();
        if (!m_app.notices().message.empty()) {
            ImGui::Separator();
            showWrapped(texts::bounded(m_app.notices().message, kLongestMessage));
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
    showDim("Keys: F1 for the panel, F2 and F3 for particles, F4 and F5 for steps, F6 to pause; the arrows "
            "lead through a window, Control and Tab to another.");
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
    if (const Snapshots* snapshots = m_app.snapshots())
        showDim("Snapshots: " + shortPath(snapshots->folder()));

    const std::size_t hidden = m_app.processes().hiddenCount();
    if (hidden > 0 && ImGui::Button(("Show " + std::to_string(hidden) + " hidden").c_str()))
        m_app.processes().showHidden();
}

void HostWindows::drawPanel()
{
    setNextPlace(m_places.panel, m_displayResized);
    try {
        System::instance()->draw();
    } catch (const std::filesystem::filesystem_error& error) {
        // "Clear tree" may meet a folder that it can't delete; the library has closed what it opened.
        m_app.notices().message = error.path1().string() + ": " + error.code().message();
    }
    if (m_displayChanged && System::instance()->panelOpen()) {
        ImGui::Begin(kPanelTitle); // goes on with the library's window
        keepOnDisplay(m_places.panel);
        ImGui::End();
    }
}

void HostWindows::drawWarnings(float dt)
{
    if (m_warningPeriod.due(dt))
        m_warnings = System::instance()->collectWarnings();
    if (begin("Warnings", m_places.warnings)) {
        ImGui::PushStyleColor(ImGuiCol_Text, m_warnings.empty() ? kGood : kWarning);
        if (m_warnings.empty())
            showText("Everything is within its limits.");
        std::size_t count = 0;
        for (const std::string& path : m_warnings)
            if (count++ < kMostWarnings)
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
    bool open = true;
    if (begin("Details", m_places.details, &open)) {
        // In front, and yet whoever goes through a table by keys stays there.
        if (ImGui::IsWindowAppearing())
            ImGui::SetWindowFocus(kPanelTitle);
        showText(details.title);
        ImGui::Separator();
        showFields(details.text);
        if (details.text.empty())
            showText("It is gone.");
    }
    ImGui::End();
    if (!open)
        details = {};
}

} // namespace demo
