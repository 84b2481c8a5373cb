#pragma once

#include "snapshot_file.h"

#include <statistics/diff_table.h>

#include <cstddef>
#include <ctime>
#include <functional>
#include <string>
#include <vector>

namespace statistics {

/// The store of snapshots: what lies on disk under `root`, the records of it in memory, and the comparison.
///
/// The list of records grows at its end and empties only as a whole, so a record's `index` is its position.
/// It is in the order of arrival: what the scan found, then what was taken. `root` must not be empty and
/// `folder` must be one plain path component (`isFolderName`).
///
/// Other processes may use the same `root`: what one of them removes meanwhile is no error here.
///
/// What the file system throws leaves through the call. Writing and reading of files fail in silence.
class StatisticsAnalyzer {
public:
    struct Snapshot {
        std::size_t index;
        std::string name;   ///< file name, also the caption of the check box and of the comparison's column
        std::string folder; ///< directory under `root`
        SnapshotValues values;
        std::string problem = {}; ///< why it isn't on disk; empty if it is
    };

    /// Scans `root` for what earlier runs left. A `root` that doesn't exist is an empty store. A relative one
    /// is where it is now, wherever the host's current directory is later.
    StatisticsAnalyzer(std::string rootDirectory, std::string folderName);

    /// Reads every regular file two levels below `root`.
    void scanSnapshots();
    /// Reads one file and appends its record, even if nothing could be read.
    void loadSnapshot(const std::string& name, const std::string& inFolder);
    /// Appends the record of a new snapshot, named after the present time; `writeRecord` is to follow.
    Snapshot& addRecord(SnapshotValues values);
    /// Writes the file of a record, which learns why if that can't be done. What killed processes have left
    /// in `root` goes with the first one, and with each that itself needs an unfinished file there.
    void writeRecord(Snapshot& snapshot);
    /// True if a file stands at the record's name, perhaps that of another record.
    bool hasFile(const Snapshot& snapshot) const;
    /// Adds and writes. What that throws leaves no record.
    void saveSnapshot(SnapshotValues values);
    /// Deletes the folders of all records from disk (`removeTree`), then forgets records and comparison. If a
    /// folder can't be deleted, that leaves as an exception and nothing is forgotten.
    void clearSnapshots();
    /// What `clearSnapshots` would delete now, in words. Looks at the disk, and stops counting at 1,000.
    std::string describeClearing() const;
    /// Calls `visit` for the records there are now. It must not add or remove any.
    void forEachSnapshot(const std::function<void(const Snapshot&)>& visit) const;
    /// Brings a record into the comparison, takes it out. An unknown index does nothing.
    void addToDiff(std::size_t index);
    void removeFromDiff(std::size_t index);

    /// Writes a file under `root` (`writeSnapshotFile`). `relativePath` is `<folder>/<name>`.
    SnapshotWriting writeSnapshot(const std::string& relativePath, const SnapshotValues& values) const;
    /// The entries that could be read, all `Decimal`. `path` is the complete path.
    static SnapshotValues readSnapshot(const std::string& path);

    /// The complete path of one of its folders.
    std::string pathOf(const std::string& inFolder) const;

    std::string root; ///< as the host told it
    std::string folder;
    std::vector<Snapshot> snapshots;
    DiffTable diffTable;

private:
    std::string m_place;   ///< the absolute path of `root`
    bool m_isTidy = false; ///< what killed processes had left in `root` is gone
};

/// The local time in seconds, as in "2024_03_09-14_05_07", by the time zone that the environment tells now.
/// The seconds since 1970 where it can't be told, and from the year 10000 on.
std::string timeStamp(std::time_t moment);

/// True for one path component that names a folder: not empty, "." or "..", no separator, no drive.
bool isFolderName(const std::string& name);
/// True for a path that can be handed on to the system whole.
bool isRootName(const std::string& name);

} // namespace statistics
