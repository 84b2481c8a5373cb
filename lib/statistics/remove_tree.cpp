#include "remove_tree.h"

#ifdef _WIN32
#include "native_directory.h"

#include <windows.h>
#else
#include <cerrno>
#include <memory>
#include <string>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

#include <utility>
#include <vector>

namespace statistics {

#ifdef _WIN32

// Not every standard library for Windows knows links: there std::filesystem::remove_all would empty what a
// link or a junction leads to. Nothing calls itself for the levels of a directory: with long paths there may
// be thousands.

namespace {

std::error_code lastError()
{
    const DWORD code = GetLastError();
    const bool nothingThere = code == ERROR_FILE_NOT_FOUND || code == ERROR_PATH_NOT_FOUND;
    return nothingThere ? std::error_code() : std::error_code(static_cast<int>(code), std::system_category());
}

bool isRealDirectory(DWORD attributes)
{
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0;
}

/// A file, a link, or a directory that is empty.
std::error_code removeOne(const std::filesystem::path& path, DWORD attributes)
{
    const bool isDirectory = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    const BOOL removed = isDirectory ? RemoveDirectoryW(path.c_str()) : DeleteFileW(path.c_str());
    return removed ? std::error_code() : lastError();
}

/// A directory that is to be removed, once what was in it is.
struct Level {
    std::filesystem::path path;
    bool emptied = false;
};

/// Removes what isn't a directory; directories are to be removed next.
std::error_code emptyDirectory(const std::filesystem::path& directory, std::vector<Level>& levels)
{
    std::error_code error;
    NativeDirectory entries(directory, error);
    while (!error && entries.next(error)) {
        const DWORD attributes = GetFileAttributesW(entries.path().c_str());
        if (attributes == INVALID_FILE_ATTRIBUTES)
            error = lastError();
        else if (isRealDirectory(attributes))
            levels.push_back({entries.path()});
        else
            error = removeOne(entries.path(), attributes);
    }
    return error == std::errc::no_such_file_or_directory ? std::error_code() : error;
}

std::error_code step(std::vector<Level>& levels)
{
    const std::filesystem::path path = levels.back().path;
    if (!std::exchange(levels.back().emptied, true))
        return emptyDirectory(path, levels);
    levels.pop_back();
    return removeOne(path, FILE_ATTRIBUTE_DIRECTORY);
}

} // namespace

std::error_code removeTree(const std::filesystem::path& path)
{
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES)
        return lastError();
    if ((attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT)) == 0)
        return std::make_error_code(std::errc::not_a_directory);
    if (!isRealDirectory(attributes))
        return removeOne(path, attributes);
    std::error_code error;
    for (std::vector<Level> levels{{path}}; !error && !levels.empty();)
        error = step(levels);
    return error;
}

#else

// Goes by open directories and not by paths, so that a directory which is replaced by a link meanwhile isn't
// followed. Each is first removed as if it were empty: where something is mounted on it, that fails with an
// error of its own, before anything in it is touched. Only the lowest one is open, however deep it lies: the
// way back leads through "..", to the directory that it came from and to no other.

namespace {

struct Close {
    void operator()(DIR* directory) const { closedir(directory); }
};

constexpr int kMostRetries = 1000;

/// A directory that is being emptied.
struct Level {
    std::string name; ///< in the level above
    dev_t device;
    ino_t file;
    bool changed = false; ///< entries went since it was opened, so the reading may have missed some
};

class TreeRemoval {
public:
    explicit TreeRemoval(const std::string& path) : m_path(path) {}

    std::error_code run();

private:
    void start();
    void restart();
    bool exists(const std::string& name, mode_t& kind);
    void removeFile(const std::string& name);
    void removeDirectory(const std::string& name);
    void removeEntry(const std::string& name);
    bool open(const std::string& name, int flags, struct stat& status);
    void enter(const std::string& name);
    void step();
    void leave();
    bool goBack();
    int directory() const { return m_entries ? dirfd(m_entries.get()) : AT_FDCWD; }
    bool succeeded(bool result);

