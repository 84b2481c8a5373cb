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
    CallScope::Place place;
    m_data->snapshotGroup.reset(m_data->render, m_data->snapshotGroup.bareTree());
    m_data->render.clearDiffTable();
    m_data->render.clearSnapshotControl();
    // "Save diff" may hold the comparison while it drops the store.
    CallScope::retire(std::move(m_data->statsAnalyzer), std::move(place));
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

void System::takeSnapshot()
{
    SnapshotValues values;
    values.reserve(m_data->render.counters.size());
    m_data->forEachCounterPath([&](unsigned, const std::string& path, const Counter& counter) {
        values.emplace_back(path, counter.getter());
    });
    // A getter may have dropped the store.
    if (!m_data->statsAnalyzer)
        return;
    m_data->statsAnalyzer->saveSnapshot(std::move(values));
    m_data->publishSnapshots();
}

RecordedSnapshot System::recordSnapshot()
{
    const CallScope call; // the store outlives a getter that drops it
    if (!m_data->statsAnalyzer)
        return {{}, "snapshots are off"};
    takeSnapshot();
    const StatisticsAnalyzer* store = m_data->statsAnalyzer.get();
    if (!store || store->snapshots.empty())
        return {{}, "snapshots were turned off or cleared meanwhile"};
    const StatisticsAnalyzer::Snapshot& taken = store->snapshots.back();
    return {store->pathOf(taken.folder) + '/' + taken.name, taken.problem};
}

void System::updateSnapshots()
{
    m_data->publishSnapshots();
}

void System::clearSnapshots()
{
    m_data->statsAnalyzer->clearSnapshots();
    m_data->snapshotGroup.clearSnapshots();
}

void System::Data::publishSnapshots()
{
    statsAnalyzer->forEachSnapshot([this](const StatisticsAnalyzer::Snapshot& snapshot) {
        const auto onChange = [this, index = snapshot.index](bool compared) {
            if (!statsAnalyzer)
                return;
            if (compared)
                statsAnalyzer->addToDiff(index);
            else
                statsAnalyzer->removeFromDiff(index);
        };
        const std::string note = snapshot.problem.empty() ? "" : "Not on disk: " + snapshot.problem;
        snapshotGroup.addSnapshot(snapshot.name, snapshot.folder, onChange, render, note);
    });
    applyToSnapshots(render.options);
}

void System::Data::applyToSnapshots(const Options& options)
{
    snapshotGroup.sort(options.sortSnapshots, render);
    if (statsAnalyzer)
        statsAnalyzer->diffTable.setTolerance(options.compareTolerance);
}

} // namespace statistics
