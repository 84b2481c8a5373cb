#include "table.h"

namespace compare {

namespace {

/// A "\" before each character that Markdown reads as more than itself.
std::string escaped(const std::string& text)
{
    std::string result;
    for (const char c : text) {
        if (std::string_view("\\`*_{}[]<>|~#&").find(c) != std::string_view::npos)
            result += '\\';
        result += c;
    }
    return result;
}

void printLine(std::ostream& out, const std::vector<std::string>& cells)
{
    out << '|';
    for (const std::string& cell : cells)
        out << ' ' << escaped(cell) << " |";
    out << '\n';
}

void printHead(std::ostream& out, const std::vector<Column>& columns)
{
    std::vector<std::string> titles;
    titles.reserve(columns.size());
    for (const Column& column : columns)
        titles.emplace_back(column.title);
    printLine(out, titles);
    out << '|';
    for (const Column& column : columns)
        out << (column.isNumber ? "--:|" : "---|");
    out << '\n';
}

} // namespace

void printMarkdown(std::ostream& out, const Comparison& comparison, const Look& look)
{
    if (!comparison.rows.empty()) {
        const Table table(comparison, look);
        printHead(out, table.columns());
        for (const Row& row : comparison.rows)
            printLine(out, table.cells(row));
        out << '\n';
    }
    const std::string note = noteOn(comparison);
    if (!note.empty())
        out << escaped(note) << "\n\n";
    out << "| kind | rows |\n|---|--:|\n";
    for (const auto& [name, count] : countsOf(comparison))
        out << "| " << name << " | " << count << " |\n";
}

} // namespace compare
