#include "snapshots.h"

#include "csv.h"
#include "run_number.h"
#include "save_file.h"
#include "user_folders.h"

#include <statistics/statistics.h>

#include <ctime>
#include <utility>

namespace demo {

namespace fs = std::filesystem;
using statistics::System;

namespace {

std::string localTime()
{
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    localtime_r(&now, &parts);
    char text[32];
    return {text, std::strftime(text, sizeof(text), "%Y-%m-%d_%H-%M-%S", &parts)};
}

} // namespace

Snapshots::Snapshots(fs::path state, Notices& notices)
    : m_state(std::move(state)),
      m_root(m_state / "snapshots"),
      m_comparisons(m_state / "comparisons"),
      m_notices(notices)
{
}

std::string Snapshots::create()
{
    const RunNumber run = takeRunNumber(m_state, m_root);
    if (!run.problem.empty())
        return run.problem;
    sweepLeftovers(m_comparisons);
    try {
        System::instance()->createStatsAnalyzer(m_root.string(), runFolder(run.number),
                                                [this] { saveDiff(); });
    } catch (const fs::filesystem_error& error) {
        return error.path1().string() + ": " + error.code().message();
    }
    return {};
}

void Snapshots::saveDiff()
{
    const statistics::DiffTable& comparison = System::instance()->getDiffTable();
    if (comparison.m_columns.empty()) {
        m_notices.message = "Nothing to save: tick snapshots to compare them.";
        return;
    }
    const fs::path path = m_comparisons / (localTime() + ".csv");
    const std::string problem = saveText(path, toCsv(comparison));
    m_notices.message = problem.empty() ? "Comparison saved:\n" + shortPath(path) : problem;
}

} // namespace demo
