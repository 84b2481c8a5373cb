// Snapshots: taking, scanning, comparing and drawing the comparison.

#include "host.h"

#include <benchmark/benchmark.h>

#include <imgui_internal.h>

#include <fcntl.h>
#include <unistd.h>

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>

namespace {

using bench::Context;
using bench::Library;
using statistics::CounterValue;
using statistics::SnapshotValues;
using statistics::StatisticsAnalyzer;
using statistics::TestAccess;

namespace fs = std::filesystem;

/// A directory for the time of a benchmark.
class Folder {
public:
    Folder() : m_path(fs::temp_directory_path() / ("statistics_bench_" + std::to_string(getpid())))
    {
        fs::create_directories(m_path);
    }
    ~Folder() { fs::remove_all(m_path); }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    std::string path() const { return m_path.string(); }

private:
    fs::path m_path;
};

SnapshotValues entries(std::size_t count, float offset)
{
    SnapshotValues values;
    for (std::size_t index = 0; index < count; ++index)
        values.emplace_back("group/" + bench::name(index), static_cast<float>(index) * 0.5f + offset);
    return values;
}

void removeFiles(const std::string& folder)
{
    for (const fs::directory_entry& file : fs::directory_iterator(folder))
        fs::remove(file.path());
}

/// A new one that has taken its first snapshot: if one grew along, so would records and check boxes.
void renewStore(Library& library, const Folder& folder)
{
    library->removeStatsAnalyzer();
    library->createStatsAnalyzer(folder.path(), "run", nullptr);
    TestAccess::takeSnapshot();
    removeFiles(folder.path() + "/run");
}

void takeOurs(benchmark::State& state)
{
    const auto count = static_cast<std::size_t>(state.range(0));
    const std::vector<float> sources(count, 16.667f);
    const Folder folder;
    Library library;
    bench::addGroupedCounters(library, count, sources, 1.0f);
    renewStore(library, folder);
    for (auto _ : state) {
        TestAccess::takeSnapshot();
        state.PauseTiming();
        removeFiles(folder.path() + "/run");
        renewStore(library, folder);
        state.ResumeTiming();
    }
}

/// A line as in our files.
void appendLine(std::string& bytes, const std::string& caption, float value)
{
    char digits[64];
    const std::to_chars_result end =
        std::to_chars(digits, digits + sizeof(digits), value, std::chars_format::fixed, 3);
    bytes.append(caption) += '\t';
    bytes.append(digits, end.ptr) += '\n';
}

void writeByHand(const std::string& bytes, const std::string& unfinished, const std::string& path)
{
    const int file = ::open(unfinished.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (::write(file, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()) && ::close(file) == 0)
        std::rename(unfinished.c_str(), path.c_str());
}

std::string stampedName()
{
    const std::time_t now = std::time(nullptr);
    char stamp[32];
    std::strftime(stamp, sizeof(stamp), "run_%Y_%m_%d-%H_%M_%S.csv", std::localtime(&now));
    return stamp;
}

/// All lines in one piece, into a file of another name that is renamed when it is whole. What was taken is
/// kept as a record, as ours is.
void takeHand(benchmark::State& state)
{
    const auto count = static_cast<std::size_t>(state.range(0));
    const std::vector<float> sources(count, 16.667f);
    const Folder folder;
    const std::string run = folder.path() + "/run";
    std::vector<std::string> captions;
    for (std::size_t index = 0; index < count; ++index)
        captions.push_back("group " + std::to_string(index / 100) + "/" + bench::name(index));
    for (auto _ : state) {
        std::vector<std::pair<std::string, float>> record;
        record.reserve(count);
        std::string bytes = "sep=\t\nCaption\tValue\n";
        for (std::size_t index = 0; index < count; ++index) {
            record.emplace_back(captions[index], sources[index]);
            appendLine(bytes, captions[index], sources[index]);
        }
        fs::create_directories(run);
        writeByHand(bytes, folder.path() + "/hand.part", run + "/" + stampedName());
        state.PauseTiming();
        benchmark::DoNotOptimize(record);
        record = {};
        removeFiles(run);
        state.ResumeTiming();
    }
}

BENCHMARK(takeOurs)->Name("snapshot, take/ours")->Arg(100)->Arg(10000);
BENCHMARK(takeHand)->Name("snapshot, take/hand")->Arg(100)->Arg(10000);

constexpr std::size_t kEntriesPerFile = 100;

void writeFiles(const Folder& folder, std::size_t count)
{
    const SnapshotValues values = entries(kEntriesPerFile, 0.0f);
    const StatisticsAnalyzer store(folder.path(), "run");
    for (std::size_t file = 0; file < count; ++file)
        store.writeSnapshot("run/run_" + std::to_string(file) + ".csv", values);
}

void scanOurs(benchmark::State& state)
{
    const Folder folder;
    writeFiles(folder, static_cast<std::size_t>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(StatisticsAnalyzer(folder.path(), "run"));
}

std::vector<std::pair<std::string, float>> readByHand(const fs::path& path)
{
    std::vector<std::pair<std::string, float>> values;
    std::ifstream file(path);
    std::string line;
    while (std::getline(file, line)) {
        const std::size_t tab = line.find('\t');
        values.emplace_back(line.substr(0, tab), std::strtof(line.c_str() + tab + 1, nullptr));
    }
    return values;
}

void scanHand(benchmark::State& state)
{
    const Folder folder;
    writeFiles(folder, static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        std::vector<std::vector<std::pair<std::string, float>>> files;
        for (const fs::directory_entry& file : fs::directory_iterator(folder.path() + "/run"))
            if (file.is_regular_file())
                files.push_back(readByHand(file.path()));
        benchmark::DoNotOptimize(files);
    }
}

BENCHMARK(scanOurs)->Name("snapshot, scan files of 100 entries/ours")->Arg(10)->Arg(1000);
BENCHMARK(scanHand)->Name("snapshot, scan files of 100 entries/hand")->Arg(10)->Arg(1000);

constexpr std::size_t kCompared = 10000;

statistics::DiffTable comparison(std::size_t snapshots)
{
    statistics::DiffTable table;
    for (std::size_t snapshot = 0; snapshot < snapshots; ++snapshot)
        table.addSnapshot("run_" + std::to_string(snapshot), snapshot,
                          entries(kCompared, static_cast<float>(snapshot)));
    return table;
}

void compareOurs(benchmark::State& state)
{
    StatisticsAnalyzer store("no such directory", "run");
    for (std::size_t index = 0; index < static_cast<std::size_t>(state.range(0)); ++index)
        store.snapshots.push_back({index, "run", "run", entries(kCompared, static_cast<float>(index))});
    for (auto _ : state) {
        for (std::size_t index = 0; index < store.snapshots.size(); ++index)
            store.addToDiff(index);
        state.PauseTiming();
        store.diffTable.clear();
        state.ResumeTiming();
    }
}

void compareHand(benchmark::State& state)
{
    std::vector<SnapshotValues> snapshots;
    for (std::size_t index = 0; index < static_cast<std::size_t>(state.range(0)); ++index)
        snapshots.push_back(entries(kCompared, static_cast<float>(index)));
    for (auto _ : state) {
        auto copy = std::make_unique<std::vector<SnapshotValues>>();
        for (const SnapshotValues& snapshot : snapshots)
            copy->push_back(snapshot);
        benchmark::DoNotOptimize(*copy);
        state.PauseTiming();
        copy.reset();
        state.ResumeTiming();
    }
}

BENCHMARK(compareOurs)->Name("comparison, bring in snapshots of 10,000/ours")->Arg(2)->Arg(5)->Arg(8);
BENCHMARK(compareHand)->Name("comparison, bring in snapshots of 10,000/hand")->Arg(2)->Arg(5)->Arg(8);

void placeWindow()
{
    ImGui::SetNextWindowPos(ImVec2(0.0f, 0.0f));
    ImGui::SetNextWindowSize(ImVec2(900.0f, 42.0f * bench::kLineHeight));
}

template<typename DrawTable>
void drawComparison(benchmark::State& state, const DrawTable& drawTable)
{
    Context host(ImVec2(bench::kDisplayWidth, 720.0f));
    const auto scene = [&] {
        placeWindow();
        if (ImGui::Begin("Comparison"))
            drawTable();
        ImGui::End();
    };
    host.frame(scene);
    for (auto _ : state)
        host.frame(scene);
}

void drawOurs(benchmark::State& state)
{
    statistics::DiffTable table = comparison(static_cast<std::size_t>(state.range(0)));
    statistics::Render render;
    const unsigned item = render.createDiffTable([&]() -> statistics::DiffTable& { return table; });
    drawComparison(state, [&] { render.drawItem(item, 0, false); });
}

void drawRowByHand(const statistics::DiffTableRow& row, int number)
{
    char text[64];
    std::snprintf(text, sizeof(text), "%d", number);
    if (row.changed)
        ImGui::PushStyleColor(ImGuiCol_Text, ImVec4(1.0f, 0.6f, 0.0f, 1.0f));
    ImGui::Selectable(text, false, ImGuiSelectableFlags_SpanAllColumns);
    ImGui::NextColumn();
    ImGui::TextUnformatted(row.caption.c_str());
    ImGui::NextColumn();
    for (const CounterValue& value : row.values) {
        std::snprintf(text, sizeof(text), "%g", static_cast<double>(value.toFloat()));
        ImGui::TextUnformatted(text);
        ImGui::NextColumn();
    }
    if (row.changed)
        ImGui::PopStyleColor();
}

void drawTableByHand(const statistics::DiffTable& table)
{
    const int count = static_cast<int>(table.m_columns.size()) + 2;
    ImGui::BeginColumns("table", count, ImGuiOldColumnFlags_NoForceWithinWindow);
    for (int column = 0; column < count; ++column) {
        ImGui::PushID(column);
        ImGui::Button("column", ImVec2(ImGui::GetColumnWidth() - 12.0f, 20.0f));
        ImGui::PopID();
        ImGui::NextColumn();
    }
    ImGuiListClipper clipper;
    clipper.Begin(static_cast<int>(table.m_rows.size()), bench::kLineHeight);
    while (clipper.Step())
        for (int row = clipper.DisplayStart; row < clipper.DisplayEnd; ++row)
            drawRowByHand(table.m_rows[static_cast<std::size_t>(row)], row + 1);
    ImGui::EndColumns();
}

void drawHand(benchmark::State& state)
{
    const statistics::DiffTable table = comparison(static_cast<std::size_t>(state.range(0)));
    drawComparison(state, [&] { drawTableByHand(table); });
}

BENCHMARK(drawOurs)->Name("comparison, draw 10,000 rows/ours")->Arg(2)->Arg(5)->Arg(8);
BENCHMARK(drawHand)->Name("comparison, draw 10,000 rows/hand")->Arg(2)->Arg(5)->Arg(8);

} // namespace
