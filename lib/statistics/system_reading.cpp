// Reading all counters now: for warnings, for snapshots, and for the host's own code.

#include "system_data.h"

#include "judging.h"
#include "path.h"

#include <utility>

namespace statistics {

namespace {

/// Runs the getter. One that removes its own counter is still read: the counter lives until the walk is over.
CounterReading read(unsigned id, const std::string& path, const Counter& counter)
{
    CounterReading reading{id, path, counter.getter(), nullptr, nullptr, false};
    if (counter.hasLimits) {
        reading.min = &counter.min;
        reading.max = &counter.max;
        reading.outside = reading.value < counter.min || reading.value > counter.max;
    }
    return reading;
}

} // namespace

std::list<std::string> System::collectWarnings() const
{
    std::list<std::string> warnings;
    Data::PathBuilder paths(*m_data);
    m_data->forEachCounter([&](const Data::CounterList::Entry& entry) {
        // A getter may have removed the counter: then there is nothing left to warn about.
        if (!isWithinLimits(*entry.counter) && m_data->holds(entry))
            warnings.push_back(paths.path(entry));
    });
    return warnings;
}

void System::forEachCounter(const std::function<void(const CounterReading&)>& visit, bool withPaths) const
{
    if (!visit)
        return;
    if (withPaths)
        return m_data->forEachCounterPath([&](unsigned id, const std::string& path, const Counter& counter) {
            visit(read(id, path, counter));
        });
    const std::string noPath;
    m_data->forEachListedCounter(
        [&](unsigned id, const Counter& counter) { visit(read(id, noPath, counter)); });
}

std::uint64_t System::revision() const
{
    return m_data->tree.revision();
}

std::string System::path(unsigned id) const
{
    const Tree& tree = m_data->tree;
    return tree.contains(id) ? tree.path(id, m_data->render) : std::string();
}

CounterHistory System::history(unsigned id) const
{
    const Tree& tree = m_data->tree;
    const Render& render = m_data->render;
    if (!tree.contains(id) || render.itemType(tree.item(id)) != ItemType::Counter)
        return {};
    const unsigned slot = itemSlot(tree.item(id));
    return {render.counterSchedule.period(slot), render.history.past(slot).samples()};
}

std::shared_ptr<const System::Data::CounterList> System::Data::listCounters()
{
    if (counterList && counterList->revision == tree.revision())
        return counterList;
    CounterList list{tree.revision(), {}};
    list.entries.reserve(render.counters.size());
    Tree::Walk walk(tree);
    forEachCounterLeft(walk, [&](const CounterList::Entry& entry) { list.entries.push_back(entry); });
    counterList = std::make_shared<const CounterList>(std::move(list));
    return counterList;
}

const std::string& System::Data::PathBuilder::path(const CounterList::Entry& entry)
{
    const Tree& tree = m_data.tree;
    if (entry.spot.parent != m_parent || tree.revision() != m_revision) {
        m_path = tree.path(entry.spot.parent, m_data.render);
        m_parent = entry.spot.parent;
        m_length = m_path.size();
        m_revision = tree.revision();
    }
    m_path.resize(m_length);
    appendName(m_path, m_data.render.counters[entry.slot].name);
    return m_path;
}

bool System::Data::holds(const CounterList::Entry& entry) const
{
    return render.counters.contains(entry.slot) && render.counters[entry.slot].counter.get() == entry.counter;
}

} // namespace statistics
