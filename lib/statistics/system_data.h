#pragma once

#include "filter.h"
#include "groups.h"
#include "path.h"
#include "render.h"
#include "rollback.h"
#include "statistics_analyzer.h"
#include "tree.h"

#include <statistics/system.h>

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
    /// Calls `visit(id, counter)` for every counter, in tree order. It may run functors: a counter that is
    /// removed meanwhile keeps its ground until the walk is over.
    template<typename Visit>
    void forEachCounter(const Visit& visit)
    {
        tree.forEachNode([&](unsigned id) {
            if (Counter* counter = render.getCounter(tree.item(id)))
                visit(id, *counter);
        });
    }
    /// Calls `visit(id, path, counter)` for every counter, in tree order, as above. The path is the walk's:
    /// good until `visit` returns, whatever that removes.
    template<typename Visit>
    void forEachCounterPath(const Visit& visit)
    {
        std::string path;
        std::vector<std::size_t> lengths{0}; ///< of the path at each depth, down to the present node
        tree.forEachNode([&](unsigned id) {
            const unsigned depth = tree.depth(id);
            path.resize(lengths[depth - 1]);
            appendName(path, render.itemName(tree.item(id)));
            lengths.resize(depth);
            lengths.push_back(path.size());
            if (Counter* counter = render.getCounter(tree.item(id)))
                visit(id, path, *counter);
        });
    }
    /// Calls `visit(id, counter)` for every counter that there is now, in tree order, from a list that is
    /// made anew only when the tree has changed. One that is removed meanwhile is left out, a new one too.
    template<typename Visit>
    void forEachListedCounter(const Visit& visit)
    {
        const CallScope call;
        const std::shared_ptr<const CounterList> list = listCounters();
        for (const CounterList::Entry& entry : list->entries)
            if (tree.revision() == list->revision || holds(entry.id, *entry.counter))
                visit(entry.id, *entry.counter);
    }
    /// True if the node still shows this counter.
    bool holds(unsigned id, const Counter& counter);

    /// Draws the tree, inside an ImGui frame.
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

    /// The counters at one revision of the tree.
    struct CounterList {
        struct Entry {
            unsigned id;
            Counter* counter;
        };
        std::uint64_t revision;
        std::vector<Entry> entries;
    };
    std::shared_ptr<const CounterList> listCounters();

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
