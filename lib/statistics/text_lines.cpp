#include "text_lines.h"

#include <algorithm>
#include <iterator>

namespace statistics {

std::size_t lineCount(const std::string& text)
{
    std::size_t lines = 1;
    for (auto at = text.find('\n'); at != std::string::npos && at + 1 < text.size();
         at = text.find('\n', at + 1))
        ++lines;
    return lines;
}

void RowLines::add(std::size_t row, const std::string& text)
{
    const std::size_t extra = lineCount(text) - 1;
    if (extra == 0)
        return;
    const auto isBefore = [](const Tall& tall, std::size_t wanted) { return tall.row < wanted; };
    const bool isLast = m_tall.empty() || m_tall.back().row < row;
    auto position = isLast ? m_tall.end() : std::lower_bound(m_tall.begin(), m_tall.end(), row, isBefore);
    if (position == m_tall.end() || position->row != row)
        position = m_tall.insert(position, {row, extraBefore(row)});
    const std::size_t known = extraOf(position);
    if (extra > known)
        std::for_each(position, m_tall.end(), [&](Tall& tall) { tall.extraThrough += extra - known; });
}

std::size_t RowLines::extraBefore(std::size_t row) const
{
    const auto isBefore = [](const Tall& tall, std::size_t wanted) { return tall.row < wanted; };
    const auto position = std::lower_bound(m_tall.begin(), m_tall.end(), row, isBefore);
    return position == m_tall.begin() ? 0 : std::prev(position)->extraThrough;
}

std::size_t RowLines::extraOf(Position position) const
{
    return position->extraThrough - extraBefore(position->row);
}

} // namespace statistics
