#include "snapshots.h"

#include "csv.h"
#include "files.h"

#include <statistics/statistics.h>

#include <algorithm>
#include <charconv>
#include <ctime>
#include <string_view>

namespace demo {

namespace fs = std::filesystem;
using statistics::System;

namespace {

constexpr std::string_view kRun = "run-";

/// The number in a run's folder name, 0 for other names.
int runNumber(const std::string& name)
{
    int number = 0;
    if (std::string_view(name).substr(0, kRun.size()) == kRun)
        std::from_chars(name.data() + kRun.size(), name.data() + name.size(), number);
    return number;
}

std::string localTime()
{
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    localtime_r(&now, &parts);
    char text[32];
    return {text, std::strftime(text, sizeof(text), "%Y-%m-%d_%H-%M-%S", &parts)};
}

} // namespace

Snapshots::Snapshots(const fs::path& state, Notices& notices)
    : m_root(state / "snapshots"), m_comparisons(state / "comparisons"), m_notices(notices)
{
}

void Snapshots::create()
{
    try {
        System::instance()->createStatsAnalyzer(m_root.string(), nextRun(), [this] { saveDiff(); });
    } catch (const fs::filesystem_error& error) {
        m_notices.message = std::string("No snapshots: ") + error.what();
    }
}

std::string Snapshots::nextRun() const
{
    int last = 0;
    for (const std::string& name : entriesOf(m_root.string()))
        last = std::max(last, runNumber(name));
    return std::string(kRun) + std::to_string(last + 1);
}

void Snapshots::saveDiff()
{
    const statistics::DiffTable& comparison = System::instance()->getDiffTable();
    if (comparison.m_columns.empty()) {
        m_notices.message = "Nothing to save: tick snapshots to compare them.";
        return;
    }
    const fs::path path = m_comparisons / (localTime() + ".csv");
    const std::string problem = replaceText(path, toCsv(comparison));
    m_notices.message = problem.empty() ? "Comparison saved:\n" + shortPath(path) : problem;
}

} // namespace demo
