#pragma once

#include "pattern.h"
#include "samples.h"
#include "summary.h"

#include <statistics/preset.h>

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace compare {

/// How far a number may move unnoticed. An infinite amount lets any value take the place of any other, texts
/// and missing ones too.
struct Tolerance {
    double amount = 0;
    bool isRelative = false; ///< then a fraction of the base's number, without its sign
};

enum class EDirection { LowerIsBetter, HigherIsBetter };

struct Judgement {
    Rules<Tolerance> tolerances; ///< by path; without one nothing is tolerated
    Rules<EDirection> directions;
    Rules<statistics::Limit> limits; ///< for the new side
    double alpha = 0.05;             ///< below this probability a difference isn't noise
};

enum class EMark { Changed, Worse, Better, Added, Removed, WithinTolerance, Noise, Same };
constexpr std::size_t kMarks = 8;
/// As it is shown: "within tolerance".
const char* markName(EMark mark);
/// True for what neither tolerance nor noise accounts for.
bool isChange(EMark mark);

/// One path on one side.
struct Reading {
    EKind kind = EKind::Missing;
    Summary numbers;            ///< of a number
    std::string text;           ///< of a text: the first one
    std::size_t otherTexts = 0; ///< how many other values a text had in the run
};

struct Row {
    std::string path;
    std::optional<Reading> base; ///< nothing where the side hasn't the path
    std::optional<Reading> now;
    std::optional<double> change; ///< of the medians, where both are numbers
    std::optional<double> percent;
    std::optional<double> probability; ///< that noise alone differs as much; nothing where it can't be told
    std::optional<statistics::Limit> limit; ///< that the new side is outside of
    EMark mark = EMark::Same;
};

struct Comparison {
    std::vector<Row> rows; ///< in the order of the base's files, then of the new side's
    std::array<std::size_t, kMarks> counts{};
    std::size_t outside = 0;
    std::size_t untested = 0; ///< numbers that changed, where noise couldn't be told
    std::size_t baseSnapshots = 0;
    std::size_t nowSnapshots = 0;
};

/// At least so many numbers on each side tell noise from change.
constexpr std::size_t kLeastForTest = 4;

/// Holds both sides against each other, path by path. Sorts their values.
Comparison judge(const Paths& paths, Samples& base, Samples& now, const Judgement& judgement);

} // namespace compare