    const std::string& m_path;
    std::vector<Level> m_levels;           ///< from the top down
    std::unique_ptr<DIR, Close> m_entries; ///< of the lowest level; null above all
    std::error_code m_error;
    int m_retries = 0; ///< while another process is at work here, too
};

std::error_code TreeRemoval::run()
{
    start();
    while (!m_error && !m_levels.empty())
        step();
    return m_error;
}

void TreeRemoval::start()
{
    mode_t kind = 0;
    if (!exists(m_path, kind))
        return;
    if (S_ISLNK(kind))
        removeFile(m_path);
    else if (S_ISDIR(kind))
        removeDirectory(m_path);
    else
        m_error = std::make_error_code(std::errc::not_a_directory);
}

/// Notes the error, if it is one.
bool TreeRemoval::succeeded(bool result)
{
    if (!result && errno != ENOENT)
        m_error = std::error_code(errno, std::generic_category());
    return result;
}

bool TreeRemoval::exists(const std::string& name, mode_t& kind)
{
    struct stat status {};
    const bool found = succeeded(fstatat(directory(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0);
    kind = status.st_mode;
    return found;
}

void TreeRemoval::removeFile(const std::string& name)
{
    succeeded(unlinkat(directory(), name.c_str(), 0) == 0);
}

void TreeRemoval::removeDirectory(const std::string& name)
{
    if (unlinkat(directory(), name.c_str(), AT_REMOVEDIR) == 0)
        return;
    if (errno == ENOTEMPTY || errno == EEXIST)
        enter(name);
    else
        succeeded(false);
}

void TreeRemoval::removeEntry(const std::string& name)
{
    mode_t kind = 0;
    if (!exists(name, kind))
        return;
    m_levels.back().changed = true;
    if (S_ISDIR(kind))
        removeDirectory(name);
    else
        removeFile(name);
}

/// Opens a directory in place of the one that is open.
bool TreeRemoval::open(const std::string& name, int flags, struct stat& status)
{
    const int handle = openat(directory(), name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | flags);
    if (!succeeded(handle >= 0))
        return false;
    std::unique_ptr<DIR, Close> entries(fdopendir(handle));
    if (!succeeded(entries != nullptr)) {
        close(handle);
        return false;
    }
    m_entries = std::move(entries);
    return succeeded(fstat(handle, &status) == 0);
}

void TreeRemoval::enter(const std::string& name)
{
    struct stat status {};
    if (open(name, O_NOFOLLOW, status))
        m_levels.push_back({name, status.st_dev, status.st_ino});
}

/// Goes back to the directory above, to read it again. False if the lowest one has been removed or moved away
/// from there meanwhile.
bool TreeRemoval::goBack()
{
    if (m_levels.empty()) {
        m_entries = nullptr;
        return true;
    }
    Level& above = m_levels.back();
    above.changed = false;
    struct stat status {};
    return open("..", 0, status) && status.st_dev == above.device && status.st_ino == above.file;
}

/// Begins anew.
void TreeRemoval::restart()
{
    m_levels.clear();
    m_entries = nullptr;
    if (++m_retries > kMostRetries)
        m_error = std::make_error_code(std::errc::device_or_resource_busy);
    if (!m_error)
        start();
}

/// Goes on to the next entry of the lowest directory.
void TreeRemoval::step()
{
    errno = 0;
    const dirent* const entry = readdir(m_entries.get());
    if (!entry)
        return errno == 0 ? leave() : static_cast<void>(succeeded(false));
    const std::string name = entry->d_name;
    if (name != "." && name != "..")
        removeEntry(name);
}

/// Another process may have added something meanwhile, also where it had taken away all there was to read:
/// the directory is read again.
void TreeRemoval::leave()
{
    const Level level = std::move(m_levels.back());
    m_levels.pop_back();
    if (!goBack())
        return restart();
    if (succeeded(unlinkat(directory(), level.name.c_str(), AT_REMOVEDIR) == 0))
        return;
    const bool isFilled = m_error == std::errc::directory_not_empty || m_error == std::errc::file_exists;
    if (!isFilled || (!level.changed && ++m_retries > kMostRetries))
        return;
    m_error.clear();
    enter(level.name);
}

} // namespace

std::error_code removeTree(const std::filesystem::path& path)
{
    return TreeRemoval(path.native()).run();
}

#endif

} // namespace statistics
