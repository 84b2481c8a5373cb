#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The small grammars of the files under /proc.
namespace demo {

/// The words of a text, separated by white space.
std::vector<std::string_view> wordsOf(std::string_view text);
std::optional<double> toNumber(std::string_view word);

/// What follows `key` at the start of a line, without blanks around it: "VmRSS:" gives "5120 kB".
std::optional<std::string_view> lineOf(std::string_view text, std::string_view key);
/// The first number of that.
std::optional<double> numberOf(std::string_view text, std::string_view key);

/// What /proc/PID/stat tells of a process or a thread.
struct TaskStat {
    std::string name; ///< any bytes but zero
    char state = '?';
    double processorSeconds = 0; ///< user and system time, in steps of the kernel's tick
    int nice = 0;
    int threads = 0;
    double residentMiB = 0;
    std::uint64_t start = 0; ///< when it began, in ticks of the kernel since the machine did
};

/// Nothing if the text isn't complete: the task ended meanwhile.
std::optional<TaskStat> parseTaskStat(const std::string& text);

/// The kernel's letter in words.
const char* stateName(char state);

} // namespace demo
