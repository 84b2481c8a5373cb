#pragma once

#include "measure.h"

#include <statistics/value.h>

#include <optional>
#include <string>
#include <vector>

namespace demo {

/// What the operating system tells of the whole machine. A value that it doesn't tell here is `Empty`, and so
/// is every rate until the second reading.
struct MachineReading {
    statistics::CounterValue load1, load5, load15; ///< tasks that run or wait for a processor, mean
    statistics::CounterValue memoryUsedPercent;    ///< what isn't available for new work
    statistics::CounterValue availableMiB;
    statistics::CounterValue cachedMiB;
    statistics::CounterValue swapUsedMiB;
    statistics::CounterValue processorPressure; ///< percent of the last 10 s in which something waited
    statistics::CounterValue memoryPressure;
    statistics::CounterValue storagePressure;
    statistics::CounterValue contextSwitches;         ///< per second
    statistics::CounterValue newProcesses;            ///< per second
    std::vector<statistics::CounterValue> processors; ///< percent busy, one each
};

class MachineProbe {
public:
    /// Counts the processors, those between that are offline, too; the number stays. `folder` is "/proc", or
    /// where another machine's is mounted.
    explicit MachineProbe(std::string folder);

    /// Reads everything anew.
    void read();
    const MachineReading& reading() const { return m_reading; }

private:
    /// Of the kernel's clock, since the machine started.
    struct Ticks {
        double busy;
        double all;
    };

    struct Processor {
        std::string key; ///< of its line in /proc/stat
        std::optional<Ticks> last;
    };

    static std::optional<Ticks> parseTicks(const std::string& stat, const std::string& key);

    std::string textOf(const char* file) const;
    statistics::CounterValue readPressure(const char* file) const;
    void readLoad();
    void readMemory();
    void readProcessors(const std::string& stat);

    std::string m_folder;
    MachineReading m_reading;
    std::vector<Processor> m_processors;
    Rate m_contextSwitches, m_newProcesses;
};

} // namespace demo
