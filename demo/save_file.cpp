#include "save_file.h"

#include "files.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace demo {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kMark = ".new"; ///< then process, "-" and a number, all after the file's own name
constexpr std::string_view kDigits = "0123456789";

std::string lastError(const fs::path& path)
{
    return path.string() + ": " + std::strerror(errno);
}

/// A new file beside another one. It goes again unless it takes the other's place. While it is open it is
/// locked, which the kernel ends with its process: so a leftover is told from a file at work.
class FreshFile {
public:
    explicit FreshFile(const fs::path& target)
    {
        constexpr int kTries = 100; // other threads, and processes that count processes anew
        for (int i = 0; i < kTries && m_file < 0; ++i) {
            m_path =
                target.string() + std::string(kMark) + std::to_string(getpid()) + "-" + std::to_string(i);
            m_file = open(m_path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
            if (m_file < 0 && errno != EEXIST)
                break;
        }
        if (m_file >= 0)
            flock(m_file, LOCK_EX | LOCK_NB);
    }
    ~FreshFile()
    {
        if (m_file < 0)
            return;
        if (!m_placed)
            unlink(m_path.c_str());
        close(m_file);
    }
    FreshFile(const FreshFile&) = delete;
    FreshFile& operator=(const FreshFile&) = delete;

    std::string write(std::string_view text, std::optional<mode_t> mode, bool lasting) const
    {
        if (m_file < 0 || (mode && fchmod(m_file, *mode) != 0))
            return lastError(m_path);
        while (!text.empty()) {
            const ssize_t count = ::write(m_file, text.data(), text.size());
            if (count < 0 && errno != EINTR)
                return lastError(m_path);
            text.remove_prefix(count < 0 ? 0 : static_cast<std::size_t>(count));
        }
        return lasting && fsync(m_file) != 0 ? lastError(m_path) : std::string();
    }

    std::string moveTo(const fs::path& target)
    {
        m_placed = rename(m_path.c_str(), target.c_str()) == 0;
        return m_placed ? std::string() : lastError(target);
    }

private:
    fs::path m_path;
    int m_file = -1;
    bool m_placed = false;
};

/// What one kept aside before stays.
std::string moveAside(const fs::path& path)
{
    fs::path aside = path.string() + ".bak";
    for (int i = 2; isThere(aside); ++i)
        aside = path.string() + ".bak" + std::to_string(i);
    return rename(path.c_str(), aside.c_str()) == 0 || errno == ENOENT ? std::string() : lastError(aside);
}

std::string makeFolder(const fs::path& folder)
{
    std::error_code error;
    if (!folder.empty())
        fs::create_directories(folder, error);
    return error ? folder.string() + ": " + error.message() : std::string();
}

std::string put(const fs::path& path, const std::string& text, EOld old, bool lasting)
{
    std::string problem = makeFolder(path.parent_path());
    if (!problem.empty())
        return problem;
    std::error_code notThere;
    const fs::path followed = fs::canonical(path, notThere);
    const fs::path& target = notThere ? path : followed;
    struct stat status {};
    const bool isThereAlready = stat(target.c_str(), &status) == 0;

    FreshFile fresh(target);
    problem =
        fresh.write(text, isThereAlready ? std::optional(status.st_mode & 07777u) : std::nullopt, lasting);
    if (problem.empty() && old == EOld::StaysAside)
        problem = moveAside(target);
    return problem.empty() ? fresh.moveTo(target) : problem;
}

/// "battery.json.new4711-0"
bool isFreshName(std::string_view name)
{
    const std::size_t mark = name.rfind(kMark);
    const std::size_t dash = name.rfind('-');
    if (mark == std::string_view::npos || dash == std::string_view::npos || dash < mark + kMark.size())
        return false;
    const std::string_view process = name.substr(mark + kMark.size(), dash - mark - kMark.size());
    const std::string_view number = name.substr(dash + 1);
    return !process.empty() && !number.empty() &&
           process.find_first_not_of(kDigits) == std::string_view::npos &&
           number.find_first_not_of(kDigits) == std::string_view::npos;
}

} // namespace

std::string replaceText(const fs::path& path, const std::string& text)
{
    return put(path, text, EOld::Goes, false);
}

std::string saveText(const fs::path& path, const std::string& text, EOld old)
{
    return put(path, text, old, true);
}

void sweepLeftovers(const fs::path& folder)
{
    for (const std::string& name : entriesOf(folder)) {
        if (!isFreshName(name))
            continue;
        const fs::path path = folder / name;
        const int file = open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
        if (file < 0)
            continue;
        if (flock(file, LOCK_EX | LOCK_NB) == 0)
            unlink(path.c_str());
        close(file);
    }
}

} // namespace demo
