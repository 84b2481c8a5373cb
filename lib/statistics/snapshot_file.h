#pragma once

#include <statistics/value.h>

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace statistics {

/// One snapshot as a text file: a "sep=" line, a header line, then caption, tab and value per line
/// (docs/snapshot-files.md). Each operation tells what failed, and makes no report of its own. Paths are
/// texts as in native_path.h; one that can't be converted throws `std::system_error`.

/// The entries of a snapshot: the path of a counter and its value.
using SnapshotValues = std::vector<std::pair<std::string, CounterValue>>;

/// The first two lines.
constexpr std::string_view kSnapshotHead[] = {"sep=\t", "Caption\tValue"};
constexpr char kSnapshotDelimiter = '\t';

/// A longer line, its end not counted, ends the reading.
constexpr std::size_t kLongestSnapshotLine = std::size_t{1} << 20u; ///< bytes

/// A line behind the two of the head. The texts are good until the visit returns.
struct SnapshotLine {
    std::size_t number;       ///< in the file, from 1: entries begin with line 3
    std::string_view caption; ///< up to the first tab
    std::string_view value;   ///< all behind it, white space included, without the line end
    bool ended;               ///< false: the file ends within this line, so the value may be cut
};

/// How the reading of a file ended.
enum class ESnapshotRead {
    Whole,       ///< at the end of the file
    Stopped,     ///< `visit` wanted no more
    Missing,     ///< there is no such file
    NotRegular,  ///< a directory, pipe or device: nothing was read
    Unreadable,  ///< it can't be opened, or reading failed in the line; `error` says why
    NoSnapshot,  ///< the line isn't the one that belongs into the head
    Malformed,   ///< the line has no tab
    Cut,         ///< the file ends within the line
    LineTooLong, ///< the line is longer than `kLongestSnapshotLine`
};

struct SnapshotReading {
    ESnapshotRead end = ESnapshotRead::Whole;
    std::size_t line = 0;  ///< the last one looked at, from 1; 0 if none was
    std::error_code error; ///< for `Missing` and `Unreadable`
};

/// Whether a file must begin with the two lines that a snapshot begins with, or with any two.
enum class ESnapshotHead { Strict, Any };

/// Reads a file line by line and keeps none. `visit` gets each line that has a tab, the last one too if it is
/// cut; where it gives false, the reading ends. Only a regular file is read, through links: others are
/// neither waited for nor touched.
SnapshotReading visitSnapshotFile(const std::string& path, ESnapshotHead head,
                                  const std::function<bool(const SnapshotLine&)>& visit);

/// Appends the entries of a file whose head may be any, all `Decimal`, up to the first line that has no tab
/// or nothing but white space behind it (`Stopped`). A text that begins with no number gives 0. What was read
/// before a failure stays.
SnapshotReading readSnapshotFile(const std::string& path, SnapshotValues& values);

/// How far the writing of a file came.
enum class ESnapshotWrite {
    Written,
    NoFolder,   ///< its folder can't be made
    NotCreated, ///< no new file can be made
    NotWritten, ///< not all of it could be written: a full disk, for instance
    NotPlaced,  ///< what stands at its name can't be replaced: a directory, for instance
};

struct SnapshotWriting {
    ESnapshotWrite step = ESnapshotWrite::Written;
    std::error_code error; ///< why it went no further
};

/// Writes `<root>/<relativePath>`, where `relativePath` is `<folder>/<name>`, with the directories that are
/// missing. What stands at that name is replaced whole, or stays as it is. The file has no name until it is
/// whole; where that fails, for the system knows no such files or something stands at the name, it is made in
/// `root` and renamed into place. Nothing is written through a link or into a pipe that stands there. Where
/// that can't be done either, for the folder lies on another device or no file can be made in `root`, the old
/// file is removed and the new one made in its place.
SnapshotWriting writeSnapshotFile(const std::string& root, const std::string& relativePath,
                                  const SnapshotValues& values);
/// Removes what processes that were killed in a writing have left in `root`, as a writing does that needs a
/// file there. What others are still writing stays.
void removeUnfinishedSnapshots(const std::string& root);

/// In words, as "cut at line 17" or "not all of it could be written: No space left on device".
std::string describe(const SnapshotReading& reading);
std::string describe(const SnapshotWriting& writing);

} // namespace statistics
