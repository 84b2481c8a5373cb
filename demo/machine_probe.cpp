#include "machine_probe.h"

#include "files.h"
#include "proc_text.h"

#include <algorithm>

namespace demo {

using statistics::CounterValue;

namespace {

/// How many processors there are up to the last one that the text tells of.
std::size_t countProcessors(const std::string& stat)
{
    constexpr double kMost = 65536;
    std::size_t count = 0;
    for (const std::string_view word : wordsOf(stat)) {
        const auto number = word.substr(0, 3) == "cpu" ? toNumber(word.substr(3)) : std::nullopt;
        if (number && *number >= 0 && *number < kMost)
            count = std::max(count, static_cast<std::size_t>(*number) + 1);
    }
    return count;
}

} // namespace

MachineProbe::MachineProbe(std::string folder) : m_folder(std::move(folder))
{
    const std::size_t count = countProcessors(textOf("stat"));
    for (std::size_t i = 0; i < count; ++i)
        m_processors.push_back({"cpu" + std::to_string(i) + " ", {}});
    m_reading.processors.resize(count);
}

std::string MachineProbe::textOf(const char* file) const
{
    return readText(m_folder + "/" + file).value_or("");
}

/// "some avg10=1.25 avg60=..." gives 1.25.
CounterValue MachineProbe::readPressure(const char* file) const
{
    constexpr std::string_view kKey = "avg10=";
    const std::string text = textOf(file);
    const auto line = lineOf(text, "some");
    const std::size_t start = line ? line->find(kKey) : std::string_view::npos;
    if (start == std::string_view::npos)
        return {};
    return toValue(toNumber(line->substr(start + kKey.size())));
}

void MachineProbe::read()
{
    const double now = clockSeconds();
    readLoad();
    readMemory();
    const std::string stat = textOf("stat");
    readProcessors(stat);
    m_reading.contextSwitches = toValue(m_contextSwitches.perSecond(numberOf(stat, "ctxt "), now));
    m_reading.newProcesses = toValue(m_newProcesses.perSecond(numberOf(stat, "processes "), now));
    m_reading.processorPressure = readPressure("pressure/cpu");
    m_reading.memoryPressure = readPressure("pressure/memory");
    m_reading.storagePressure = readPressure("pressure/io");
}

void MachineProbe::readLoad()
{
    const std::string text = textOf("loadavg");
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
    const std::string info = textOf("meminfo");
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

/// The line tells user, nice, system, idle, iowait, irq, softirq, steal, and then what user holds already.
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
