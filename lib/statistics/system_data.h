#pragma once

#include "groups.h"
#include "render.h"
#include "rollback.h"
#include "statistics_analyzer.h"
#include "tree.h"

#include <statistics/system.h>

#include <memory>
#include <string>
#include <utility>

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
    /// Calls `visit(id, path, counter, value)` with the value that the getter gives now. A getter that
    /// removes its own counter is still visited: its value was read.
    template<typename Visit>
    void readCounters(const Visit& visit)
    {
        forEachCounter([&](unsigned id, Counter& counter) {
            std::string path = tree.path(id, render);
            CounterValue value = counter.getter();
            visit(id, std::move(path), counter, std::move(value));
        });
    }
    /// True if the node still shows this counter.
    bool holds(unsigned id, const Counter& counter);

    /// Shows every record of the store in the panel. Those that are shown already stay as they are.
    void publishSnapshots();

    Tree tree;
    Render render;
    PresetGroup presetGroup;
    SnapshotGroup snapshotGroup;
    std::unique_ptr<StatisticsAnalyzer> statsAnalyzer; ///< null while snapshots are off

    static std::unique_ptr<System> s_system; ///< null while the system is down
};

} // namespace statistics
