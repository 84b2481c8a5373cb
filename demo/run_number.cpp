#include "run_number.h"

#include "files.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <fcntl.h>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace demo {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kRun = "run-";
constexpr std::uint64_t kHighest = 999'999'999'999; ///< a folder above it isn't one of ours

std::uint64_t toRunNumber(std::string_view digits)
{
    std::uint64_t number = 0;
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return result.ec == std::errc() && number <= kHighest ? number : 0;
}

std::uint64_t highestIn(const fs::path& snapshots)
{
    std::uint64_t highest = 0;
    for (const std::string_view name : entriesOf(snapshots))
        if (name.substr(0, kRun.size()) == kRun)
            highest = std::max(highest, toRunNumber(name.substr(kRun.size())));
    return highest;
}

std::uint64_t lastIn(int file)
{
    char text[32];
    const ssize_t count = pread(file, text, sizeof(text), 0);
    return count > 0 ? toRunNumber({text, static_cast<std::size_t>(count)}) : 0;
}

bool writeTo(int file, std::uint64_t number)
{
    const std::string text = std::to_string(number) + "\n";
    return ftruncate(file, 0) == 0 &&
           pwrite(file, text.data(), text.size(), 0) == static_cast<ssize_t>(text.size());
}

bool isRegular(int file)
{
    struct stat status {};
    return fstat(file, &status) == 0 && S_ISREG(status.st_mode);
}

/// False with `errno` set. The lock makes reading and writing one step; it ends with the descriptor.
bool count(int file, const fs::path& snapshots, std::uint64_t& number)
{
    if (file < 0 || flock(file, LOCK_EX) != 0)
        return false;
    errno = EINVAL;
    if (!isRegular(file))
        return false;
    number = std::max(lastIn(file), highestIn(snapshots)) + 1;
    return writeTo(file, number);
}

} // namespace

std::string runFolder(std::uint64_t number)
{
    return std::string(kRun) + std::to_string(number);
}

RunNumber takeRunNumber(const fs::path& state, const fs::path& snapshots)
{
    RunNumber run;
    std::error_code error;
    fs::create_directories(state, error);
    if (error)
        return {0, state.string() + ": " + error.message()};
    const fs::path path = state / "last-run";
    const int file = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0666);
    if (!count(file, snapshots, run.number))
        run.problem = path.string() + ": " + std::strerror(errno);
    if (file >= 0)
        close(file);
    return run;
}

} // namespace demo
