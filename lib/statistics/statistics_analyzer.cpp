#include "statistics_analyzer.h"

#include "format.h"
#include "native_path.h"
#include "remove_tree.h"

#include <ctime>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace statistics {

namespace {

namespace fs = std::filesystem;

#ifdef _WIN32
// The system drops these at the end of a name, and ".. " or "..." would lead out of the root.
constexpr std::string_view kDroppedEnds = ". ";
#else
constexpr std::string_view kDroppedEnds;
#endif

/// File system errors name the operation in the same words on every platform.
void throwIf(const std::error_code& error, const char* operation, const fs::path& path)
{
    if (error)
        throw fs::filesystem_error(operation, path, error);
}

/// Follows symbolic links. An entry that vanished meanwhile is of no type; other failures throw.
fs::file_type typeOf(const fs::directory_entry& entry)
{
    std::error_code error;
    const fs::file_type type = entry.status(error).type();
    if (type != fs::file_type::not_found)
        throwIf(error, "directory_entry::status", entry.path());
    return type;
}

template<typename Visit>
void forEachEntry(fs::directory_iterator entries, const fs::path& directory, const Visit& visit)
{
    std::error_code error;
    while (entries != fs::directory_iterator()) {
        visit(*entries);
        entries.increment(error);
        throwIf(error, "directory_iterator::operator++", directory);
    }
}

fs::directory_iterator open(const fs::path& directory)
{
    std::error_code error;
    fs::directory_iterator entries(directory, error);
    throwIf(error, "directory_iterator::directory_iterator", directory);
    return entries;
}

/// The local time in seconds, as in "2024_03_09-14_05_07".
std::string timeStamp()
{
    const std::time_t now = std::time(nullptr);
    std::tm local{};
#ifdef _WIN32
    localtime_s(&local, &now);
#else
    localtime_r(&now, &local);
#endif
    char stamp[20];
    return {stamp, std::strftime(stamp, sizeof(stamp), "%Y_%m_%d-%H_%M_%S", &local)};
}

} // namespace

bool isFolderName(const std::string& name)
{
    const fs::path path = toPath(name);
    return isRootName(name) && path == path.filename() && name != "." && name != ".." &&
           kDroppedEnds.find(name.back()) == std::string_view::npos;
}

bool isRootName(const std::string& name)
{
    return !name.empty() && name.find('\0') == std::string::npos;
}

StatisticsAnalyzer::StatisticsAnalyzer(std::string rootDirectory, std::string folderName)
    : root(std::move(rootDirectory)), folder(std::move(folderName))
{
    scanSnapshots();
}

void StatisticsAnalyzer::scanSnapshots()
{
    const fs::path directory = toPath(root);
    std::error_code unreadable; // a root that isn't there holds nothing
    forEachEntry(fs::directory_iterator(directory, unreadable), directory, [this](const auto& folderEntry) {
        if (typeOf(folderEntry) != fs::file_type::directory)
            return;
        const std::string name = toText(folderEntry.path().filename());
        forEachEntry(open(folderEntry.path()), folderEntry.path(), [&](const auto& file) {
            if (typeOf(file) == fs::file_type::regular)
                loadSnapshot(toText(file.path().filename()), name);
        });
    });
}

void StatisticsAnalyzer::loadSnapshot(const std::string& name, const std::string& inFolder)
{
    const std::string path = Orv::orv_format("%s/%s/%s", root.c_str(), inFolder.c_str(), name.c_str());
    snapshots.push_back({snapshots.size(), name, inFolder, readSnapshot(path)});
}

void StatisticsAnalyzer::saveSnapshot(SnapshotValues values)
{
    const std::string name = Orv::orv_format("%s_%s.csv", folder.c_str(), timeStamp().c_str());
    const SnapshotWriting writing =
        writeSnapshot(Orv::orv_format("%s/%s", folder.c_str(), name.c_str()), values);
    const std::string problem = writing.step == ESnapshotWrite::Written ? "" : describe(writing);
    snapshots.push_back({snapshots.size(), name, folder, std::move(values), problem});
}

SnapshotWriting StatisticsAnalyzer::writeSnapshot(const std::string& relativePath,
                                                  const SnapshotValues& values) const
{
    return writeSnapshotFile(root, relativePath, values);
}

SnapshotValues StatisticsAnalyzer::readSnapshot(const std::string& path)
{
    SnapshotValues values;
    readSnapshotFile(path, values);
    return values;
}

void StatisticsAnalyzer::clearSnapshots()
{
    for (const Snapshot& snapshot : snapshots) {
        // Without a separator at its end: a folder that is a symbolic link loses the link, not what it points
        // to.
        const fs::path directory = toPath(Orv::orv_format("%s/%s", root.c_str(), snapshot.folder.c_str()));
        throwIf(removeTree(directory), "remove_all", directory);
    }
    diffTable.clear();
    snapshots.clear();
}

void StatisticsAnalyzer::forEachSnapshot(const std::function<void(const Snapshot&)>& visit) const
{
    if (!visit)
        return;
    const std::size_t count = snapshots.size();
    for (std::size_t index = 0; index < count; ++index)
        visit(snapshots[index]);
}

void StatisticsAnalyzer::addToDiff(std::size_t index)
{
    if (index >= snapshots.size())
        return;
    const Snapshot& snapshot = snapshots[index];
    diffTable.addSnapshot(snapshot.name, snapshot.index, snapshot.values);
}

void StatisticsAnalyzer::removeFromDiff(std::size_t index)
{
    diffTable.removeColumn(index);
}

} // namespace statistics
