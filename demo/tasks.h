#pragma once

#include "measure.h"
#include "proc_text.h"

#include <statistics/value.h>

#include <cstdint>
#include <map>
#include <optional>
#include <string>

/// Processes and threads that come and go while they are looked at.
namespace demo {

/// A process or a thread. The kernel gives the number out again once it has ended; with the time of its start
/// it is known for good.
struct TaskKey {
    int id = 0;
    std::uint64_t start = 0; ///< as in `TaskStat`

    bool operator==(const TaskKey& other) const { return id == other.id && start == other.start; }
    bool operator<(const TaskKey& other) const
    {
        return id != other.id ? id < other.id : start < other.start;
    }
};

/// `folder` is "/proc" or a process's "task". Nothing if no such task is there.
std::optional<TaskStat> statOf(const std::string& folder, int id);
/// Whether the task is still there, and not another one with its number.
bool isAlive(const std::string& folder, const TaskKey& task);
/// One of the kernel's files about the task; nothing if it is gone.
std::optional<std::string> readOf(const std::string& folder, const TaskKey& task, const char* file);

/// The processor load of tasks, in percent of one processor.
class TaskLoads {
public:
    /// Starts a reading: tasks that aren't asked for until the next one are forgotten.
    void begin()
    {
        m_before.swap(m_now);
        m_now.clear();
        m_when = clockSeconds();
    }

    statistics::CounterValue percent(const TaskKey& task, double processorSeconds)
    {
        const auto known = m_before.find(task);
        Rate rate = known == m_before.end() ? Rate() : known->second;
        const auto share = rate.perSecond(processorSeconds, m_when);
        m_now[task] = rate;
        return toValue(share, 100);
    }

private:
    std::map<TaskKey, Rate> m_before, m_now;
    double m_when = 0; ///< seconds
};

} // namespace demo
