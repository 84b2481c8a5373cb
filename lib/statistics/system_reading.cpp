// Reading all counters now: for warnings, for snapshots, and for the host's own code.

#include "system_data.h"

#include <utility>

namespace statistics {

namespace {

CounterReading readingOf(unsigned id, const std::string& path, const Counter& counter, CounterValue value)
{
    if (!counter.hasLimits)
        return {id, path, std::move(value), nullptr, nullptr, false};
    const bool outside = value < counter.min || value > counter.max;
    return {id, path, std::move(value), &counter.min, &counter.max, outside};
}

} // namespace

std::list<std::string> System::collectWarnings() const
{
    std::list<std::string> warnings;
    m_data->forEachCounter([&](unsigned id, Counter& counter) {
        // A getter may have removed the counter: then there is nothing left to warn about.
        if (!counter.withinLimits() && m_data->holds(id, counter))
            warnings.push_back(m_data->tree.path(id, m_data->render));
    });
    return warnings;
}

void System::forEachCounter(const std::function<void(const CounterReading&)>& visit) const
{
    if (!visit)
        return;
    m_data->readCounters([&](unsigned id, const std::string& path, const Counter& counter,
                             CounterValue value) { visit(readingOf(id, path, counter, std::move(value))); });
}

std::string System::path(unsigned id) const
{
    const Tree& tree = m_data->tree;
    return tree.contains(id) ? tree.path(id, m_data->render) : std::string();
}

bool System::Data::holds(unsigned id, const Counter& counter)
{
    return tree.contains(id) && render.getCounter(tree.item(id)) == &counter;
}

} // namespace statistics
