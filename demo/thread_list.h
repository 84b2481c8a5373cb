#pragma once

#include "tasks.h"

#include <statistics/value.h>

#include <string>
#include <vector>

namespace demo {

struct ThreadRow {
    TaskKey key;
    std::string name; ///< visible characters only
    const char* state = "";
    int nice = 0;
    double processorSeconds = 0;
    statistics::CounterValue loadPercent;
    statistics::CounterValue voluntarySwitches;
    statistics::CounterValue involuntarySwitches;
};

/// Where the kernel tells of the threads of this process.
constexpr const char* kOwnThreads = "/proc/self/task";

/// Reads the threads of one process.
class ThreadList {
public:
    explicit ThreadList(std::string folder) : m_folder(std::move(folder)) {}

    std::vector<ThreadRow> read();

private:
    std::string m_folder;
    TaskLoads m_loads;
};

} // namespace demo
