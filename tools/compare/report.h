#pragma once

#include "judging.h"

#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

namespace compare {

enum class EFormat { Text, Markdown, Csv, Json };
enum class ESort { None, Path, Change, Probability };

/// Which rows are shown, and in which order. The counts are those of all rows.
struct Selection {
    bool onlyChanged = false; ///< changes, and rows outside of their limits
    ESort sort = ESort::None;
};

void select(Comparison& comparison, const Selection& selection);

/// How a table for people looks.
struct Look {
    std::size_t width = 0; ///< of the terminal, in columns; 0 for no limit
    bool hasColours = false;
    bool showsProbability = false;
};

/// Columns beside each other, then how many rows there are of each kind. Where the width doesn't suffice,
/// paths and long texts are cut in their middle.
void printText(std::ostream& out, const Comparison& comparison, const Look& look);
/// The same as a table of Markdown, nothing cut.
void printMarkdown(std::ostream& out, const Comparison& comparison, const Look& look);
/// RFC 4180: a line of captions and one a row, with all digits. A cell is empty where there is no value.
void printCsv(std::ostream& out, const Comparison& comparison);
/// One object, with all digits. What JSON has no number for is one of the texts "inf", "-inf", "nan".
void printJson(std::ostream& out, const Comparison& comparison, double alpha);

} // namespace compare
