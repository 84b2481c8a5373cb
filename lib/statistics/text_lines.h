#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace statistics {

/// The lines that ImGui draws a text in: a line break at its end begins none.
std::size_t lineCount(const std::string& text);

/// How many lines high each row of a table is. Nearly all rows are one line high: only the others are kept.
class RowLines {
public:
    /// Makes the row and those below it one line high.
    void forgetFrom(std::size_t row);
    /// Makes the row at least as high as `text`. Rows come in ascending order: those behind one that comes
    /// again are one line high until they come again, too.
    void add(std::size_t row, const std::string& text);
    /// The lines above `row` beyond one for each row. Logarithmic in the rows that are higher than one line.
    std::size_t extraBefore(std::size_t row) const;

private:
    struct Tall {
        std::size_t row;
        std::size_t extraThrough; ///< lines beyond one for each row, up to this row and with it
    };

    std::vector<Tall> m_tall; ///< by row
};

} // namespace statistics
