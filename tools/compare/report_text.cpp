#include "table.h"

#include <algorithm>
#include <numeric>

namespace compare {

namespace {

constexpr std::size_t kGap = 2;        ///< columns of blanks between cells
constexpr std::size_t kLeastPath = 12; ///< a path is never cut shorter, even if lines then leave the terminal
constexpr std::size_t kLongestText = 32; ///< of a value that is a text
constexpr const char* kEllipsis = "…";
constexpr const char* kPlain = "\033[0m";

/// True for the first byte of a character in UTF-8.
bool isHead(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xc0u) != 0x80u;
}

/// In characters, each taken for one column.
std::size_t widthOf(const std::string& text)
{
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), isHead));
}

/// Where the character of that number begins.
std::size_t byteOf(const std::string& text, std::size_t character)
{
    std::size_t byte = 0;
    for (; byte < text.size(); ++byte)
        if (isHead(text[byte]) && character-- == 0)
            break;
    return byte;
}

/// As wide as `width` at most, by leaving out what is in the middle.
std::string shortened(const std::string& text, std::size_t width)
{
    const std::size_t whole = widthOf(text);
    if (whole <= width)
        return text;
    const std::size_t head = (width - 1) / 2;
    const std::size_t tail = width - 1 - head;
    return text.substr(0, byteOf(text, head)) + kEllipsis + text.substr(byteOf(text, whole - tail));
}

const char* colourOf(const Row& row)
{
    if (row.limit || row.mark == EMark::Worse)
        return "\033[31m"; // red
    switch (row.mark) {
    case EMark::Better:
        return "\033[32m"; // green
    case EMark::Changed:
        return "\033[33m"; // yellow
    case EMark::Added:
    case EMark::Removed:
        return "\033[36m"; // cyan
    default:
        return "\033[2m"; // dim
    }
}

class TextTable {
public:
    TextTable(const Comparison& comparison, const Look& look) : m_table(comparison, look), m_look(look)
    {
        for (const Column& column : m_table.columns()) {
            m_titles.emplace_back(column.title);
            m_widths.push_back(m_titles.back().size());
        }
        for (const Row& row : comparison.rows)
            widen(cells(row));
        fitPaths();
    }

    void print(std::ostream& out, const Comparison& comparison) const
    {
        out << line(m_titles) << '\n';
        for (const Row& row : comparison.rows)
            if (m_look.hasColours)
                out << colourOf(row) << line(cells(row)) << kPlain << '\n';
            else
                out << line(cells(row)) << '\n';
    }

private:
    std::vector<std::string> cells(const Row& row) const
    {
        std::vector<std::string> cells = m_table.cells(row);
        for (auto cell = cells.begin() + 1; cell != cells.end(); ++cell)
            *cell = shortened(*cell, kLongestText); // no number is as long
        return cells;
    }

    void widen(const std::vector<std::string>& cells)
    {
        for (std::size_t i = 0; i < cells.size(); ++i)
            m_widths[i] = std::max(m_widths[i], widthOf(cells[i]));
    }

    void fitPaths()
    {
        const std::size_t others =
            std::accumulate(m_widths.begin() + 1, m_widths.end(), kGap * (m_widths.size() - 1));
        if (m_look.width == 0 || others + m_widths[0] <= m_look.width)
            return;
        const std::size_t left = m_look.width > others ? m_look.width - others : 0;
        m_widths[0] = std::min(m_widths[0], std::max(left, kLeastPath));
    }

    std::string line(const std::vector<std::string>& cells) const
    {
        std::string line;
        for (std::size_t i = 0; i < cells.size(); ++i) {
            const std::string cell = shortened(cells[i], m_widths[i]);
            const std::string blanks(m_widths[i] - widthOf(cell), ' ');
            line += m_table.columns()[i].isNumber ? blanks + cell : cell + blanks;
            line.append(kGap, ' ');
        }
        line.erase(line.find_last_not_of(' ') + 1);
        return line;
    }

    Table m_table;
    Look m_look;
    std::vector<std::string> m_titles;
    std::vector<std::size_t> m_widths;
};

} // namespace

void printText(std::ostream& out, const Comparison& comparison, const Look& look)
{
    if (!comparison.rows.empty()) {
        TextTable(comparison, look).print(out, comparison);
        out << '\n';
    }
    const std::string note = noteOn(comparison);
    if (!note.empty())
        out << note << "\n\n";
    for (const auto& [name, count] : countsOf(comparison))
        out << name << std::string(kLeastPath + 6 - name.size(), ' ') << count << '\n';
}

} // namespace compare
