#pragma once

#include "measure.h"

#include <statistics/value.h>

namespace demo {

/// What the operating system tells of this process. A value that it doesn't tell here is `Empty`, and so is
/// every rate until the second reading.
struct ProcessReading {
    statistics::CounterValue userPercent;   ///< of one processor
    statistics::CounterValue systemPercent; ///< of one processor
    statistics::CounterValue residentMiB;
    statistics::CounterValue peakMiB;
    statistics::CounterValue virtualMiB;
    statistics::CounterValue minorFaults;         ///< per second: pages that were in memory already
    statistics::CounterValue majorFaults;         ///< per second: pages that had to be read from disk
    statistics::CounterValue voluntarySwitches;   ///< per second: it waited for something
    statistics::CounterValue involuntarySwitches; ///< per second: another one got the processor
    statistics::CounterValue readKiB;             ///< per second, from storage
    statistics::CounterValue writtenKiB;          ///< per second, to storage
    statistics::CounterValue threads;
    statistics::CounterValue openFiles;
};

class ProcessProbe {
public:
    /// Reads everything anew.
    void read();
    const ProcessReading& reading() const { return m_reading; }

private:
    void readUsage(double now);
    void readStatus();
    void readStorage(double now);

    ProcessReading m_reading;
    Rate m_user, m_system, m_minor, m_major, m_voluntary, m_involuntary, m_read, m_written;
};

} // namespace demo
