#include "run.h"

#include "native_path.h"
#include "snapshot_file.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <system_error>

namespace compare {

namespace fs = std::filesystem;

using statistics::ESnapshotRead;
using statistics::SnapshotLine;
using statistics::SnapshotReading;

namespace {

/// The entries of a folder for which `wanted` holds, by name. Links are followed.
template<typename Wanted>
std::vector<fs::path> entriesOf(const fs::path& folder, std::error_code& error, const Wanted& wanted)
{
    std::vector<fs::path> entries;
    for (fs::directory_iterator entry(folder, error); !error && entry != fs::directory_iterator();
         entry.increment(error))
        if (wanted(*entry))
            entries.push_back(entry->path());
    std::sort(entries.begin(), entries.end());
    return entries;
}

bool isFile(const fs::directory_entry& entry)
{
    std::error_code gone;
    return entry.is_regular_file(gone);
}

bool isRun(const fs::directory_entry& entry)
{
    std::error_code unreadable;
    return entry.is_directory(unreadable) && !entriesOf(entry.path(), unreadable, isFile).empty();
}

std::string severalRuns(const std::vector<fs::path>& runs)
{
    std::string text = "holds several runs; name one of them, or more by --base and --new:";
    for (const fs::path& run : runs)
        text += "\n    " + statistics::toText(run.filename());
    return text;
}

std::vector<fs::path> snapshotsInFolder(const fs::path& folder, std::string& problem)
{
    std::error_code error;
    const std::vector<fs::path> runs = entriesOf(folder, error, isRun);
    if (runs.size() > 1) {
        problem = severalRuns(runs);
        return {};
    }
    std::vector<fs::path> files;
    if (!error)
        files = entriesOf(folder, error, isFile);
    if (!error && files.empty() && runs.size() == 1)
        files = entriesOf(runs.front(), error, isFile);
    if (error)
        problem = "can't be read: " + error.message();
    else if (files.empty())
        problem = "holds no snapshot";
    return files;
}

/// Nothing if all of the file was read.
std::optional<std::string> problemOf(const SnapshotReading& reading, bool hasValues)
{
    if (reading.line == 0 && reading.end == ESnapshotRead::NoSnapshot)
        return "empty";
    if (reading.end == ESnapshotRead::NoSnapshot)
        return "no snapshot: line " + std::to_string(reading.line) + " isn't as one begins";
    if (reading.end != ESnapshotRead::Whole)
        return describe(reading);
    if (!hasValues)
        return "empty: it ends with line " + std::to_string(reading.line);
    return std::nullopt;
}

} // namespace

std::vector<std::string> snapshotsOf(const std::string& path, std::vector<Problem>& problems)
{
    std::error_code error;
    const fs::path native = statistics::toPath(path);
    if (!fs::is_directory(native, error))
        return {path}; // whatever it is, its reading tells
    std::string problem;
    std::vector<std::string> files;
    for (const fs::path& file : snapshotsInFolder(native, problem))
        files.push_back(statistics::toText(file));
    if (!problem.empty())
        problems.push_back({path, problem});
    return files;
}

void readSnapshot(const std::string& file, Paths& paths, Samples& side, Progress& progress,
                  std::vector<Problem>& problems)
{
    bool hasValues = false;
    paths.beginFile();
    side.beginSnapshot();
    progress.beginFile();
    const auto add = [&](const SnapshotLine& line) {
        side.add(paths.numberOf(line.caption), line.value);
        hasValues = true;
        progress.step();
        return true;
    };
    const SnapshotReading reading = visitSnapshotFile(file, statistics::ESnapshotHead::Strict, add);
    if (const auto problem = problemOf(reading, hasValues)) {
        side.dropSnapshot();
        problems.push_back({file, *problem});
    }
}

} // namespace compare
