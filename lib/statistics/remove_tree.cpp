#include "remove_tree.h"

#ifdef _WIN32
#include <windows.h>
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

std::error_code removeEntries(const std::filesystem::path& directory)
{
    std::error_code error;
    std::filesystem::directory_iterator entry(directory, error);
    while (!error && entry != std::filesystem::directory_iterator()) {
        error = removeTree(entry->path());
        if (!error)
            entry.increment(error);
    }
    return error;
}

} // namespace

std::error_code removeTree(const std::filesystem::path& path)
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

#else

std::error_code removeTree(const std::filesystem::path& path)
{
    std::error_code error;
    std::filesystem::remove_all(path, error);
    return error;
}

#endif

} // namespace statistics
