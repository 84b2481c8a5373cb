#include "native_directory.h"

#include <utility>

#ifndef _WIN32
#include <cerrno>
#include <string_view>

#include <dirent.h>
#endif

namespace statistics {

#ifdef _WIN32

struct NativeDirectory::Stream {
    std::filesystem::directory_iterator entry;
    bool begun = false;
};

NativeDirectory::NativeDirectory(std::filesystem::path directory, std::error_code& error)
    : m_directory(std::move(directory)), m_stream(std::make_unique<Stream>())
{
    m_stream->entry = std::filesystem::directory_iterator(m_directory, error);
}

bool NativeDirectory::next(std::error_code& error)
{
    if (std::exchange(m_stream->begun, true))
        m_stream->entry.increment(error);
    if (error || m_stream->entry == std::filesystem::directory_iterator())
        return false;
    m_path = m_stream->entry->path();
    return true;
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
