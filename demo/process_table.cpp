#include "process_table.h"

#include "files.h"
#include "proc_text.h"

#include <imgui.h>

#include <algorithm>

namespace demo {

using statistics::CounterValue;

namespace {

constexpr float kPeriod = 2.0f; // seconds

std::string fileOf(std::uint64_t process, const char* name)
{
    return "/proc/" + std::to_string(process) + "/" + name;
}

/// As one would type it; kernel threads have none.
std::string commandLine(std::uint64_t process)
{
    std::string text = readText(fileOf(process, "cmdline")).value_or("");
    while (!text.empty() && text.back() == '\0')
        text.pop_back();
    std::replace(text.begin(), text.end(), '\0', ' ');
    return text;
}

} // namespace

ProcessTable::ProcessTable(PanelBook& book, unsigned parent, Notices& notices)
    : m_table(book, "Table", book.sum("Processes", parent, kPeriod, {"%u processes"}), kPeriod,
              [this] { return readRows(); })
{
    addColumns();
    addActions(notices);
}

void ProcessTable::addColumns()
{
    m_table.addColumn("Name", 0.26f, [](const Row& row) { return CounterValue(row.name); });
    m_table.addColumn("ID", 0.08f, [](const Row& row) { return CounterValue(static_cast<int>(row.key)); });
    m_table.addColumn("State", 0.1f, [](const Row& row) { return CounterValue(row.state); });
    m_table.addColumn("Threads", 0.1f, [](const Row& row) { return CounterValue(row.threads); });
    m_table.addColumn(
        "Time", 0.13f, [](const Row& row) { return toValue(row.processorSeconds); }, "%.2f s");
    m_table.addColumn(
        "Busy", 0.1f, [](const Row& row) { return row.loadPercent; }, "%.1f %%");
    m_table.addColumn(
        "Memory", 0.14f, [](const Row& row) { return toValue(row.residentMiB); }, "%.1f MiB");
    m_table.addColumn("Nice", 0.07f, [](const Row& row) { return CounterValue(row.nice); });
    m_table.setKeyColumn(0);
}

void ProcessTable::addActions(Notices& notices)
{
    m_table.addClipboardAction();
    m_table.addAction("Copy command line", [&notices](const Row& row) {
        const std::string text = commandLine(row.key);
        if (!text.empty())
            ImGui::SetClipboardText(text.c_str());
        notices.message = text.empty() ? row.name + " has no command line." : "Copied: " + text;
    });
    m_table.addAction("Hide", [this, &notices](const Row& row) { hide(row, notices); });
    m_table.setDefaultAction([&notices](const Row& row) {
        notices.details = {"Process " + row.name, "Command line: " + commandLine(row.key) + "\n" +
                                                      readText(fileOf(row.key, "status")).value_or("")};
    });
}

std::vector<ProcessTable::Row> ProcessTable::readRows()
{
    m_loads.begin();
    std::vector<Row> rows;
    for (const int process : numbersIn("/proc")) {
        Row row{};
        if (m_hidden.count(static_cast<std::uint64_t>(process)) == 0 && readRow(process, row))
            rows.push_back(std::move(row));
    }
    return rows;
}

bool ProcessTable::readRow(int process, Row& row)
{
    row.key = static_cast<std::uint64_t>(process);
    const auto stat = parseTaskStat(readText(fileOf(row.key, "stat")).value_or(""));
    if (!stat)
        return false; // ended since the folder was listed
    row.name = stat->name;
    row.state = stateName(stat->state);
    row.threads = stat->threads;
    row.nice = stat->nice;
    row.processorSeconds = stat->processorSeconds;
    row.loadPercent = m_loads.percent(process, stat->processorSeconds);
    row.residentMiB = stat->residentMiB;
    return true;
}

void ProcessTable::hide(const Row& row, Notices& notices)
{
    m_hidden.insert(row.key);
    m_table.setStale();
    notices.message = row.name + " is hidden.";
}

void ProcessTable::showHidden()
{
    m_hidden.clear();
    m_table.setStale();
}

} // namespace demo
