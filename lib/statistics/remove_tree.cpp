#include "remove_tree.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <cerrno>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace statistics {

#ifdef _WIN32

// Not every standard library for Windows knows links: there std::filesystem::remove_all would empty what a
// link or a junction leads to.

namespace {

std::error_code lastError()
{
    const DWORD code = GetLastError();
    const bool nothingThere = code == ERROR_FILE_NOT_FOUND || code == ERROR_PATH_NOT_FOUND;
    return nothingThere ? std::error_code() : std::error_code(static_cast<int>(code), std::system_category());
}

std::error_code removeAny(const std::filesystem::path& path);

std::error_code removeEntries(const std::filesystem::path& directory)
{
    std::error_code error;
    std::filesystem::directory_iterator entry(directory, error);
    while (!error && entry != std::filesystem::directory_iterator()) {
        error = removeAny(entry->path());
        if (!error)
            entry.increment(error);
    }
    return error == std::errc::no_such_file_or_directory ? std::error_code() : error;
}

std::error_code removeAny(const std::filesystem::path& path)
{
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES)
        return lastError();
    const bool isDirectory = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    if (isDirectory && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0)
        if (const std::error_code error = removeEntries(path))
            return error;
    const BOOL removed = isDirectory ? RemoveDirectoryW(path.c_str()) : DeleteFileW(path.c_str());
    return removed ? std::error_code() : lastError();
}

} // namespace

std::error_code removeTree(const std::filesystem::path& path)
{
    const DWORD attributes = GetFileAttributesW(path.c_str());
    constexpr DWORD kRemovable = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & kRemovable) == 0)
        return std::make_error_code(std::errc::not_a_directory);
    return removeAny(path);
}

#else

// Goes by open directories and not by paths, so that a directory which is replaced by a link meanwhile isn't
// followed. Each is first removed as if it were empty: where something is mounted on it, that fails with an
// error of its own, before anything in it is touched.

namespace {

struct Close {
    void operator()(DIR* directory) const { closedir(directory); }
};

/// A directory that is being emptied.
struct Level {
    std::unique_ptr<DIR, Close> entries;
    std::string name;     ///< in the level above
    bool changed = false; ///< entries went since it was opened, so the reading may have missed some
};

class TreeRemoval {
public:
    std::error_code run(const std::string& path);

private:
    bool exists(const std::string& name, mode_t& kind);
    void removeFile(const std::string& name);
    void removeDirectory(const std::string& name);
    void removeEntry(const std::string& name);
    void enter(const std::string& name);
    void step();
    void leave();
    int directory() const { return m_levels.empty() ? AT_FDCWD : dirfd(m_levels.back().entries.get()); }
    bool succeeded(bool result);

    std::vector<Level> m_levels; ///< from the top down
    std::error_code m_error;
};

std::error_code TreeRemoval::run(const std::string& path)
{
    mode_t kind = 0;
    if (!exists(path, kind))
        return m_error;
    if (S_ISLNK(kind))
        removeFile(path);
    else if (S_ISDIR(kind))
        removeDirectory(path);
    else
        m_error = std::make_error_code(std::errc::not_a_directory);
    while (!m_error && !m_levels.empty())
        step();
    return m_error;
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

void TreeRemoval::enter(const std::string& name)
{
    const int handle = openat(directory(), name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (!succeeded(handle >= 0))
        return;
    std::unique_ptr<DIR, Close> entries(fdopendir(handle));
    if (succeeded(entries != nullptr))
        m_levels.push_back({std::move(entries), name});
    else
        close(handle);
}

/// Goes on to the next entry of the lowest directory.
void TreeRemoval::step()
{
    errno = 0;
    const dirent* const entry = readdir(m_levels.back().entries.get());
    if (!entry)
        return errno == 0 ? leave() : static_cast<void>(succeeded(false));
    const std::string name = entry->d_name;
    if (name != "." && name != "..")
        removeEntry(name);
}

/// Another process may have added something meanwhile: the directory is read again while that helps.
void TreeRemoval::leave()
{
    const Level level = std::move(m_levels.back());
    m_levels.pop_back();
    if (succeeded(unlinkat(directory(), level.name.c_str(), AT_REMOVEDIR) == 0))
        return;
    const bool isFilled = m_error == std::errc::directory_not_empty || m_error == std::errc::file_exists;
    if (!isFilled || !level.changed)
        return;
    m_error.clear();
    enter(level.name);
}

} // namespace

std::error_code removeTree(const std::filesystem::path& path)
{
    return TreeRemoval().run(path.native());
}

#endif

} // namespace statistics
