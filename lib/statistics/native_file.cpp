#include "native_file.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>

#ifdef _WIN32
#include <io.h>
#else
#include <sys/file.h>
#include <unistd.h>
#endif

namespace statistics {

namespace {

constexpr std::size_t kMostAtOnce = INT_MAX;

std::error_code lastError()
{
    return {errno, std::generic_category()};
}

#ifdef _WIN32

constexpr int kRead = _O_RDONLY | _O_TEXT | _O_NOINHERIT;
constexpr int kCreate = _O_WRONLY | _O_CREAT | _O_EXCL | _O_TEXT | _O_NOINHERIT;

int openFile(const std::filesystem::path& path, int flags)
{
    return _wopen(path.c_str(), flags, _S_IREAD | _S_IWRITE);
}

std::ptrdiff_t readSome(int handle, char* buffer, std::size_t size)
{
    return _read(handle, buffer, static_cast<unsigned>(std::min(size, kMostAtOnce)));
}

std::ptrdiff_t writeSome(int handle, std::string_view bytes)
{
    return _write(handle, bytes.data(), static_cast<unsigned>(std::min(bytes.size(), kMostAtOnce)));
}

int closeFile(int handle)
{
    return _close(handle);
}

#else

/// A pipe without a writer would wait for one.
constexpr int kRead = O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
constexpr int kCreate = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC;

int openFile(const std::filesystem::path& path, int flags)
{
    constexpr mode_t kWhatTheUmaskLeaves = 0666;
    return ::open(path.c_str(), flags, kWhatTheUmaskLeaves);
}

std::ptrdiff_t readSome(int handle, char* buffer, std::size_t size)
{
    return ::read(handle, buffer, std::min(size, kMostAtOnce));
}

std::ptrdiff_t writeSome(int handle, std::string_view bytes)
{
    return ::write(handle, bytes.data(), std::min(bytes.size(), kMostAtOnce));
}

int closeFile(int handle)
{
    return ::close(handle);
}

#endif

/// Repeats what a signal has interrupted.
template<typename Action>
std::ptrdiff_t uninterrupted(const Action& action, std::error_code& error)
{
    std::ptrdiff_t result = action();
    while (result < 0 && errno == EINTR)
        result = action();
    if (result < 0)
        error = lastError();
    return result;
}

} // namespace

NativeFile NativeFile::open(const std::filesystem::path& path, std::error_code& error)
{
    return NativeFile(
        static_cast<int>(uninterrupted([&] { return std::ptrdiff_t{openFile(path, kRead)}; }, error)));
}

NativeFile NativeFile::create(const std::filesystem::path& path, std::error_code& error)
{
    return NativeFile(
        static_cast<int>(uninterrupted([&] { return std::ptrdiff_t{openFile(path, kCreate)}; }, error)));
}

#ifdef O_TMPFILE

NativeFile NativeFile::createNameless(const std::filesystem::path& directory, std::error_code& error)
{
    constexpr int kNameless = O_WRONLY | O_TMPFILE | O_CLOEXEC;
    return NativeFile(static_cast<int>(
        uninterrupted([&] { return std::ptrdiff_t{openFile(directory, kNameless)}; }, error)));
}

void NativeFile::giveName(const std::filesystem::path& path, std::error_code& error) const
{
    // Only a closing tells what a network couldn't store: of a twin, for the file is needed open.
    NativeFile twin(fcntl(m_handle, F_DUPFD_CLOEXEC, 0));
    if (twin.m_handle < 0)
        error = lastError();
    else
        twin.close(error);
    // Not of the process: a thread may have descriptors of its own, and the number be another file's there.
    char open[48];
    std::snprintf(open, sizeof(open), "/proc/thread-self/fd/%d", m_handle);
    if (!error && linkat(AT_FDCWD, open, AT_FDCWD, path.c_str(), AT_SYMLINK_FOLLOW) != 0)
        error = lastError();
}

#else

NativeFile NativeFile::createNameless(const std::filesystem::path& /*directory*/, std::error_code& error)
{
    error = std::make_error_code(std::errc::function_not_supported);
    return NativeFile(-1);
}

void NativeFile::giveName(const std::filesystem::path& /*path*/, std::error_code& error) const
{
    error = std::make_error_code(std::errc::function_not_supported);
}

#endif

NativeFile::NativeFile(NativeFile&& other) noexcept : m_handle(std::exchange(other.m_handle, -1)) {}

NativeFile::~NativeFile()
{
    std::error_code ignored; // who wants to know has closed it
    close(ignored);
}

bool NativeFile::isRegular() const
{
#ifdef _WIN32
    struct _stat64 status {};
    return _fstat64(m_handle, &status) == 0 && (status.st_mode & _S_IFMT) == _S_IFREG;
#else
    struct stat status {};
    return fstat(m_handle, &status) == 0 && S_ISREG(status.st_mode);
#endif
}

std::size_t NativeFile::read(char* buffer, std::size_t size, std::error_code& error) const
{
    const auto count = uninterrupted([&] { return readSome(m_handle, buffer, size); }, error);
    return count > 0 ? static_cast<std::size_t>(count) : 0;
}

void NativeFile::write(std::string_view bytes, std::error_code& error) const
{
    while (!bytes.empty() && !error) {
        const auto count = uninterrupted([&] { return writeSome(m_handle, bytes); }, error);
        if (count > 0)
            bytes.remove_prefix(static_cast<std::size_t>(count));
    }
}

void NativeFile::close(std::error_code& error)
{
    // Not again after an interruption: the handle is gone, and may be another's by then.
    if (m_handle >= 0 && closeFile(std::exchange(m_handle, -1)) != 0 && errno != EINTR)
        error = lastError();
}

#ifdef _WIN32

bool areOnTwoDevices(const std::filesystem::path& /*one*/, const std::filesystem::path& /*other*/)
{
    return false;
}

void NativeFile::claim() const {}

void NativeFile::removeUnclaimed(const std::filesystem::path& path)
{
    std::error_code ignored; // such as that it is open
    std::filesystem::remove(path, ignored);
}

#else

bool areOnTwoDevices(const std::filesystem::path& one, const std::filesystem::path& other)
{
    struct stat first {};
    struct stat second {};
    return stat(one.c_str(), &first) == 0 && stat(other.c_str(), &second) == 0 &&
           first.st_dev != second.st_dev;
}

void NativeFile::claim() const
{
    // That a file system knows no locks, or another is about to delete the file, shows when it is renamed.
    static_cast<void>(flock(m_handle, LOCK_EX | LOCK_NB));
}

void NativeFile::removeUnclaimed(const std::filesystem::path& path)
{
    std::error_code ignored;
    const NativeFile file = open(path, ignored);
    if (file.m_handle >= 0 && flock(file.m_handle, LOCK_EX | LOCK_NB) == 0)
        std::filesystem::remove(path, ignored);
}

#endif

} // namespace statistics
