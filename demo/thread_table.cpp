#include "thread_table.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <sys/resource.h>

namespace demo {

using statistics::CounterValue;
using Row = ThreadRow;

namespace {

constexpr float kPeriod = 1.0f; ///< seconds
constexpr std::size_t kTimeColumn = 3;

} // namespace

ThreadTable::ThreadTable(unsigned parent, ReaderThread& reader, Notices& notices)
    : m_table(addSum("Threads", parent, kPeriod, {"%u s of processor time"}, kTimeColumn), kPeriod, reader,
              [list = std::make_shared<ThreadList>(kOwnThreads)] { return list->read(); })
{
    addColumns();
    addActions(notices);
}

void ThreadTable::addColumns()
{
    m_table.addColumn("Name", 0.21f, [](const Row& row) { return CounterValue(row.name); });
    m_table.addColumn("ID", 0.09f, [](const Row& row) { return CounterValue(row.key.id); });
    m_table.addColumn("State", 0.1f, [](const Row& row) { return CounterValue(row.state); });
    // Whole seconds: exact for years, where a float's hundredths are gone after a day.
    m_table.addColumn(
        "Time", 0.12f, [](const Row& row) { return toCount(row.processorSeconds); }, "%u s");
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
        notices.details = {"Thread " + row.name, readOf(kOwnThreads, row.key, "status").value_or("")};
    });
}

void ThreadTable::changeNice(const Row& row, int change, Notices& notices)
{
    const int nice = std::clamp(row.nice + change, -20, 19);
    m_table.setStale();
    // The kernel takes the number of any process's thread: without a look it might be a stranger by now.
    if (!isAlive(kOwnThreads, row.key))
        notices.message = "Thread " + row.name + " has ended.";
    else if (setpriority(PRIO_PROCESS, static_cast<id_t>(row.key.id), nice) == 0)
        notices.message = "Thread " + row.name + " now has the nice value " + std::to_string(nice) + ".";
    else
        notices.message = "Thread " + row.name + ": " + std::strerror(errno) + ".";
}

} // namespace demo
