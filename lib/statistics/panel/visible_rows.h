#pragma once

#include "text_lines.h"

#include <algorithm>
#include <array>
#include <cstddef>

struct ImRect;

namespace statistics::widgets {

/// Rows of text that stand one below the other from the cursor on, each as high as its lines. Those that
/// nobody looks at aren't drawn, and everything stands where it would stand if they were.
class VisibleRows {
public:
    struct Range {
        std::size_t begin = 0;
        std::size_t end = 0;
    };

    VisibleRows(std::size_t count, const RowLines& lines);

    /// What has to be drawn, by `begin`; ranges may overlap: what is in view, where keyboard navigation looks
    /// for its next place and where it stands, everything while ImGui logs.
    std::array<Range, 5> ranges() const;
    /// Puts the cursor where the row begins; behind the last row is where the rows end.
    void moveTo(std::size_t row) const;

private:
    float top(std::size_t row) const;
    std::size_t rowAt(float offset) const;
    Range rangeAt(float top, float bottom) const;
    Range rangeAround(const ImRect& place) const;

    std::size_t m_count;
    const RowLines& m_lines;
    float m_start; ///< on the screen
    float m_lineHeight, m_rowHeight;
};

template<typename Draw>
void forEachVisibleRow(std::size_t count, const RowLines& lines, const Draw& draw)
{
    const VisibleRows rows(count, lines);
    std::size_t next = 0;
    for (const VisibleRows::Range& range : rows.ranges())
        for (next = std::max(next, range.begin); next < range.end; ++next) {
            rows.moveTo(next);
            draw(next);
        }
    rows.moveTo(count);
}

} // namespace statistics::widgets
