#include "process_table.h"

#include "texts/shown_text.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace demo {

using statistics::CounterValue;
using Row = ProcessRow;

namespace {

constexpr float kPeriod = 2.0f; ///< seconds

std::string allAbout(const std::string& folder, const Row& row)
{
    const auto status = readOf(folder, row.key, "status");
    return status ? "Command line: " + texts::visible(commandLine(folder, row.key)) + "\n" + *status : "";
}

} // namespace

void takeOutHidden(std::vector<Row>& rows, std::set<TaskKey>& hidden)
{
    std::set<TaskKey> found;
    const auto isHidden = [&](const Row& row) {
        return hidden.count(row.key) > 0 && found.insert(row.key).second;
    };
    rows.erase(std::remove_if(rows.begin(), rows.end(), isHidden), rows.end());
    hidden = std::move(found);
}

ProcessTable::ProcessTable(unsigned parent, std::string folder, ReaderThread& reader, Notices& notices)
    : m_folder(std::move(folder)),
      m_table(
          addSum("Processes", parent, kPeriod, {"%u processes"}), kPeriod, reader,
          [list = std::make_shared<ProcessList>(m_folder)] { return list->read(); },
          [this](std::vector<Row>& rows) { takeOutHidden(rows, m_hidden); })
{
    addColumns();
    addActions(notices);
}

void ProcessTable::addColumns()
{
    m_table.addColumn("Name", 0.26f, [](const Row& row) { return CounterValue(row.name); });
    m_table.addColumn("ID", 0.08f, [](const Row& row) { return CounterValue(row.key.id); });
    m_table.addColumn("State", 0.1f, [](const Row& row) { return CounterValue(row.state); });
    m_table.addColumn("Threads", 0.1f, [](const Row& row) { return CounterValue(row.threads); });
    m_table.addColumn(
        "Time", 0.13f, [](const Row& row) { return toCount(row.processorSeconds); }, "%u s");
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
    m_table.addAction("Copy command line", [this, &notices](const Row& row) {
        const std::string text = commandLine(m_folder, row.key);
        if (!text.empty())
            notices.copy(text);
        notices.message = text.empty() ? row.name + " has no command line." : "Copied: " + text;
    });
    m_table.addAction("Hide", [this, &notices](const Row& row) { hide(row, notices); });
    m_table.setDefaultAction([this, &notices](const Row& row) {
        notices.details = {"Process " + row.name, allAbout(m_folder, row)};
    });
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
