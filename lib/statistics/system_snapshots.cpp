// Snapshots: the store on demand, its controls on the panel, and the taking of a snapshot.

#include "system_data.h"

#include "assertion.h"
#include "call_scope.h"

#include <utility>

namespace statistics {

namespace {

/// Takes back what turning snapshots on has done so far, unless all of it succeeds.
class [[nodiscard]] TurningOn {
public:
    explicit TurningOn(System::Data& data) : m_data(&data), m_bare(data.snapshotGroup.bareTree()) {}
    ~TurningOn()
    {
        if (!m_data)
            return;
        Render& render = m_data->render;
        m_data->snapshotGroup.reset(render, std::move(m_bare));
        render.clearDiffTable();
        m_data->statsAnalyzer = nullptr;
        render.takeSnapshotFunctor = nullptr;
        render.clearTreeFunctor = nullptr;
        render.clearTreeNoteFunctor = nullptr;
        const std::function<void()> dropped = std::exchange(render.saveDiffFunctor, nullptr);
    }
    TurningOn(const TurningOn&) = delete;
    TurningOn& operator=(const TurningOn&) = delete;
    void succeeded() { m_data = nullptr; }

private:
    System::Data* m_data;
    Tree m_bare;
};

} // namespace

bool System::createStatsAnalyzer(const std::string& root, const std::string& folder,
                                 std::function<void()> saveDiff)
{
    SnapshotGroup& group = m_data->snapshotGroup;
    if (group.hasControls())
        return false;
    // "Clear tree" deletes below these two: they must not lead elsewhere.
    if (!ORV_ASSERT(isRootName(root)) || !ORV_ASSERT(isFolderName(folder)))
        return false;
    auto store = std::make_unique<StatisticsAnalyzer>(root, folder);
    TurningOn turningOn(*m_data);
    m_data->statsAnalyzer = std::move(store);
    Render& render = m_data->render;
    group.addControl(render.createSnapshotControl([this] { takeSnapshot(); }, std::move(saveDiff),
                                                  [this] { clearSnapshots(); }));
    render.clearTreeNoteFunctor = [this] { return m_data->statsAnalyzer->describeClearing(); };
    group.addDiffTable(
        render.createDiffTable([this]() -> DiffTable& { return m_data->statsAnalyzer->diffTable; }));
    m_data->publishSnapshots();
    turningOn.succeeded();
    return true;
}

bool System::removeStatsAnalyzer()
{
    if (!m_data->snapshotGroup.hasControls())
        return false;
    const CallScope call;
    Tree bare = m_data->snapshotGroup.bareTree();
    // "Save diff" may hold the comparison while it drops the store.
    const CallScope::Owner<StatisticsAnalyzer> dropped(std::move(m_data->statsAnalyzer));
    m_data->snapshotGroup.reset(m_data->render, std::move(bare));
    m_data->render.clearDiffTable();
    m_data->render.clearSnapshotControl();
    return true;
}

const DiffTable& System::getDiffTable()
{
    static const DiffTable empty;
    if (!ORV_ASSERT_MESSAGE(m_data->statsAnalyzer,
                            "Cannot access statistics diff table. StatsAnalyzer instance was not created."))
        return empty;
    return m_data->statsAnalyzer->diffTable;
}

SnapshotValues System::Data::readCounters()
{
    SnapshotValues values;
    values.reserve(render.counters.size());
    forEachCounterPath([&](unsigned, const std::string& path, const Counter& counter) {
        values.emplace_back(path, counter.getter());
    });
    return values;
}

/// Written last: what memory fails for leaves nothing on disk, nor in the panel.
RecordedSnapshot System::Data::record(SnapshotValues values)
{
    StatisticsAnalyzer::Snapshot& taken = statsAnalyzer->addRecord(std::move(values));
    Rollback adding([&] { statsAnalyzer->snapshots.pop_back(); });
    const unsigned shown = publish(taken);
    Rollback publishing([&] { snapshotGroup.tree.removeItem(shown, render); });
    snapshotGroup.sort(render.options.sortSnapshots, render);
    render.clearTreeNote.clear();
    RecordedSnapshot recorded{statsAnalyzer->pathOf(taken.folder) + '/' + taken.name, {}};
    std::string* const note = snapshotGroup.findNote(taken.name, taken.folder, render);
    statsAnalyzer->writeRecord(taken); // what is on disk must not fail any more
    recorded.problem = taken.problem;
    // The box may be that of an earlier snapshot of this second, which has the same file.
    const bool isOnDisk = taken.problem.empty() || statsAnalyzer->hasFile(taken);
    if (note)
        *note = isOnDisk ? "" : "Not on disk: " + taken.problem;
    publishing.done();
    adding.done();
    return recorded;
}

void System::takeSnapshot()
{
    SnapshotValues values = m_data->readCounters();
    // A getter may have dropped the store.
    if (m_data->statsAnalyzer)
        m_data->record(std::move(values));
}

RecordedSnapshot System::recordSnapshot()
{
    if (!m_data->statsAnalyzer)
        return {{}, "snapshots are off"};
    SnapshotValues values = m_data->readCounters();
    if (!m_data->statsAnalyzer)
        return {{}, "snapshots were turned off meanwhile"};
    return m_data->record(std::move(values));
}

void System::updateSnapshots()
{
    m_data->publishSnapshots();
}

void System::clearSnapshots()
{
    m_data->render.clearTreeNote.clear();
    m_data->statsAnalyzer->clearSnapshots();
    m_data->snapshotGroup.clearSnapshots();
}

void System::Data::publishSnapshots()
{
    statsAnalyzer->forEachSnapshot(
        [this](const StatisticsAnalyzer::Snapshot& snapshot) { publish(snapshot); });
    applyToSnapshots(render.options);
}

unsigned System::Data::publish(const StatisticsAnalyzer::Snapshot& snapshot)
{
    const auto onChange = [this, index = snapshot.index](bool compared) {
        if (compared)
            statsAnalyzer->addToDiff(index);
        else
            statsAnalyzer->removeFromDiff(index);
    };
    return snapshotGroup.addSnapshot(snapshot.name, snapshot.folder, onChange, render);
}

void System::Data::applyToSnapshots(const Options& options)
{
    snapshotGroup.sort(options.sortSnapshots, render);
    if (statsAnalyzer)
        statsAnalyzer->diffTable.setTolerance(options.compareTolerance);
}

} // namespace statistics
