/// A real-time program that watches itself with the library. Here: the command line and the frame loop.

#include "app.h"
#include "files.h"
#include "host_windows.h"
#include "options.h"
#include "screen_report.h"
#include "window.h"

#include <imgui.h>
#include <statistics/statistics.h>

#include <csignal>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <functional>
#include <set>
#include <string>
#include <system_error>

namespace {

using demo::App;
using demo::EStage;
using demo::Options;

int list(const App& app)
{
    for (const std::string& path : app.book().paths())
        std::printf("%s\n", path.c_str());
    return 0;
}

void runFor(App& app, double seconds, const std::function<void()>& eachFrame)
{
    const double start = demo::clockSeconds();
    while (demo::clockSeconds() - start < seconds) {
        app.work(false);
        eachFrame();
        app.pace();
    }
}

/// Prints the counters that are outside their limits now, each once.
void printWarnings(std::set<std::string>& printed)
{
    for (const std::string& path : statistics::System::instance()->collectWarnings()) {
        if (printed.insert(path).second)
            std::printf("%s\n", path.c_str());
    }
}

/// Runs without a window. What is averaged over time gets a moment to settle first.
int check(App& app, double seconds)
{
    constexpr double kSettling = 0.5;
    std::set<std::string> printed;
    runFor(app, kSettling, [] {});
    runFor(app, seconds, [&printed] { printWarnings(printed); });
    printWarnings(printed);
    return printed.empty() ? 0 : 1;
}

volatile std::sig_atomic_t s_interrupted = 0;

/// What there is with a window only.
struct Screen {
    demo::Window window;
    demo::HostWindows windows;
    demo::ScreenReport report;
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

/// Runs in a window until the user or the command line wants an end.
int run(App& app, const Options& options)
{
    const auto state = demo::userFolder(options.stateFolder, "XDG_STATE_HOME", ".local/state");
    std::error_code error; // without the folder the layout isn't kept, no more
    std::filesystem::create_directories(state, error);
    const std::string layout = (state / "layout.ini").string();
    Screen screen{demo::Window(layout.c_str()), demo::HostWindows(app),
                  demo::ScreenReport(options.screenFile)};
    // Ctrl+C ends the program as its close box does: the layout is kept.
    for (const int signal : {SIGINT, SIGTERM})
        std::signal(signal, [](int) { s_interrupted = 1; });

    const double start = demo::clockSeconds();
    unsigned frames = 0;
    while (!screen.window.closed() && s_interrupted == 0 && !(options.frames && frames >= *options.frames) &&
           !(options.seconds && demo::clockSeconds() - start >= *options.seconds)) {
        runFrame(app, screen);
        ++frames;
    }
    return 0;
}

int start(const Options& options)
{
    App app(options);
    if (!app.choosePreset(options.preset)) {
        std::fprintf(stderr, "statistics_demo: no preset is called '%s'; there are:\n",
                     options.preset.c_str());
        for (const std::string& name : app.presets().names())
            std::fprintf(stderr, "  %s\n", name.c_str());
        return 2;
    }
    if (options.list)
        return list(app);
    if (options.check)
        return check(app, *options.check);
    return run(app, options);
}

} // namespace

int main(int argc, char** argv)
{
    int exitCode = 0;
    const auto options = demo::parseOptions(argc, argv, exitCode);
    if (!options)
        return exitCode;
    try {
        return start(*options);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "statistics_demo: %s\n", error.what());
        return 3;
    }
}
