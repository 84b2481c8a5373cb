#include "process_list.h"

#include "files.h"
#include "texts/shown_text.h"

#include <algorithm>

namespace demo {

std::vector<ProcessRow> ProcessList::read()
{
    m_loads.begin();
    std::vector<ProcessRow> rows;
    for (const int process : numbersIn(m_folder)) {
        const auto stat = statOf(m_folder, process);
        if (!stat)
            continue; // ended since the folder was listed
        ProcessRow row;
        row.key = {process, stat->start};
        row.name = texts::visible(stat->name);
        row.state = stateName(stat->state);
        row.threads = stat->threads;
        row.nice = stat->nice;
        row.processorSeconds = stat->processorSeconds;
        row.loadPercent = m_loads.percent(row.key, stat->processorSeconds);
        row.residentMiB = stat->residentMiB;
        rows.push_back(std::move(row));
    }
    return rows;
}

std::string commandLine(const std::string& folder, const TaskKey& process)
{
    std::string text = readOf(folder, process, "cmdline").value_or("");
    while (!text.empty() && text.back() == '\0')
        text.pop_back();
    std::replace(text.begin(), text.end(), '\0', ' ');
    return text;
}

} // namespace demo
