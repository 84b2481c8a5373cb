#include "commands.h"

#include "bounds.h"
#include "exit_status.h"
#include "user_folders.h"
#include "watch.h"

#include <statistics/statistics.h>

#include <cstdio>
#include <exception>
#include <set>
#include <string>

namespace demo {

using statistics::CounterReading;
using statistics::System;

namespace {

void complain(const std::string& text)
{
    std::fprintf(stderr, "statistics_demo: %s\n", text.c_str());
}

int list()
{
    System::instance()->forEachCounter(
        [](const CounterReading& reading) { std::printf("%s\n", reading.path.c_str()); });
    return kFine;
}

void runFor(App& app, double seconds, const std::function<void()>& eachFrame)
{
    const double start = clockSeconds();
    while (clockSeconds() - start < seconds) {
        app.work(false);
        eachFrame();
        app.pace();
    }
}

/// Prints what is wrong with counters that have limits, each once.
class Gate {
public:
    void look()
    {
        System::instance()->forEachCounter([this](const CounterReading& counter) {
            if (counter.outside && m_outside.insert(counter.path).second)
                std::printf("%s\n", counter.path.c_str());
            if (counter.min && !counter.value.valid() && m_withoutValue.insert(counter.path).second)
                std::printf("%s: no value\n", counter.path.c_str());
        });
    }

    int status() const { return !m_outside.empty() ? kOutside : !m_withoutValue.empty() ? kNoValue : kFine; }

private:
    std::set<std::string> m_outside;
    std::set<std::string> m_withoutValue;
};

/// What is averaged over time, or has a value from the second reading on, gets a moment.
void settle(App& app)
{
    constexpr double kSettling = kMachinePeriod + 0.25; // seconds
    runFor(app, kSettling, [] {});
}

int check(App& app, double seconds)
{
    Gate gate;
    settle(app);
    gate.look();
    runFor(app, seconds, [&gate] { gate.look(); });
    return gate.status();
}

/// Tells the file of a snapshot that it takes; false if there is none.
bool takeSnapshot(const Snapshots& snapshots)
{
    const statistics::RecordedSnapshot snapshot = System::instance()->recordSnapshot();
    const std::string path = (snapshots.folder() / snapshot.file).string();
    if (snapshot.problem.empty())
        std::printf("%s\n", path.c_str());
    else
        complain(path + ": " + snapshot.problem);
    return snapshot.problem.empty();
}

int record(App& app, const Options& options)
{
    app.keepSnapshots(stateFolder(options.stateFolder));
    if (!app.snapshots())
        return kFailed; // told already
    settle(app);
    Bounds bounds(options);
    double next = 0; // seconds since the first
    while (bounds.admit()) {
        app.work(false);
        if (bounds.passed() >= next) {
            if (!takeSnapshot(*app.snapshots()))
                return kFailed;
            next += *options.record;
        }
        app.pace();
    }
    return kFine;
}

/// What "--preset" asked for isn't there.
int refuse(const App& app, const std::string& preset)
{
    if (!app.presets().isComplete())
        return kFailed; // told already
    complain("no preset is called '" + preset + "'; there are:");
    for (const std::string& name : app.presets().names())
        std::fprintf(stderr, "  %s\n", name.c_str());
    return kMistake;
}

int runApp(const Options& options, const Run& run)
{
    App app(options);
    for (const std::string& problem : app.presets().problems())
        complain(problem);
    if (!app.choosePreset(options.preset))
        return refuse(app, options.preset);
    if (options.list)
        return list();
    if (options.record)
        return record(app, options);
    if (!options.check)
        return run(app, options);
    if (app.presets().isRefused(options.preset)) {
        complain("nothing is checked without the limits of '" + options.preset + "'");
        return kFailed;
    }
    return check(app, *options.check);
}

} // namespace

int runProgram(int argc, char** argv, const Run& run)
{
    int status = kFine;
    const auto options = parseOptions(argc, argv, status);
    if (!options)
        return status;
    std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ); // each line is out at once, through a pipe, too
    try {
        status = runApp(*options, run);
    } catch (const std::exception& error) {
        complain(error.what());
        return kFailed;
    }
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0)
        return status;
    complain("the output couldn't be written");
    return kFailed;
}

} // namespace demo
