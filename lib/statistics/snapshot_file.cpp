// One snapshot as a text file: a "sep=" line, a header line, then caption, tab and value per line. Bytes go
// out as the strings hold them; numbers have a point whatever the host's locale. Every line is flushed on its
// own, so that a crash of the host leaves whole lines.

#include "statistics_analyzer.h"

#include "format.h"
#include "native_path.h"

#include <algorithm>
#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <locale>
#include <string>
#include <system_error>

#if defined(__APPLE__) || defined(__FreeBSD__)
#include <xlocale.h>
#endif

namespace statistics {

namespace {

constexpr char kDelimiter = '\t';

/// `strtof` with the point of the "C" locale. Text that doesn't begin with a number gives zero.
float parseFloat(const char* text)
{
#if defined(_MSC_VER)
    static const _locale_t locale = _create_locale(LC_ALL, "C");
    return _strtof_l(text, nullptr, locale);
#elif defined(_WIN32)
    // mingw-w64 has no strtof_l, and its _strtod_l knows neither infinities nor hexadecimal numbers.
    std::string number = text;
    const char point = *std::localeconv()->decimal_point;
    if (point != '.') {
        number.resize(std::min(number.find(point), number.size()));
        std::replace(number.begin(), number.end(), '.', point);
    }
    char* end = nullptr;
    const float value = std::strtof(number.c_str(), &end);
    return end == number.c_str() ? 0.0f : value; // "---" gives it a negative zero
#else
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
    return strtof_l(text, nullptr, locale);
#endif
}

bool isWhiteSpace(char character)
{
    return character == ' ' || (character >= '\t' && character <= '\r');
}

/// Appends the entry that a line holds. False if the line has no tab, or nothing but white space behind it.
bool readEntry(const std::string& line, SnapshotValues& values)
{
    const std::size_t tab = line.find(kDelimiter);
    if (tab == std::string::npos)
        return false;
    const auto token =
        std::find_if_not(line.begin() + static_cast<std::ptrdiff_t>(tab), line.end(), isWhiteSpace);
    if (token == line.end())
        return false;
    // A number never holds white space, so it ends with its token at the latest.
    values.emplace_back(std::string(line, 0, tab), parseFloat(&*token));
    return true;
}

/// Writes the line whole and flushes it. `line` lends its memory.
void writeLine(std::ofstream& file, const std::string& caption, const std::string& value, std::string& line)
{
    line = caption;
    line += kDelimiter;
    line += value;
    line += '\n';
    file.write(line.data(), static_cast<std::streamsize>(line.size()));
    file.flush();
}

} // namespace

void StatisticsAnalyzer::writeSnapshot(const std::string& relativePath, const SnapshotValues& values) const
{
    const std::filesystem::path path = toPath(Orv::orv_format("%s/%s", root.c_str(), relativePath.c_str()));
    std::error_code ignored; // the open that follows fails, too
    std::filesystem::create_directories(path.parent_path(), ignored);
    std::ofstream file;
    file.imbue(std::locale::classic());
    file.open(path, std::ios::out);
    std::string text;
    std::string line;
    writeLine(file, "sep=", "", line);
    writeLine(file, "Caption", "Value", line);
    for (const auto& [caption, value] : values) {
        value.print(text, nullptr);
        writeLine(file, caption, text, line);
    }
}

SnapshotValues StatisticsAnalyzer::readSnapshot(const std::string& path)
{
    SnapshotValues values;
    std::ifstream file;
    file.imbue(std::locale::classic());
    file.open(toPath(path), std::ios::in);
    std::string line;
    std::getline(file, line); // "sep="
    std::getline(file, line); // the header
    while (std::getline(file, line) && readEntry(line, values)) {
    }
    return values;
}

} // namespace statistics
