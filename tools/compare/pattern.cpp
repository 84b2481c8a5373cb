#include "pattern.h"

#include <cstddef>

namespace compare {

namespace {

constexpr std::size_t kNone = std::string_view::npos;

/// How many bytes of the pattern at `at` fit the character; 0 if it doesn't fit. A "\" at the end is itself.
std::size_t fitting(std::string_view pattern, std::size_t at, char character)
{
    if (at >= pattern.size())
        return 0;
    if (pattern[at] == '\\' && at + 1 < pattern.size())
        return pattern[at + 1] == character ? 2 : 0;
    return pattern[at] == '?' || pattern[at] == character ? 1 : 0;
}

} // namespace

/// Goes back to the last "*" only: what an earlier one took can stay as it is.
bool matches(std::string_view pattern, std::string_view path)
{
    std::size_t inPattern = 0;
    std::size_t inPath = 0;
    std::size_t star = kNone; // behind the last one
    std::size_t taken = 0;    // where the path goes on behind what it took
    while (inPath < path.size()) {
        if (inPattern < pattern.size() && pattern[inPattern] == '*') {
            star = ++inPattern;
            taken = inPath;
        } else if (const std::size_t bytes = fitting(pattern, inPattern, path[inPath])) {
            inPattern += bytes;
            ++inPath;
        } else if (star != kNone) {
            inPattern = star;
            inPath = ++taken;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', inPattern) == kNone;
}

} // namespace compare
