#pragma once

#include <filesystem>
#include <memory>
#include <system_error>

namespace statistics {

/// The entries of a directory, in the order in which the file system delivers them. Holds one descriptor, and
/// lack of memory leaves it as an exception, where some standard libraries end the process.
class NativeDirectory {
public:
    NativeDirectory(std::filesystem::path directory, std::error_code& error);
    ~NativeDirectory();
    NativeDirectory(const NativeDirectory&) = delete;
    NativeDirectory& operator=(const NativeDirectory&) = delete;

    /// Goes on to the next entry. False behind the last one, on an error, and if the directory isn't open.
    bool next(std::error_code& error);
    /// Of the entry, in the directory.
    const std::filesystem::path& path() const { return m_path; }

private:
    struct Stream;

    std::filesystem::path m_directory;
    std::filesystem::path m_path;
    std::unique_ptr<Stream> m_stream;
};

} // namespace statistics
