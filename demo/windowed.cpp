#include "windowed.h"

#include "bounds.h"
#include "exit_status.h"
#include "host_windows.h"
#include "screen_report.h"
#include "user_folders.h"
#include "window.h"

#include <imgui.h>

#include <csignal>
#include <cstdio>
#include <memory>
#include <stdexcept>
#include <string>

namespace demo {

namespace {

volatile std::sig_atomic_t s_interrupted = 0;

/// What there is with a window only.
struct Screen {
    Window& window;
    HostWindows windows;
    ScreenReport report;
    bool menuOpen = false;
};

void drawFrame(App& app, Screen& screen)
{
    const auto timer = app.clock().time(EStage::Panel);
    screen.window.beginFrame();
    screen.windows.draw(ImGui::GetIO().DeltaTime);
    screen.menuOpen = ImGui::IsPopupOpen("", ImGuiPopupFlags_AnyPopup);
    screen.window.endFrame();
}

/// One frame, stage by stage.
void runFrame(App& app, Screen& screen)
{
    app.work(screen.menuOpen);
    {
        const auto timer = app.clock().time(EStage::Events);
        screen.window.pollEvents([&screen](int key) { screen.windows.onKey(key); });
    }
    drawFrame(app, screen);
    screen.report.tell(ImGui::GetIO().DeltaTime);
    {
        const auto timer = app.clock().time(EStage::Rendering);
        screen.window.render();
    }
    {
        const auto timer = app.clock().time(EStage::Presenting);
        screen.window.present();
    }
    app.pace();
}

void runFrames(App& app, Screen& screen, const Options& options)
{
    Bounds bounds(options);
    while (!screen.window.closed() && s_interrupted == 0 && bounds.admit())
        runFrame(app, screen);
}

/// Null without a display, which the user is told.
std::unique_ptr<Window> openWindow(const std::string& layoutFile)
{
    try {
        return std::make_unique<Window>(layoutFile.c_str());
    } catch (const std::runtime_error& error) {
        std::fprintf(stderr, "statistics_demo: %s\n", error.what());
        return nullptr;
    }
}

} // namespace

int runInWindow(App& app, const Options& options)
{
    // Ctrl+C, and a terminal that goes away, end the program as its close box does: the layout is kept.
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        std::signal(signal, [](int) { s_interrupted = 1; });
    const auto state = stateFolder(options.stateFolder);
    const std::string layout = (state / "layout.ini").string();
    const auto window = openWindow(layout);
    if (!window)
        return kNoDisplay;
    app.keepSnapshots(state);
    Screen screen{*window, HostWindows(app), ScreenReport(options.screenFile)};
    runFrames(app, screen, options);
    return kFine;
}

} // namespace demo
