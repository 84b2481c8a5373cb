#include "process_probe.h"

#include "files.h"
#include "proc_text.h"

#include <sys/resource.h>
#include <sys/time.h>

namespace demo {

namespace {

double seconds(const timeval& time)
{
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
}

} // namespace

void ProcessProbe::read()
{
    const double now = clockSeconds();
    readUsage(now);
    readStatus();
    readStorage(now);
    // The listing opens the folder: that descriptor is not the program's.
    const std::size_t listed = entriesOf("/proc/self/fd").size();
    m_reading.openFiles = toCount(listed > 0 ? std::optional(static_cast<double>(listed - 1)) : std::nullopt);
}

void ProcessProbe::readUsage(double now)
{
    rusage usage{};
    if (getrusage(RUSAGE_SELF, &usage) != 0)
        return;
    const auto rate = [now](Rate& of, long total) {
        return toValue(of.perSecond(static_cast<double>(total), now));
    };
    m_reading.userPercent = toValue(m_user.perSecond(seconds(usage.ru_utime), now), 100);
    m_reading.systemPercent = toValue(m_system.perSecond(seconds(usage.ru_stime), now), 100);
    m_reading.minorFaults = rate(m_minor, usage.ru_minflt);
    m_reading.majorFaults = rate(m_major, usage.ru_majflt);
    m_reading.voluntarySwitches = rate(m_voluntary, usage.ru_nvcsw);
    m_reading.involuntarySwitches = rate(m_involuntary, usage.ru_nivcsw);
}

void ProcessProbe::readStatus()
{
    const std::string status = readText("/proc/self/status").value_or("");
    const auto mebibytes = [&status](const char* key) { return toValue(numberOf(status, key), 1.0 / 1024); };
    m_reading.residentMiB = mebibytes("VmRSS:");
    m_reading.peakMiB = mebibytes("VmHWM:");
    m_reading.virtualMiB = mebibytes("VmSize:");
    m_reading.threads = toCount(numberOf(status, "Threads:"));
}

void ProcessProbe::readStorage(double now)
{
    const std::string io = readText("/proc/self/io").value_or("");
    const auto kibibytes = [&](const char* key, Rate& rate) {
        return toValue(rate.perSecond(numberOf(io, key), now), 1.0 / 1024);
    };
    m_reading.readKiB = kibibytes("read_bytes:", m_read);
    m_reading.writtenKiB = kibibytes("write_bytes:", m_written);
}

} // namespace demo
