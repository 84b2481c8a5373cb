// A host without a window in its smallest form: it samples, warns, takes a snapshot and reads it all from
// code.

#include <statistics/statistics.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

#if __has_include(<imgui.h>)
#error "This host is built where no Dear ImGui is found."
#endif

namespace {

int s_failures = 0;

void check(bool holds, const char* what)
{
    if (holds)
        return;
    std::printf("failed: %s\n", what);
    ++s_failures;
}

void watch(const std::string& root)
{
    using namespace statistics;
    System& system = *System::instance();
    const unsigned group = label("Server");
    const unsigned players = system.createCounter("Players",
                                                  std::make_unique<Counter>(
                                                      0, 10, [] { return CounterValue(12); }, "", ""),
                                                  1.0f, group);
    system.update(0.1f, true);
    system.setPanelOpen(false);
    system.draw();
    check(!system.panelOpen(), "the panel's setter remembers");
    check(system.collectWarnings().front() == "Server/Players", "a counter outside its limits is told");
    check(system.path(players) == "Server/Players", "an item is named by its path");

    int visited = 0;
    system.forEachCounter([&visited](const CounterReading& reading) {
        visited += reading.outside && reading.value == CounterValue(12) ? 1 : 0;
    });
    check(visited == 1, "each counter is read once");

    check(system.createStatsAnalyzer(root, "run", nullptr), "snapshots are on");
    const RecordedSnapshot snapshot = system.recordSnapshot();
    check(snapshot.problem.empty(), snapshot.problem.c_str());
    check(std::filesystem::file_size(snapshot.file) > 0, "the snapshot is on disk");
}

} // namespace

int main(int count, char** arguments)
{
    const std::string root = count > 1 ? arguments[1] : "runs";
    std::filesystem::remove_all(root);
    statistics::System::initialize();
    watch(root);
    statistics::System::shutdown();
    return s_failures;
}
