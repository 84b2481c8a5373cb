// Memory that fails inside a call of the host: the call is done whole or not at all.
#include "support/allocations.h"
#include "support/files.h"
#include "support/panel.h"
#include "support/test_access.h"

#include <functional>
#include <memory>
#include <new>

namespace {

using namespace statistics;

constexpr const char* kLong = "a text that is longer than what a string holds without memory of its own";

class MemoryFailure : public test::Panel {
protected:
    using State = std::vector<std::string>;

    /// Items of each kind, two presets; with `full`, the next node makes the tree grow, the next counter its
    /// pool, and there is a past.
    void build(bool full)
    {
        System::shutdown();
        System::initialize();
        group = system().createLabel("group");
        system().createCounter("counter", keyed(), 0.0f, group);
        id = system().createTable(
            "table", [] { return std::size_t{3}; }, 0.0f, group);
        model = system().getTable(id);
        for (const char* caption : {"column", "other"})
            model->addColumn(
                caption, [](std::size_t row) { return CounterValue(-static_cast<int>(row)); }, 0.5f);
        for (const char* name : {"A", "B", "C"})
            system().createPreset(name, {{"key", {1.0f, 2.0f}}});
        if (full)
            setOption(&Options::history, 4);
        const auto& counters = TestAccess::render().counters;
        while (full && counters.nextIndex() < counters.size())
            system().createChildrenCounter(std::to_string(counters.nextIndex()), 0, 0.0f, "", 0);
        sample();
        while (full && TestAccess::tree().nextId() < TestAccess::tree().m_nodes.size())
            system().createLabel(std::to_string(TestAccess::tree().nextId()));
    }

    /// Three snapshots, all but the last of them compared; new ones go into `folder`.
    void buildSnapshots(const std::string& folder)
    {
        build(false);
        std::filesystem::remove_all(disk("root"));
        disk.write("root/old/a.csv", "sep=\t\nCaption\tValue\ngroup/counter\t7\n");
        disk.write("root/a file", "");
        if (folder.empty())
            return;
        EXPECT_TRUE(system().createStatsAnalyzer(disk("root"), folder, [] {}));
        store().snapshots.push_back({1, "b.csv", "old", {{kLong, std::string(kLong)}}});
        store().snapshots.push_back({2, "c.csv", "old", {{kLong, std::string("other")}, {"c", 3.0f}}});
        TestAccess::updateSnapshots();
        store().addToDiff(0);
        store().addToDiff(1);
    }
    static StatisticsAnalyzer& store() { return *TestAccess::data().statsAnalyzer; }

    template<typename Pool>
    static std::string liveSlots(const Pool& pool)
    {
        std::string live;
        for (auto slot = pool.begin(); slot != pool.end(); slot = pool.next(slot))
            live += std::to_string(slot) + ' ';
        return live;
    }

    State state()
    {
        const Render& render = TestAccess::render();
        State all = {liveSlots(render.labels),
                     liveSlots(render.counters) + '/' + liveSlots(render.printedLimits),
                     liveSlots(render.tables),
                     liveSlots(render.presets),
                     std::to_string(TestAccess::limitPresets().size()),
                     std::to_string(system().getActivePreset()),
                     std::to_string(system().options().history),
                     std::to_string(system().history(getItemIndex("group/counter")).samples.size())};
        const Tree& tree = TestAccess::tree();
        for (auto node = tree.m_nodes.begin(); node != tree.m_nodes.end(); node = tree.m_nodes.next(node))
            all.push_back(std::to_string(node) + ' ' + system().path(node));
        for (auto slot = render.counters.begin(); slot != render.counters.end();
             slot = render.counters.next(slot)) {
            const ItemCounter& item = render.counters[slot];
            const statistics::ShownLimits* shown = render.shownLimits(item);
            all.push_back((shown ? shown->texts.minText : "") + item.counter->min.toString("%f"));
        }
        for (auto slot = render.tables.begin(); slot != render.tables.end(); slot = render.tables.next(slot))
            describe(*render.tables[slot].table, all);
        describeSnapshots(all);
        return all;
    }

    void describeSnapshots(State& all) const
    {
        const Render& render = TestAccess::render();
        const SnapshotGroup& shown = TestAccess::data().snapshotGroup;
        all.push_back(liveSlots(render.checkboxes) + liveSlots(shown.tree.m_nodes));
        for (auto box = render.checkboxes.begin(); box != render.checkboxes.end();
             box = render.checkboxes.next(box))
            all.push_back(render.checkboxes[box].note);
        all.push_back(std::to_string(shown.hasControls()) + std::to_string(bool(render.saveDiffFunctor)));
        for (const auto& entry : std::filesystem::recursive_directory_iterator(disk("")))
            all.back() += entry.is_regular_file() ? " file" : "";
        if (!TestAccess::data().statsAnalyzer)
            return;
        for (const StatisticsAnalyzer::Snapshot& snapshot : store().snapshots)
            all.push_back(snapshot.folder + std::to_string(snapshot.values.size()) + snapshot.problem);
        for (const DiffTableRow& row : store().diffTable.m_rows) {
            all.push_back(row.caption + std::to_string(row.changed));
            for (const CounterValue& value : row.values)
                all.back() += ' ' + value.toString(nullptr);
        }
    }

    static void describe(const Table& table, State& all)
    {
        all.push_back(std::to_string(table.m_header.size()) + std::to_string(table.m_rowActions.size()) +
                      std::to_string(table.m_sortAscending) + std::to_string(table.m_sortColumn));
        for (const std::size_t row : table.m_order)
            all.back() += ' ' + std::to_string(row);
    }

