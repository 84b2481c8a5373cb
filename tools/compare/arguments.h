#pragma once

#include "judging.h"
#include "report.h"

#include <array>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace compare {

/// What the command line asks for.
struct Arguments {
    std::vector<std::string> base;
    std::vector<std::string> now;
    Judgement judgement; ///< but for the limits, which stand in `limitsFile`
    std::string limitsFile;
    std::vector<std::pair<std::string, std::string>> limitPaths; ///< key and pattern
    EFormat format = EFormat::Text;
    Selection selection;
    bool showsProbability = false;
    bool skipsBad = false;
    std::vector<std::string> failOn;
};

/// How the program ends.
enum EStatus : int { Fine = 0, Differs = 1, Wrong = 2 };

/// Nothing if the command line is wrong, or only asks for help: then all is said, and `status` is the
/// program's.
std::optional<Arguments> parseArguments(int count, const char* const* texts, int& status);

/// "Frame/*=10%", "0.5": with a pattern, "*" if there is none. False if it is neither.
bool parseTolerance(const std::string& text, std::pair<std::string, Tolerance>& rule);

} // namespace compare
