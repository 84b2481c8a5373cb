#include "proc_text.h"

#include <charconv>
#include <unistd.h>

namespace demo {

namespace {

constexpr std::string_view kBlanks = " \t\n\r";

std::string_view trim(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

template<typename Number>
Number numberAt(const std::vector<std::string_view>& words, std::size_t index)
{
    return static_cast<Number>(toNumber(words[index]).value_or(0));
}

} // namespace

std::vector<std::string_view> wordsOf(std::string_view text)
{
    std::vector<std::string_view> words;
    for (std::size_t start = text.find_first_not_of(kBlanks); start != std::string_view::npos;) {
        const std::size_t end = text.find_first_of(kBlanks, start);
        words.push_back(text.substr(start, end - start));
        start = text.find_first_not_of(kBlanks, end);
    }
    return words;
}

std::optional<double> toNumber(std::string_view word)
{
    double number = 0;
    const auto result = std::from_chars(word.data(), word.data() + word.size(), number);
    if (result.ec != std::errc())
        return std::nullopt;
    return number;
}

std::optional<std::string_view> lineOf(std::string_view text, std::string_view key)
{
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = text.find('\n', start);
        const std::string_view line = text.substr(start, end - start);
        if (line.substr(0, key.size()) == key)
            return trim(line.substr(key.size()));
        if (end == std::string_view::npos)
            break;
        start = end + 1;
    }
    return std::nullopt;
}

std::optional<double> numberOf(std::string_view text, std::string_view key)
{
    const auto line = lineOf(text, key);
    return line ? toNumber(*line) : std::nullopt;
}

std::optional<TaskStat> parseTaskStat(const std::string& text)
{
    // The name stands in parentheses and may hold blanks and parentheses itself.
    const std::size_t open = text.find('(');
    const std::size_t close = text.rfind(')');
    if (open == std::string::npos || close == std::string::npos || close < open)
        return std::nullopt;
    const auto words = wordsOf(std::string_view(text).substr(close + 1));
    constexpr std::size_t kState = 0, kUser = 11, kSystem = 12, kNice = 16, kThreads = 17, kStart = 19,
                          kResident = 21;
    if (words.size() <= kResident)
        return std::nullopt;

    static const auto ticksPerSecond = static_cast<double>(sysconf(_SC_CLK_TCK));
    static const double pageMiB = static_cast<double>(sysconf(_SC_PAGESIZE)) / (1024.0 * 1024.0);
    TaskStat stat;
    stat.name = text.substr(open + 1, close - open - 1);
    stat.state = words[kState].front();
    stat.processorSeconds =
        (numberAt<double>(words, kUser) + numberAt<double>(words, kSystem)) / ticksPerSecond;
    stat.nice = numberAt<int>(words, kNice);
    stat.threads = numberAt<int>(words, kThreads);
    stat.residentMiB = numberAt<double>(words, kResident) * pageMiB;
    stat.start = numberAt<std::uint64_t>(words, kStart);
    return stat;
}

const char* stateName(char state)
{
    switch (state) {
    case 'R':
        return "running";
    case 'S':
        return "sleeping";
    case 'D':
        return "disk";
    case 'I':
        return "idle";
    case 'Z':
        return "zombie";
    case 'T':
    case 't':
        return "stopped";
    default:
        return "other";
    }
}

} // namespace demo
