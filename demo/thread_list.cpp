#include "thread_list.h"

#include "files.h"
#include "texts/shown_text.h"

namespace demo {

namespace {

/// Finer than the ticks in "stat"; nothing on kernels without scheduler statistics.
std::optional<double> exactSeconds(const std::string& folder)
{
    const auto text = readText(folder + "/schedstat");
    const auto nanoseconds = text ? toNumber(*text) : std::nullopt;
    return nanoseconds ? std::optional(*nanoseconds * 1e-9) : std::nullopt;
}

} // namespace

std::vector<ThreadRow> ThreadList::read()
{
    m_loads.begin();
    std::vector<ThreadRow> rows;
    for (const int thread : numbersIn(m_folder)) {
        const auto stat = statOf(m_folder, thread);
        if (!stat)
            continue; // ended since the folder was listed
        const std::string folder = m_folder + "/" + std::to_string(thread);
        const std::string status = readText(folder + "/status").value_or("");
        ThreadRow row;
        row.key = {thread, stat->start};
        row.name = texts::visible(stat->name);
        row.state = stateName(stat->state);
        row.nice = stat->nice;
        row.processorSeconds = exactSeconds(folder).value_or(stat->processorSeconds);
        row.loadPercent = m_loads.percent(row.key, row.processorSeconds);
        row.voluntarySwitches = toCount(numberOf(status, "voluntary_ctxt_switches:"));
        row.involuntarySwitches = toCount(numberOf(status, "nonvoluntary_ctxt_switches:"));
        rows.push_back(std::move(row));
    }
    return rows;
}

} // namespace demo
