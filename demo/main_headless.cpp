/// The same program for machines without a display: the library's form without a panel, no Dear ImGui, no
/// window.

#include "bounds.h"
#include "commands.h"
#include "exit_status.h"

#include <csignal>
#include <cstdio>

namespace {

volatile std::sig_atomic_t s_interrupted = 0;

/// Goes on until it is told to end, for those who read its metrics.
int runWithoutWindow(demo::App& app, const demo::Options& options)
{
    if (options.metrics.empty()) {
        std::fputs("statistics_demo_headless: no window here; say --list, --check, --record or --metrics\n",
                   stderr);
        return demo::kMistake;
    }
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        std::signal(signal, [](int) { s_interrupted = 1; });
    demo::Bounds bounds(options);
    while (s_interrupted == 0 && bounds.admit()) {
        app.work(false);
        app.pace();
    }
    return demo::kFine;
}

} // namespace

int main(int argc, char** argv)
{
    return demo::runProgram(argc, argv, runWithoutWindow);
}
