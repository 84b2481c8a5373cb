#include "machine_probe.h"

#include "files.h"
#include "proc_text.h"

#include <algorithm>

namespace demo {

using statistics::CounterValue;

namespace {

/// "some avg10=1.25 avg60=..." gives 1.25.
CounterValue readPressure(const char* path)
{
    constexpr std::string_view kKey = "avg10=";
    const std::string text = readText(path).value_or("");
    const auto line = lineOf(text, "some");
    const std::size_t start = line ? line->find(kKey) : std::string_view::npos;
    if (start == std::string_view::npos)
        return {};
    return toValue(toNumber(line->substr(start + kKey.size())));
}

} // namespace

MachineProbe::MachineProbe()
{
    const std::string stat = readText("/proc/stat").value_or("");
    for (int i = 0;; ++i) {
        std::string key = "cpu" + std::to_string(i) + " ";
        if (!lineOf(stat, key))
            break;
        m_processors.push_back({std::move(key), {}});
    }
    m_reading.processors.resize(m_processors.size());
}

void MachineProbe::read()
{
    const double now = clockSeconds();
    readLoad();
    readMemory();
    const std::string stat = readText("/proc/stat").value_or("");
    readProcessors(stat);
    m_reading.contextSwitches = toValue(m_contextSwitches.perSecond(numberOf(stat, "ctxt "), now));
    m_reading.newProcesses = toValue(m_newProcesses.perSecond(numberOf(stat, "processes "), now));
    m_reading.processorPressure = readPressure("/proc/pressure/cpu");
    m_reading.memoryPressure = readPressure("/proc/pressure/memory");
    m_reading.storagePressure = readPressure("/proc/pressure/io");
}

void MachineProbe::readLoad()
{
    const std::string text = readText("/proc/loadavg").value_or("");
    const auto words = wordsOf(text);
    const auto load = [&words](std::size_t index) {
        return index < words.size() ? toValue(toNumber(words[index])) : CounterValue();
    };
    m_reading.load1 = load(0);
    m_reading.load5 = load(1);
    m_reading.load15 = load(2);
}

void MachineProbe::readMemory()
{
    const std::string info = readText("/proc/meminfo").value_or("");
    const auto mebibytes = [&info](const char* key) -> std::optional<double> {
        const auto kibibytes = numberOf(info, key);
        return kibibytes ? std::optional(*kibibytes / 1024) : std::nullopt;
    };
    const auto total = mebibytes("MemTotal:");
    const auto available = mebibytes("MemAvailable:");
    const auto swapTotal = mebibytes("SwapTotal:");
    const auto swapFree = mebibytes("SwapFree:");
    m_reading.availableMiB = toValue(available);
    m_reading.cachedMiB = toValue(mebibytes("Cached:"));
    m_reading.memoryUsedPercent =
        total && available ? toValue(100 * (1 - *available / *total)) : CounterValue();
    m_reading.swapUsedMiB = swapTotal && swapFree ? toValue(*swapTotal - *swapFree) : CounterValue();
}

// The line tells user, nice, system, idle, iowait, irq, softirq, steal, and then what user holds already.
std::optional<MachineProbe::Ticks> MachineProbe::parseTicks(const std::string& stat, const std::string& key)
{
    constexpr std::size_t kIdle = 3, kWaiting = 4, kDistinct = 8;
    const auto line = lineOf(stat, key);
    if (!line)
        return std::nullopt;
    Ticks sum{0, 0};
    const auto words = wordsOf(*line);
    for (std::size_t i = 0; i < std::min(words.size(), kDistinct); ++i) {
        const double ticks = toNumber(words[i]).value_or(0);
        sum.all += ticks;
        if (i != kIdle && i != kWaiting)
            sum.busy += ticks;
    }
    return sum;
}

void MachineProbe::readProcessors(const std::string& stat)
{
    for (std::size_t i = 0; i < m_processors.size(); ++i) {
        const auto ticks = parseTicks(stat, m_processors[i].key);
        auto& last = m_processors[i].last;
        // A processor can be taken offline, and between two readings there may be no tick.
        std::optional<double> share;
        if (ticks && last && ticks->all > last->all)
            share = (ticks->busy - last->busy) / (ticks->all - last->all);
        m_reading.processors[i] = toValue(share, 100);
        last = ticks;
    }
}

} // namespace demo
