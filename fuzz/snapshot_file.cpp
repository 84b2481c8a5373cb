#include "statistics_analyzer.h"
#include "targets.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>

namespace {

using namespace statistics;

/// One folder for the process, so that each input costs a file and nothing more.
class Root {
public:
    Root()
        : m_path(std::filesystem::temp_directory_path() / ("fuzz_" + std::to_string(std::random_device()())))
    {
        std::filesystem::create_directories(m_path / "run");
    }
    ~Root() { std::filesystem::remove_all(m_path); }
    Root(const Root&) = delete;
    Root& operator=(const Root&) = delete;

    std::string path() const { return m_path.string(); }
    std::string file() const { return (m_path / "run" / "run.csv").string(); }

private:
    std::filesystem::path m_path;
};

void require(bool condition)
{
    if (!condition)
        std::abort();
}

void requireSound(const SnapshotValues& values, std::size_t bytes)
{
    require(values.size() <= bytes);
    for (const auto& [caption, value] : values) {
        require(value.isDecimal());
        require(caption.find('\t') == std::string::npos && caption.find('\n') == std::string::npos);
    }
}

} // namespace

void fuzz::snapshotFile(const std::uint8_t* data, std::size_t size)
{
    static const Root root;
    std::ofstream(root.file(), std::ios::binary)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    StatisticsAnalyzer store(root.path(), "run");
    require(store.snapshots.size() == 1);
    const SnapshotValues first = store.snapshots[0].values;
    requireSound(first, size);

    // What was read is written and read again: the same captions, and values of three decimals.
    store.writeSnapshot("run/run.csv", first);
    store.loadSnapshot("run.csv", "run");
    const SnapshotValues& second = store.snapshots[1].values;
    require(second.size() == first.size());
    for (std::size_t entry = 0; entry < first.size(); ++entry)
        require(second[entry].first == first[entry].first);

    store.addToDiff(0);
    store.addToDiff(1);
    for (const DiffTableRow& row : store.diffTable.m_rows)
        require(row.values.size() == 2);
    store.removeFromDiff(0);
    require(store.diffTable.m_columns.size() == 1);
}