    void expectAllOrNothing(const char* what, const std::function<void()>& call,
                            const std::function<void()>& prepare)
    {
        prepare();
        const State before = state();
        call();
        const State after = state();
        for (std::size_t nth = 1;; ++nth) {
            SCOPED_TRACE(std::string(what) + ", allocation " + std::to_string(nth));
            prepare();
            if (succeeds(call, nth)) {
                EXPECT_EQ(state(), after);
                return;
            }
            EXPECT_EQ(state(), before);
            call();
            EXPECT_EQ(state(), after);
            show();
        }
    }

    static bool succeeds(const std::function<void()>& call, std::size_t nth)
    {
        const test::FailingAllocation failing(nth);
        try {
            call();
            return true;
        } catch (const std::bad_alloc&) {
            return false;
        }
    }

    static std::unique_ptr<Counter> keyed()
    {
        return std::make_unique<Counter>([] { return CounterValue(1); }, "", "%.20f", "key");
    }

    unsigned group = 0;
    unsigned id = 0;
    Table* model = nullptr;
    test::TempDir disk;
};

TEST_F(MemoryFailure, leavesACallDoneOrAsIfItHadntBeenMade)
{
    const auto action = [held = std::string(kLong)](std::size_t) {};
    const std::pair<const char*, std::function<void()>> calls[] = {
        {"label", [&] { system().createLabel(kLong, group); }},
        {"counter", [&] { system().createCounter(kLong, keyed(), 0.0f, group); }},
        {"sum", [&] { system().createChildrenCounter(kLong, 0, 0.0f, "%g", group); }},
        {"sum by key", [&] { system().createChildrenCounter(kLong, 0, 0.0f, "key", "", kLong, group); }},
        {"sum with limits", [&] { system().createChildrenCounter(kLong, 0, 0.0f, 1, 2, "", kLong, group); }},
        {"table",
         [&] {
             system().createTable(
                 kLong, [] { return std::size_t{1}; }, 0.0f, group);
         }},
        {"column",
         [&] {
             model->addColumn(
                 kLong, [](std::size_t) { return CounterValue(1); }, 0.5f);
         }},
        {"sort", [&] { model->sort(1, false); }},
        {"cell", [&] { EXPECT_EQ(getTableCell(id, 1, 0), "-1"); }},
        {"row action", [&] { addRowAction(id, kLong, action); }},
        {"default action", [&] { setDefaultAction(id, action); }},
        {"clipboard action", [&] { addClipboardAction(id); }},
        {"preset",
         [] {
             system().createPreset(kLong, {{"key", {3, 4}}}, std::make_unique<PresetSaveLoadParams>());
         }},
        {"choice", [] { system().choosePreset(1); }},
        {"clearing", [] { system().clearPresets(); }},
        {"removal", [&] { system().removeItem(group); }},
        {"history", [] { setOption(&Options::history, 50); }},
        {"search", [] { EXPECT_NE(getItemIndex("group/table"), INVALID_ID); }},
        {"warnings", [] { EXPECT_EQ(system().collectWarnings().size(), 1u); }},
    };
    for (const auto& [what, call] : calls) {
        expectAllOrNothing(what, call, [this] { build(false); });
        expectAllOrNothing(what, call, [this] { build(true); });
    }
}

TEST_F(MemoryFailure, leavesSnapshotsAsIfTheCallHadntBeenMade)
{
    const std::function<void()> held = [held = std::string(kLong)] {};
    const auto record = [] { system().recordSnapshot(); };
    const struct {
        const char* what;
        const char* folder;
        std::function<void()> call;
    } cases[] = {
        {"on", "", [&] { EXPECT_TRUE(system().createStatsAnalyzer(disk("root"), "run", held)); }},
        {"off", "run", [] { EXPECT_TRUE(system().removeStatsAnalyzer()); }},
        {"a snapshot in a new folder", "run", record},
        {"a snapshot in a known folder", "old", record},
        {"a snapshot that can't be written", "a file", record},
        {"a tick", "run", [] { store().addToDiff(2); }},
        {"no tick", "run", [] { store().removeFromDiff(0); }},
        {"options", "run",
         [] {
             Options options;
             options.history = 50;
             options.compareTolerance = 2;
             system().setOptions(options);
         }},
    };
    for (const auto& [what, folder, call] : cases)
        expectAllOrNothing(what, call, [&, folder = folder] { buildSnapshots(folder); });
}

TEST_F(MemoryFailure, neverStopsARemoval)
{
    build(true);
    EXPECT_TRUE(succeeds([this] { system().removeItem(group); }, 1));
    EXPECT_EQ(getItemIndex("group"), INVALID_ID);
    show();
}

TEST_F(MemoryFailure, leavesASampleAndAFrameForTheNextOne)
{
    std::size_t failing = 0;
    bool whole = false;
    ui.setScene([&] {
        const auto turn = [] {
            system().update(0, true);
            system().draw();
        };
        whole = succeeds(turn, failing);
    });
    for (std::size_t nth = 1; !whole; ++nth) {
        build(false);
        model->m_header[0].format = "%300d";
        failing = nth;
        ui.frame();
        EXPECT_EQ(ui.imbalance(), "");
        const bool done = whole;
        failing = 0;
        ui.frame();
        const auto& rows = TestAccess::render().tables[0].rows;
        ASSERT_EQ(rows.size(), 3u);
        EXPECT_EQ(rows[0][0].size(), 300u);
        whole = done;
    }
}

} // namespace
