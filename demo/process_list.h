#pragma once

#include "tasks.h"

#include <statistics/value.h>

#include <string>
#include <vector>

namespace demo {

struct ProcessRow {
    TaskKey key;
    std::string name; ///< visible characters only
    const char* state = "";
    int threads = 0;
    int nice = 0;
    double processorSeconds = 0;
    statistics::CounterValue loadPercent;
    double residentMiB = 0;
};

/// Reads the processes of the machine. With some thousand of them that takes longer than a frame.
class ProcessList {
public:
    /// `folder` is "/proc", or where another machine's is mounted.
    explicit ProcessList(std::string folder) : m_folder(std::move(folder)) {}

    std::vector<ProcessRow> read();

private:
    std::string m_folder;
    TaskLoads m_loads;
};

/// As one would type it; empty for kernel threads and for what is gone.
std::string commandLine(const std::string& folder, const TaskKey& process);

} // namespace demo
