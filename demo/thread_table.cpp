#include "thread_table.h"

#include "files.h"
#include "proc_text.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <sys/resource.h>

namespace demo {

using statistics::CounterValue;

namespace {

constexpr float kPeriod = 1.0f; // seconds
constexpr const char* kFolder = "/proc/self/task";
constexpr std::size_t kTimeColumn = 3;

std::string fileOf(std::uint64_t thread, const char* name)
{
    return std::string(kFolder) + "/" + std::to_string(thread) + "/" + name;
}

/// Finer than the ticks in "stat"; nothing on kernels without scheduler statistics.
std::optional<double> exactSeconds(std::uint64_t thread)
{
    const auto text = readText(fileOf(thread, "schedstat"));
    const auto nanoseconds = text ? toNumber(*text) : std::nullopt;
    return nanoseconds ? std::optional(*nanoseconds * 1e-9) : std::nullopt;
}

} // namespace

ThreadTable::ThreadTable(PanelBook& book, unsigned parent, Notices& notices)
    : m_table(book, "Table", book.sum("Threads", parent, kPeriod, {"%.2f s of processor time"}, kTimeColumn),
              kPeriod, [this] { return readRows(); })
{
    addColumns();
    addActions(notices);
}

void ThreadTable::addColumns()
{
    m_table.addColumn("Name", 0.21f, [](const Row& row) { return CounterValue(row.name); });
    m_table.addColumn("ID", 0.09f, [](const Row& row) { return CounterValue(static_cast<int>(row.key)); });
    m_table.addColumn("State", 0.1f, [](const Row& row) { return CounterValue(row.state); });
    m_table.addColumn(
        "Time", 0.12f, [](const Row& row) { return toValue(row.processorSeconds); }, "%.2f s");
    m_table.addColumn(
        "Busy", 0.12f, [](const Row& row) { return row.loadPercent; }, "%.1f %%");
    m_table.addColumn("Voluntary", 0.14f, [](const Row& row) { return row.voluntarySwitches; });
    m_table.addColumn("Involuntary", 0.14f, [](const Row& row) { return row.involuntarySwitches; });
    m_table.addColumn("Nice", 0.08f, [](const Row& row) { return CounterValue(row.nice); });
    m_table.setKeyColumn(0);
}

void ThreadTable::addActions(Notices& notices)
{
    m_table.addClipboardAction();
    m_table.addAction("Lower priority", [this, &notices](const Row& row) { changeNice(row, 5, notices); });
    m_table.addAction("Raise priority", [this, &notices](const Row& row) { changeNice(row, -5, notices); });
    m_table.setDefaultAction([&notices](const Row& row) {
        notices.details = {"Thread " + row.name, readText(fileOf(row.key, "status")).value_or("")};
    });
}

std::vector<ThreadTable::Row> ThreadTable::readRows()
{
    m_loads.begin();
    std::vector<Row> rows;
    for (const int thread : numbersIn(kFolder)) {
        Row row{};
        if (readRow(thread, row))
            rows.push_back(std::move(row));
    }
    return rows;
}

bool ThreadTable::readRow(int thread, Row& row)
{
    row.key = static_cast<std::uint64_t>(thread);
    const auto stat = parseTaskStat(readText(fileOf(row.key, "stat")).value_or(""));
    if (!stat)
        return false; // ended since the folder was listed
    const std::string status = readText(fileOf(row.key, "status")).value_or("");
    row.name = stat->name;
    row.state = stateName(stat->state);
    row.nice = stat->nice;
    row.processorSeconds = exactSeconds(row.key).value_or(stat->processorSeconds);
    row.loadPercent = m_loads.percent(thread, row.processorSeconds);
    row.voluntarySwitches = toCount(numberOf(status, "voluntary_ctxt_switches:"));
    row.involuntarySwitches = toCount(numberOf(status, "nonvoluntary_ctxt_switches:"));
    return true;
}

void ThreadTable::changeNice(const Row& row, int change, Notices& notices)
{
    const int nice = std::clamp(row.nice + change, -20, 19);
    if (setpriority(PRIO_PROCESS, static_cast<id_t>(row.key), nice) == 0)
        notices.message = "Thread " + row.name + " now has the nice value " + std::to_string(nice) + ".";
    else
        notices.message = "Thread " + row.name + ": " + std::strerror(errno) + ".";
    m_table.setStale();
}

} // namespace demo
