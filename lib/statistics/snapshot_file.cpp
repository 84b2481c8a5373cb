// Reading, and what failed in it in words.

#include "snapshot_file.h"

#include "decimal.h"
#include "native_file.h"
#include "native_path.h"

#include <algorithm>
#include <memory>
#include <utility>

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
    /// Line ends that have been read but not yet given out.
    std::size_t countAhead() const
    {
        return static_cast<std::size_t>(std::count(rest().begin(), rest().end(), '\n'));
    }

private:
    std::string_view rest() const { return {m_buffer.get() + m_begin, m_end - m_begin}; }
    bool take(std::size_t length, bool ended);
    bool fill();
    void makeRoom(std::size_t room);

    const NativeFile& m_file;
    std::unique_ptr<char[]> m_buffer;
    std::size_t m_capacity = 0;
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
    makeRoom(kChunk);
    const std::size_t count = m_file.read(m_buffer.get() + m_end, kChunk, m_error);
    m_end += count;
    return count > 0;
}

/// Moves what is left to the start of the buffer.
void LineReader::makeRoom(std::size_t room)
{
    const std::string_view left = rest();
    if (m_capacity < left.size() + room) {
        m_capacity = left.size() + room;
        std::unique_ptr<char[]> larger(new char[m_capacity]);
        std::copy(left.begin(), left.end(), larger.get());
        m_buffer = std::move(larger);
    } else {
        std::copy(left.begin(), left.end(), m_buffer.get());
    }
    m_begin = 0;
    m_end = left.size();
}

bool isWhiteSpace(char character)
{
    return character == ' ' || (character >= '\t' && character <= '\r');
}

/// Without the white space before and behind the first word, whatever the locale.
std::string_view firstWord(std::string_view text)
{
    std::size_t begin = 0;
    while (begin < text.size() && isWhiteSpace(text[begin]))
        ++begin;
    std::size_t end = begin;
    while (end < text.size() && !isWhiteSpace(text[end]))
        ++end;
    return text.substr(begin, end - begin);
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

template<typename Visit>
ESnapshotRead visitLines(LineReader& lines, const Visit& visit)
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

/// Calls `begin` with the number of lines that are known to follow the head, then `visit` for each.
template<typename Begin, typename Visit>
SnapshotReading visitFile(const std::string& path, ESnapshotHead head, const Begin& begin, const Visit& visit)
{
    std::error_code error;
    const NativeFile file = NativeFile::open(toPath(path), error);
    if (error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory)
        return {ESnapshotRead::Missing, 0, error};
    if (error)
        return {ESnapshotRead::Unreadable, 0, error};
    if (!file.isRegular())
        return {ESnapshotRead::NotRegular, 0, {}};
    LineReader lines(file);
    ESnapshotRead end = readHead(lines, head);
    if (end == ESnapshotRead::Whole) {
        begin(lines.countAhead());
        end = visitLines(lines, visit);
    }
    return {end, lines.number(), lines.error()};
}

} // namespace

SnapshotReading visitSnapshotFile(const std::string& path, ESnapshotHead head,
                                  const std::function<bool(const SnapshotLine&)>& visit)
{
    return visitFile(
        path, head, [](std::size_t) {}, visit);
}

SnapshotReading readSnapshotFile(const std::string& path, SnapshotValues& values)
{
    const auto begin = [&](std::size_t count) { values.reserve(values.size() + count); };
    const auto visit = [&](const SnapshotLine& line) {
        const std::string_view word = firstWord(line.value);
        if (!word.empty())
            values.emplace_back(line.caption, parseDecimal(word));
        return !word.empty();
    };
    return visitFile(path, ESnapshotHead::Any, begin, visit);
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
