#include "statistics_analyzer.h"

#include "format.h"
#include "native_path.h"
#include "remove_tree.h"

#include <ctime>
#include <filesystem>
#include <set>
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

/// Empty for a directory that is gone.
fs::directory_iterator open(const fs::path& directory)
{
    std::error_code error;
    fs::directory_iterator entries(directory, error);
    if (error != std::errc::no_such_file_or_directory && error != std::errc::not_a_directory)
        throwIf(error, "directory_iterator::directory_iterator", directory);
    return entries;
}

fs::path absolutePath(const fs::path& path)
{
    std::error_code error;
    fs::path result = fs::absolute(path, error);
    throwIf(error, "absolute", path);
    return result;
}

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
    fs::recursive_directory_iterator entry(path, fs::directory_options::skip_permission_denied, error);
    for (; !error && entry != fs::recursive_directory_iterator() && count.seen < kMostCounted;
         entry.increment(error)) {
        ++count.seen;
        std::error_code gone;
        if (entry->symlink_status(gone).type() != fs::file_type::directory)
            ++count.files;
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
    return isRootName(name) && path == path.filename() && name != "." && name != ".." &&
           kDroppedEnds.find(name.back()) == std::string_view::npos;
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

std::string StatisticsAnalyzer::pathOf(const std::string& inFolder) const
{
    return Orv::orv_format("%s/%s", m_place.c_str(), inFolder.c_str());
}

void StatisticsAnalyzer::loadSnapshot(const std::string& name, const std::string& inFolder)
{
    const std::string path = Orv::orv_format("%s/%s", pathOf(inFolder).c_str(), name.c_str());
    snapshots.push_back({snapshots.size(), name, inFolder, readSnapshot(path)});
}

void StatisticsAnalyzer::saveSnapshot(SnapshotValues values)
{
    Snapshot snapshot{snapshots.size(), {}, folder, std::move(values)};
    snapshot.name = Orv::orv_format("%s_%s.csv", folder.c_str(), timeStamp(std::time(nullptr)).c_str());
    const std::string relativePath = Orv::orv_format("%s/%s", folder.c_str(), snapshot.name.c_str());
    const SnapshotWriting writing = writeSnapshot(relativePath, snapshot.values);
    if (writing.step != ESnapshotWrite::Written)
        snapshot.problem = describe(writing);
    snapshots.push_back(std::move(snapshot));
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
