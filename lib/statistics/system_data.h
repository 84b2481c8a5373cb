#pragma once

#include "filter.h"
#include "groups.h"
#include "judging.h"
#include "render.h"
#include "rollback.h"
#include "statistics_analyzer.h"
#include "tree.h"

#include <statistics/system.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace statistics {

/// The limits that a preset has under the counter's key, null if there are none.
const Limit* limitOf(const Counter& counter, const LimitMap& limits);

/// The parts of the `System`, each destroyed before those above it.
struct System::Data {
    Data() : presetGroup(render), snapshotGroup(render) {}

    /// The id of the child of that name, or of a new node for the item that `makeItem` gives. INVALID_ID,
    /// with a report, if there is no such parent or the item's pool is full.
    template<typename MakeItem>
    unsigned findOrCreate(const std::string& name, unsigned parent, const MakeItem& makeItem)
    {
        const unsigned found = tree.findChild(parent, name, render);
        if (found != INVALID_ID || !tree.checkParent(parent))
            return found;
        const unsigned item = makeItem();
        if (item == INVALID_ID)
            return INVALID_ID;
        Rollback making([&] { render.removeItem(item); });
        const unsigned node = tree.addChild(item, parent);
        making.done();
        return node;
    }

    /// False, with a report, inside a functor: what moves the whole `System` on can't be called there.
    static bool isOutsideFunctors();
    /// Calls `visit(entry)` for every counter, in tree order. It may run functors: a counter that is
    /// removed meanwhile keeps its ground until the walk is over.
    template<typename Visit>
    void forEachCounter(const Visit& visit)
    {
        const CallScope call;
        const std::shared_ptr<const CounterList> list = listCounters();
        Tree::Walk walk(tree);
        const std::uint64_t revision = list->revision;
        const CounterList::Entry* entry = list->entries.data();
        const CounterList::Entry* const end = entry + list->entries.size();
        const CounterList::Entry* ahead = entry + std::min(list->entries.size(), CounterList::kAhead);
        for (; entry != end; ++entry) {
            if (ahead != end)
                prefetchCounter(*(ahead++)->counter);
            walk.moveTo(entry->spot);
            visit(*entry);
            if (tree.revision() != revision)
                return forEachCounterLeft(walk, visit);
        }
    }
    /// Calls `visit(id, path, counter)` for every counter, in tree order, as above. The path is the walk's:
    /// good until `visit` returns, whatever that removes.
    template<typename Visit>
    void forEachCounterPath(const Visit& visit)
    {
        PathBuilder paths(*this);
        forEachCounter([&](const CounterList::Entry& entry) {
            visit(entry.spot.id, paths.path(entry), *entry.counter);
        });
    }
    /// Calls `visit(id, counter)` for every counter that there is now, in tree order. `visit` may run
    /// functors: a counter that is removed meanwhile is left out, a new one too.
    template<typename Visit>
    void forEachListedCounter(const Visit& visit)
    {
        const CallScope call;
        const std::shared_ptr<const CounterList> list = listCounters();
        for (const CounterList::Entry& entry : list->entries)
            if (tree.revision() == list->revision || holds(entry))
                visit(entry.spot.id, *entry.counter);
    }

    /// Draws the tree, inside an ImGui frame; runs host functors.
    void drawItems();
    /// Reads all counters for a snapshot; runs their getters.
    SnapshotValues readCounters();
    /// Adds a snapshot to the store, to the panel and to the disk. All of it, or an exception and nothing.
    RecordedSnapshot record(SnapshotValues values);
    /// Shows every record of the store in the panel. Those that are shown already stay as they are.
    void publishSnapshots();
    /// The same for one record (`SnapshotGroup::addSnapshot`).
    unsigned publish(const StatisticsAnalyzer::Snapshot& snapshot);
    /// Order of the check boxes, flags of the comparison.
    void applyToSnapshots(const Options& options);

    /// The counters at one revision of the tree. Going through them takes no look at tree and pool, which are
    /// many times as large.
    struct CounterList {
        struct Entry {
            Tree::Spot spot;
            unsigned slot; ///< in its pool
            Counter* counter;
        };
        static constexpr std::size_t kAhead =
            40; ///< entries, on the way from memory while others are visited

        std::uint64_t revision;
        std::vector<Entry> entries;
    };
    /// True if the counter is still there.
    bool holds(const CounterList::Entry& entry) const;
    /// Made anew only when the tree has changed.
    std::shared_ptr<const CounterList> listCounters();
    /// The same for the counters that the walk hasn't reached yet.
    template<typename Visit>
    void forEachCounterLeft(Tree::Walk& walk, const Visit& visit)
    {
        while (walk.next()) {
            const unsigned item = tree.item(walk.node());
            if (Counter* counter = render.getCounter(item))
                visit(CounterList::Entry{walk.spot(), itemSlot(item), counter});
        }
    }

    /// Joins paths for a walk: what siblings have in common is put together once.
    class PathBuilder {
    public:
        explicit PathBuilder(Data& data) : m_data(data) {}

        /// Good until the next call.
        const std::string& path(const CounterList::Entry& entry);

    private:
        Data& m_data;
        std::string m_path;
        unsigned m_parent = INVALID_ID; ///< whose path `m_path` begins with
        std::size_t m_length = 0;       ///< of the parent's path
        std::uint64_t m_revision = 0;   ///< that the parent belongs to; no tree has 0
    };

    Tree tree;
    Render render;
    Filter filter;                                  ///< of the tree
    std::shared_ptr<const CounterList> counterList; ///< derived from the tree when first needed
    PresetGroup presetGroup;
    SnapshotGroup snapshotGroup;
    std::unique_ptr<StatisticsAnalyzer> statsAnalyzer; ///< null while snapshots are off

    static std::unique_ptr<System> s_system; ///< null while the system is down
};

} // namespace statistics
