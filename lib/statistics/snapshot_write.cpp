// Writing: a new file that gets its name when it is whole; where there are none without a name, or something
// stands there, one in the root that is renamed into place.

#include "snapshot_file.h"

#include "format.h"
#include "native_directory.h"
#include "native_file.h"
#include "native_path.h"
#include "rollback.h"

#include <algorithm>
#include <chrono>
#include <filesystem>

#ifdef _WIN32
#include <process.h>
#else
#include <unistd.h>
#endif

namespace statistics {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kChunk = std::size_t{1} << 16u; ///< bytes written at once
constexpr std::size_t kUsualLine = 64;                ///< bytes, a guess for the memory
constexpr int kAttempts = 20;                         ///< while another process removes what this one makes
constexpr const char* kUnfinishedPrefix = ".snapshot-";
constexpr const char* kUnfinishedExtension = ".part";

/// A file of this name lies in the root, where no reader looks.
fs::path unfinishedName()
{
#ifdef _WIN32
    const int process = _getpid();
#else
    const int process = getpid();
#endif
    const auto now = std::chrono::system_clock::now().time_since_epoch().count();
    return kUnfinishedPrefix + std::to_string(process) + "-" + std::to_string(now) + kUnfinishedExtension;
}

bool isUnfinished(const fs::path& path)
{
    std::error_code ignored;
    const fs::path name = path.filename();
    const fs::path prefix = kUnfinishedPrefix;
    return name.native().compare(0, prefix.native().size(), prefix.native()) == 0 &&
           name.extension() == kUnfinishedExtension &&
           fs::symlink_status(path, ignored).type() == fs::file_type::regular;
}

void writeContent(const NativeFile& file, const SnapshotValues& values, std::error_code& error)
{
    std::string bytes;
    bytes.reserve(std::min(kChunk, (values.size() + 1) * kUsualLine));
    for (const std::string_view line : kSnapshotHead)
        bytes.append(line) += '\n';
    std::string text;
    for (const auto& [caption, value] : values) {
        value.print(text, nullptr);
        bytes.append(caption) += kSnapshotDelimiter;
        bytes.append(text) += '\n';
        if (bytes.size() < kChunk)
            continue;
        file.write(bytes, error);
        if (error)
            return;
        bytes.clear();
    }
    file.write(bytes, error);
}

/// Makes a whole file, or none.
SnapshotWriting makeFile(const fs::path& path, const SnapshotValues& values)
{
    bool begun = false;
    Rollback making([&] { // once the file is closed
        std::error_code ignored;
        if (begun)
            fs::remove(path, ignored);
    });
    std::error_code error;
    NativeFile file = NativeFile::create(path, error);
    if (error)
        return {ESnapshotWrite::NotCreated, error};
    begun = true;
    file.claim();
    writeContent(file, values, error);
    std::error_code late;
    file.close(late);
    if (error || late)
        return {ESnapshotWrite::NotWritten, error ? error : late};
    making.done();
    return {};
}

/// False where that can't be done, or something stands at the name; nothing is left of it then.
bool makeNameless(const fs::path& path, const SnapshotValues& values)
{
    std::error_code error;
    const NativeFile file = NativeFile::createNameless(path.parent_path(), error);
    if (!error)
        writeContent(file, values, error);
    if (!error)
        file.giveName(path, error);
    return !error;
}

/// Where no file can be renamed to. A directory at the name stays, even an empty one.
SnapshotWriting makeInPlace(const fs::path& path, const SnapshotValues& values)
{
    std::error_code ignored;
    if (fs::symlink_status(path, ignored).type() != fs::file_type::directory)
        fs::remove(path, ignored);
    return makeFile(path, values);
}

bool isDenied(const std::error_code& error)
{
    return error == std::errc::permission_denied || error == std::errc::operation_not_permitted ||
           error == std::errc::read_only_file_system;
}

/// A name that is too long, for instance, has nothing to replace.
ESnapshotWrite notRenamedTo(const fs::path& path)
{
    std::error_code ignored;
    return fs::exists(fs::symlink_status(path, ignored)) ? ESnapshotWrite::NotPlaced
                                                         : ESnapshotWrite::NotCreated;
}

void removeUnfinished(const fs::path& root)
{
    std::error_code ignored;
    NativeDirectory entries(root, ignored);
    while (entries.next(ignored))
        if (isUnfinished(entries.path()))
            NativeFile::removeUnclaimed(entries.path());
}

SnapshotWriting makeAndRename(const fs::path& root, const fs::path& path, const SnapshotValues& values)
{
    if (areOnTwoDevices(root, path.parent_path()))
        return makeInPlace(path, values);
    removeUnfinished(root);
    const fs::path unfinished = root / unfinishedName();
    const SnapshotWriting made = makeFile(unfinished, values);
    if (made.step == ESnapshotWrite::NotCreated && isDenied(made.error))
        return makeInPlace(path, values);
    if (made.error)
        return made;
    std::error_code error;
    fs::rename(unfinished, path, error);
    if (!error)
        return {};
    std::error_code ignored;
    fs::remove(unfinished, ignored);
    if (error == std::errc::cross_device_link)
        return makeInPlace(path, values);
    return {notRenamedTo(path), error};
}

SnapshotWriting tryToWrite(const fs::path& root, const fs::path& path, const SnapshotValues& values)
{
    std::error_code error;
    fs::create_directories(path.parent_path(), error);
    if (error)
        return {ESnapshotWrite::NoFolder, error};
    if (makeNameless(path, values))
        return {};
    return makeAndRename(root, path, values);
}

} // namespace

void removeUnfinishedSnapshots(const std::string& root)
{
    removeUnfinished(toPath(root));
}

SnapshotWriting writeSnapshotFile(const std::string& root, const std::string& relativePath,
                                  const SnapshotValues& values)
{
    const fs::path path = toPath(Orv::orv_format("%s/%s", root.c_str(), relativePath.c_str()));
    SnapshotWriting writing = tryToWrite(toPath(root), path, values);
    for (int attempt = 1; attempt < kAttempts; ++attempt) {
        if (writing.error != std::errc::no_such_file_or_directory && writing.error != std::errc::file_exists)
            break;
        writing = tryToWrite(toPath(root), path, values);
    }
    return writing;
}

std::string describe(const SnapshotWriting& writing)
{
    switch (writing.step) {
    case ESnapshotWrite::Written:
        return "written";
    case ESnapshotWrite::NoFolder:
        return "its folder can't be made: " + writing.error.message();
    case ESnapshotWrite::NotCreated:
        return "no file can be made: " + writing.error.message();
    case ESnapshotWrite::NotWritten:
        return "not all of it could be written: " + writing.error.message();
    case ESnapshotWrite::NotPlaced:
        return "what stands at its name can't be replaced: " + writing.error.message();
    }
    return {};
}

} // namespace statistics
