// A host in its smallest form: one ImGui context, no window, two frames with the panel in them.

#include <imgui.h>
#include <statistics/statistics.h>

#include <cstdio>
#include <memory>
#include <variant>

namespace {

int s_failures = 0;

void check(bool holds, const char* what)
{
    if (holds)
        return;
    std::printf("failed: %s\n", what);
    ++s_failures;
}

void startImGui()
{
    IMGUI_CHECKVERSION();
    ImGui::CreateContext();
    ImGuiIO& io = ImGui::GetIO();
    io.DisplaySize = ImVec2(1280, 720);
    io.IniFilename = nullptr;
    io.Fonts->Build();
}

int verticesOfAFrame(statistics::System& system)
{
    ImGui::NewFrame();
    system.draw();
    ImGui::Render();
    return ImGui::GetDrawData()->TotalVtxCount;
}

/// The library hides everything but its own names, the standard's exception types included.
bool catchesWhatTheLibraryThrows(statistics::System& system)
{
    try {
        system.getPreset(0);
    } catch (const std::bad_variant_access&) {
        return true;
    }
    return false;
}

void watch()
{
    statistics::System& system = *statistics::System::instance();
    int samples = 0;
    const unsigned group = system.createLabel("Host");
    system.createCounter("Frame time", std::make_unique<statistics::Counter>([&samples] {
                             return statistics::CounterValue(++samples);
                         }),
                         0.0f, group);
    system.update(0.016f, true);
    check(samples == 1, "the counter is sampled by the first update");
    check(statistics::getItemIndex("Host/Frame time") != statistics::INVALID_ID, "the counter has its path");
    verticesOfAFrame(system); // ImGui may hide a new window for the frame in which it is measured
    check(verticesOfAFrame(system) > 0, "the panel is drawn into the host's ImGui");

    int reports = 0;
    statistics::setReportHandler([&reports](const char*) { ++reports; });
    check(catchesWhatTheLibraryThrows(system) && reports > 0, "a host's mistake is reported and caught");
    statistics::setReportHandler({});
}

} // namespace

int main()
{
    startImGui();
    statistics::System::initialize();
    watch();
    statistics::System::shutdown();
    check(statistics::System::instance() == nullptr, "nothing is left after shutdown");
    ImGui::DestroyContext();
    return s_failures;
}
