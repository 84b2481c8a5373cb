#include "native_directory.h"

#include <string_view>
#include <utility>

#ifdef _WIN32
#include <windows.h>
#else
#include <cerrno>

#include <dirent.h>
#endif

namespace statistics {

#ifdef _WIN32

namespace {

std::error_code lastError()
{
    switch (const DWORD code = GetLastError()) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
        return std::make_error_code(std::errc::no_such_file_or_directory);
    case ERROR_DIRECTORY:
        return std::make_error_code(std::errc::not_a_directory);
    case ERROR_ACCESS_DENIED:
        return std::make_error_code(std::errc::permission_denied);
    default:
        return {static_cast<int>(code), std::system_category()};
    }
}

} // namespace

struct NativeDirectory::Stream {
    explicit Stream(const std::filesystem::path& directory)
        : entries(FindFirstFileW((directory / L"*").c_str(), &found))
    {
    }
    ~Stream()
    {
        if (isOpen())
            FindClose(entries);
    }
    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;

    bool isOpen() const { return entries != INVALID_HANDLE_VALUE; }

    WIN32_FIND_DATAW found{}; ///< the entry that comes next
    HANDLE entries;
    bool begun = false;
};

NativeDirectory::NativeDirectory(std::filesystem::path directory, std::error_code& error)
    : m_directory(std::move(directory)), m_stream(std::make_unique<Stream>(m_directory))
{
    if (!m_stream->isOpen())
        error = lastError();
}

bool NativeDirectory::next(std::error_code& error)
{
    while (m_stream->isOpen()) {
        if (std::exchange(m_stream->begun, true) && !FindNextFileW(m_stream->entries, &m_stream->found)) {
            if (GetLastError() != ERROR_NO_MORE_FILES)
                error = lastError();
            return false;
        }
        const std::wstring_view name = m_stream->found.cFileName;
        if (name == L"." || name == L"..")
            continue;
        m_path = m_directory / name;
        return true;
    }
    return false;
}

#else

struct NativeDirectory::Stream {
    explicit Stream(const std::filesystem::path& directory) : entries(opendir(directory.c_str())) {}
    ~Stream()
    {
        if (entries)
            closedir(entries);
    }
    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;

    DIR* entries;
};

NativeDirectory::NativeDirectory(std::filesystem::path directory, std::error_code& error)
    : m_directory(std::move(directory)), m_stream(std::make_unique<Stream>(m_directory))
{
    if (!m_stream->entries)
        error = std::error_code(errno, std::generic_category());
}

bool NativeDirectory::next(std::error_code& error)
{
    while (m_stream->entries) {
        errno = 0;
        const dirent* const entry = readdir(m_stream->entries);
        if (!entry && errno != 0)
            error = std::error_code(errno, std::generic_category());
        if (!entry)
            return false;
        const std::string_view name = entry->d_name;
        if (name == "." || name == "..")
            continue;
        m_path = m_directory / name;
        return true;
    }
    return false;
}

#endif

NativeDirectory::~NativeDirectory() = default;

} // namespace statistics
