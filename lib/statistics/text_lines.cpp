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
    forgetFrom(row + 1);
    const std::size_t extra = lineCount(text) - 1;
    if (extra == 0)
        return;
    const std::size_t before = extraBefore(row);
    if (m_tall.empty() || m_tall.back().row != row)
        m_tall.push_back({row, before});
    std::size_t& through = m_tall.back().extraThrough;
    through = std::max(through, before + extra);
}

void RowLines::forgetFrom(std::size_t row)
{
    while (!m_tall.empty() && m_tall.back().row >= row)
        m_tall.pop_back();
}

std::size_t RowLines::extraBefore(std::size_t row) const
{
    const auto isBefore = [](const Tall& tall, std::size_t wanted) { return tall.row < wanted; };
    const auto position = std::lower_bound(m_tall.begin(), m_tall.end(), row, isBefore);
    return position == m_tall.begin() ? 0 : std::prev(position)->extraThrough;
}

} // namespace statistics
