#pragma once

#include <cstddef>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace statistics {

/// An open file of text, with the platform's line ends: on Windows CR LF outside is LF here. Closed at the
/// end of its life at the latest. No call waits for another process, throws or writes anywhere else than
/// told.
class [[nodiscard]] NativeFile {
public:
    /// Opens for reading, through links. A pipe or device is opened, too, without waiting: `isRegular`
    /// tells.
    static NativeFile open(const std::filesystem::path& path, std::error_code& error);
    /// Makes a file that wasn't there, for writing. What stands at the name, a link included, is an error.
    static NativeFile create(const std::filesystem::path& path, std::error_code& error);
    /// Makes a file without a name in a directory, for writing: nobody sees it, and it goes with this object
    /// unless `giveName` succeeds. An error where the system or the file system knows no such files.
    static NativeFile createNameless(const std::filesystem::path& directory, std::error_code& error);
    NativeFile(NativeFile&& other) noexcept;
    NativeFile& operator=(NativeFile&&) = delete;
    ~NativeFile();

    /// False for a pipe, a device or a directory.
    bool isRegular() const;
    /// The bytes read into `buffer`, 0 at the end of the file and on an error.
    std::size_t read(char* buffer, std::size_t size, std::error_code& error) const;
    void write(std::string_view bytes, std::error_code& error) const;
    /// Tells of what could not be written after all. Nothing may follow.
    void close(std::error_code& error);
    /// Names a nameless file, whole as it is, unless not all of it could be written. What stands at the name,
    /// a link included, is an error.
    void giveName(const std::filesystem::path& path, std::error_code& error) const;

    /// Marks the file as being worked on by this process until it is closed, at the latest when the process
    /// ends. On Windows every open file is marked.
    void claim() const;
    /// Deletes a file that no process works on. That it can't be deleted is no error.
    static void removeUnclaimed(const std::filesystem::path& path);

private:
    explicit NativeFile(int handle) : m_handle(handle) {}

    int m_handle; ///< negative: none
};

/// True if it is known that nothing can be renamed from one directory into the other. False proves nothing.
bool areOnTwoDevices(const std::filesystem::path& one, const std::filesystem::path& other);

} // namespace statistics
