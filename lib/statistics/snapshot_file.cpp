// Reading, and what failed in it in words. Numbers have a point whatever the host's locale.

#include "snapshot_file.h"

#include "native_file.h"
#include "native_path.h"

#include <algorithm>
#include <clocale>
#include <cstdlib>
#include <utility>

#if defined(__APPLE__) || defined(__FreeBSD__)
#include <xlocale.h>
#endif

namespace statistics {

namespace {

constexpr std::size_t kChunk = std::size_t{1} << 16u; ///< bytes read at once

/// Gives the lines of a file one by one, and holds no more of it than a line and a chunk.
class LineReader {
public:
    explicit LineReader(const NativeFile& file) : m_file(file) {}

    /// Goes on to the next line. False at the end of the file, on an error, and at a line that is too long.
    bool next();
    std::string_view line() const { return m_line; } ///< good until `next`
    std::size_t number() const { return m_number; }  ///< of the line that was last looked at
    bool ended() const { return m_ended; }           ///< the line has a line end
    bool tooLong() const { return m_tooLong; }
    const std::error_code& error() const { return m_error; }

private:
    std::string_view rest() const { return {m_buffer.data() + m_begin, m_end - m_begin}; }
    bool take(std::size_t length, bool ended);
    bool fill();

    const NativeFile& m_file;
    std::string m_buffer;
    std::size_t m_begin = 0; ///< bytes from here to `m_end` are yet to be given out
    std::size_t m_end = 0;
    std::string_view m_line;
    std::size_t m_number = 0;
    bool m_ended = true;
    bool m_tooLong = false;
    std::error_code m_error;
};

bool LineReader::next()
{
    std::size_t searched = 0;
    while (searched <= kLongestSnapshotLine) {
        const std::size_t length = rest().find('\n', searched);
        if (length != std::string_view::npos)
            return take(length, true);
        searched = rest().size();
        if (!fill())
            return searched > 0 && take(searched, false);
    }
    return take(searched, false);
}

bool LineReader::take(std::size_t length, bool ended)
{
    ++m_number;
    m_line = rest().substr(0, length);
    m_begin += length + (ended ? 1 : 0);
    m_ended = ended;
    m_tooLong = length > kLongestSnapshotLine;
    if (!m_line.empty() && m_line.back() == '\r')
        m_line.remove_suffix(1);
    return !m_tooLong && !m_error;
}

/// Reads on behind the bytes that are left. False if there is no more.
bool LineReader::fill()
{
    std::copy(m_buffer.begin() + static_cast<std::ptrdiff_t>(m_begin),
              m_buffer.begin() + static_cast<std::ptrdiff_t>(m_end), m_buffer.begin());
    m_end -= std::exchange(m_begin, 0);
    if (m_buffer.size() < m_end + kChunk)
        m_buffer.resize(m_end + kChunk);
    const std::size_t count = m_file.read(m_buffer.data() + m_end, kChunk, m_error);
    m_end += count;
    return count > 0;
}

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

/// Without the white space before and behind the first word, whatever the locale.
std::string_view firstWord(std::string_view text)
{
    constexpr std::string_view kWhiteSpace = " \t\n\v\f\r";
    text.remove_prefix(std::min(text.find_first_not_of(kWhiteSpace), text.size()));
    return text.substr(0, text.find_first_of(kWhiteSpace));
}

/// How it ended where the lines did.
ESnapshotRead endOf(const LineReader& lines)
{
    if (lines.error())
        return ESnapshotRead::Unreadable;
    if (lines.tooLong())
        return ESnapshotRead::LineTooLong;
    return lines.ended() ? ESnapshotRead::Whole : ESnapshotRead::Cut;
}

ESnapshotRead readHead(LineReader& lines, ESnapshotHead head)
{
    for (const std::string_view expected : kSnapshotHead) {
        if (lines.next() && (head == ESnapshotHead::Any || lines.line() == expected))
            continue;
        return head == ESnapshotHead::Any || lines.error() ? endOf(lines) : ESnapshotRead::NoSnapshot;
    }
    return ESnapshotRead::Whole;
}

ESnapshotRead visitLines(LineReader& lines, const std::function<bool(const SnapshotLine&)>& visit)
{
    while (lines.next()) {
        const std::string_view line = lines.line();
        const std::size_t tab = line.find(kSnapshotDelimiter);
        if (tab == std::string_view::npos)
            return lines.ended() ? ESnapshotRead::Malformed : ESnapshotRead::Cut;
        if (!visit({lines.number(), line.substr(0, tab), line.substr(tab + 1), lines.ended()}))
            return ESnapshotRead::Stopped;
    }
    return endOf(lines);
}

SnapshotReading visitFile(const NativeFile& file, ESnapshotHead head,
                          const std::function<bool(const SnapshotLine&)>& visit)
{
    LineReader lines(file);
    ESnapshotRead end = readHead(lines, head);
    if (end == ESnapshotRead::Whole)
        end = visitLines(lines, visit);
    return {end, lines.number(), lines.error()};
}

} // namespace

SnapshotReading visitSnapshotFile(const std::string& path, ESnapshotHead head,
                                  const std::function<bool(const SnapshotLine&)>& visit)
{
    std::error_code error;
    const NativeFile file = NativeFile::open(toPath(path), error);
    if (error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory)
        return {ESnapshotRead::Missing, 0, error};
    if (error)
        return {ESnapshotRead::Unreadable, 0, error};
    if (!file.isRegular())
        return {ESnapshotRead::NotRegular, 0, {}};
    return visitFile(file, head, visit);
}

SnapshotReading readSnapshotFile(const std::string& path, SnapshotValues& values)
{
    std::string word;
    return visitSnapshotFile(path, ESnapshotHead::Any, [&](const SnapshotLine& line) {
        word = firstWord(line.value);
        if (!word.empty())
            values.emplace_back(line.caption, parseFloat(word.c_str()));
        return !word.empty();
    });
}

std::string describe(const SnapshotReading& reading)
{
    const std::string line = "line " + std::to_string(reading.line);
    switch (reading.end) {
    case ESnapshotRead::Whole:
        return "read to its end";
    case ESnapshotRead::Stopped:
        return "read as far as " + line;
    case ESnapshotRead::Missing:
        return "there is no such file";
    case ESnapshotRead::NotRegular:
        return "not a regular file";
    case ESnapshotRead::Unreadable:
        return "it can't be read: " + reading.error.message();
    case ESnapshotRead::NoSnapshot:
        return "no snapshot: it doesn't begin as one";
    case ESnapshotRead::Malformed:
        return line + " has no tab";
    case ESnapshotRead::Cut:
        return "cut in " + line;
    case ESnapshotRead::LineTooLong:
        return line + " is longer than 1 MiB";
    }
    return {};
}

} // namespace statistics
