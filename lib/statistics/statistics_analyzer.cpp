#include "statistics_analyzer.h"

#include "format.h"
#include "native_directory.h"
#include "native_path.h"
#include "remove_tree.h"
#include "rollback.h"

#include <ctime>
#include <filesystem>
#include <set>
#include <string_view>
#include <system_error>
#include <utility>

namespace statistics {

namespace {

namespace fs = std::filesystem;

#ifdef _WIN32
/// The system drops these at the end of a name, and ".. " or "..." would lead out of the root.
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
fs::file_type typeOf(const fs::path& entry)
{
    std::error_code error;
    const fs::file_type type = fs::status(entry, error).type();
    if (type != fs::file_type::not_found)
        throwIf(error, "directory_entry::status", entry);
    return type;
}

/// `unopened` tells why it has no entries to give.
template<typename Visit>
void forEachEntry(const fs::path& directory, std::error_code& unopened, const Visit& visit)
{
    NativeDirectory entries(directory, unopened);
    std::error_code error;
    while (!unopened && entries.next(error))
        visit(entries.path());
    throwIf(error, "directory_iterator::operator++", directory);
}

/// A directory that is gone has none.
template<typename Visit>
void forEachEntry(const fs::path& directory, const Visit& visit)
{
    std::error_code error;
    forEachEntry(directory, error, visit);
    if (error != std::errc::no_such_file_or_directory && error != std::errc::not_a_directory)
        throwIf(error, "directory_iterator::directory_iterator", directory);
}

/// As it was given where there is no telling.
fs::path absolutePath(const fs::path& path)
{
    std::error_code error; // such as that the current directory is gone
    fs::path result = fs::absolute(path, error);
    return error ? path : result;
}

constexpr std::size_t kLongestName = 255; ///< of a folder, in the units of the file system
constexpr std::size_t kMostCounted = 1000;

struct FileCount {
    std::size_t seen = 0;  ///< entries of any kind, up to `kMostCounted`
    std::size_t files = 0; ///< of them, what isn't a directory
};

/// Counts what is below a directory, and follows no link. False if there is nothing at `path`.
bool countBelow(const fs::path& path, FileCount& count)
{
    std::error_code error;
    const fs::file_type type = fs::symlink_status(path, error).type();
    if (type != fs::file_type::directory)
        return type == fs::file_type::symlink;
    for (std::vector<fs::path> waiting{path}; !waiting.empty();) {
        NativeDirectory entries(std::exchange(waiting.back(), {}), error);
        waiting.pop_back();
        for (; entries.next(error); ++count.seen) {
            if (count.seen == kMostCounted)
                return true;
            if (fs::symlink_status(entries.path(), error).type() == fs::file_type::directory)
                waiting.push_back(entries.path());
            else
                ++count.files;
        }
    }
    return true;
}

std::string counted(std::size_t count, const char* what)
{
    return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

bool localTime(std::time_t moment, std::tm& local)
{
#ifdef _WIN32
    _tzset();
    return localtime_s(&local, &moment) == 0;
#else
    tzset(); // localtime_r looks at the environment only once
    return localtime_r(&moment, &local) != nullptr;
#endif
}

} // namespace

bool isFolderName(const std::string& name)
{
    const fs::path path = toPath(name);
    return isRootName(name) && path == path.filename() && path.native().size() <= kLongestName &&
           name != "." && name != ".." && kDroppedEnds.find(name.back()) == std::string_view::npos;
}

bool isRootName(const std::string& name)
{
    return !name.empty() && name.find('\0') == std::string::npos;
}

std::string timeStamp(std::time_t moment)
{
    std::tm local{};
    char stamp[20];
    const std::size_t length =
        localTime(moment, local) ? std::strftime(stamp, sizeof(stamp), "%Y_%m_%d-%H_%M_%S", &local) : 0;
    return length > 0 ? std::string(stamp, length) : std::to_string(moment);
}

StatisticsAnalyzer::StatisticsAnalyzer(std::string rootDirectory, std::string folderName)
    : root(std::move(rootDirectory)),
      folder(std::move(folderName)),
      m_place(toText(absolutePath(toPath(root))))
{
    scanSnapshots();
}

void StatisticsAnalyzer::scanSnapshots()
{
    const fs::path directory = toPath(m_place);
    std::error_code unreadable; // a root that isn't there holds nothing
    forEachEntry(directory, unreadable, [this](const fs::path& folderEntry) {
        if (typeOf(folderEntry) != fs::file_type::directory)
            return;
        const std::string name = toText(folderEntry.filename());
        forEachEntry(folderEntry, [&](const fs::path& file) {
            if (typeOf(file) == fs::file_type::regular)
                loadSnapshot(toText(file.filename()), name);
        });
    });
}

std::string StatisticsAnalyzer::pathOf(const std::string& inFolder) const
{
    return Orv::orv_format("%s/%s", m_place.c_str(), inFolder.c_str());
}

void StatisticsAnalyzer::loadSnapshot(const std::string& name, const std::string& inFolder)
{
    const std::string path = Orv::orv_format("%s/%s", pathOf(inFolder).c_str(), name.c_str());
    snapshots.push_back({snapshots.size(), name, inFolder, readSnapshot(path)});
}

StatisticsAnalyzer::Snapshot& StatisticsAnalyzer::addRecord(SnapshotValues values)
{
    const std::string stamp = timeStamp(std::time(nullptr));
    snapshots.push_back({snapshots.size(), Orv::orv_format("%s_%s.csv", folder.c_str(), stamp.c_str()),
                         folder, std::move(values)});
    return snapshots.back();
}

void StatisticsAnalyzer::writeRecord(Snapshot& snapshot)
{
    const std::string relativePath = Orv::orv_format("%s/%s", snapshot.folder.c_str(), snapshot.name.c_str());
    if (!std::exchange(m_isTidy, true))
        removeUnfinishedSnapshots(m_place);
    const SnapshotWriting writing = writeSnapshot(relativePath, snapshot.values);
    if (writing.step != ESnapshotWrite::Written)
        snapshot.problem = describe(writing);
}

bool StatisticsAnalyzer::hasFile(const Snapshot& snapshot) const
{
    std::error_code ignored;
    return fs::is_regular_file(toPath(pathOf(snapshot.folder)) / toPath(snapshot.name), ignored);
}

void StatisticsAnalyzer::saveSnapshot(SnapshotValues values)
{
    Snapshot& snapshot = addRecord(std::move(values));
    Rollback adding([&] { snapshots.pop_back(); });
    writeRecord(snapshot);
    adding.done();
}

SnapshotWriting StatisticsAnalyzer::writeSnapshot(const std::string& relativePath,
                                                  const SnapshotValues& values) const
{
    return writeSnapshotFile(m_place, relativePath, values);
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
        const fs::path directory = toPath(pathOf(snapshot.folder));
        throwIf(removeTree(directory), "remove_all", directory);
    }
    diffTable.clear();
    snapshots.clear();
}

std::string StatisticsAnalyzer::describeClearing() const
{
    std::set<std::string> folders;
    for (const Snapshot& snapshot : snapshots)
        folders.insert(snapshot.folder);
    std::size_t known = 0;
    FileCount count;
    for (const std::string& name : folders)
        known += countBelow(toPath(pathOf(name)), count) ? 1 : 0;
    const std::string atLeast = count.seen == kMostCounted ? "at least " : "";
    return "Deletes " + counted(known, "folder") + " with " + atLeast + counted(count.files, "file") +
           " below " + m_place;
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
