#include "mapping_list.h"

#include "proc_text.h"

#include <charconv>
#include <string_view>

namespace demo {

namespace {

double mebibytes(std::string_view entry, const char* key)
{
    return numberOf(entry, key).value_or(0) / 1024;
}

/// The position behind the entry that starts at `start`: its last line starts with "VmFlags:".
std::size_t endOfEntry(const std::string& text, std::size_t start)
{
    const std::size_t last = text.find("\nVmFlags:", start);
    const std::size_t end = last == std::string::npos ? last : text.find('\n', last + 1);
    return end == std::string::npos ? text.size() : end + 1;
}

/// "55f276b26000-55f276b2c000 r-xp 00002000 fe:00 247498 /usr/bin/head", then lines of a name and a value.
bool parseRow(std::string_view entry, MappingRow& row)
{
    constexpr std::size_t kAccess = 1, kPath = 5;
    const std::string_view head = entry.substr(0, entry.find('\n'));
    const auto words = wordsOf(head);
    if (words.size() < kPath)
        return false;
    const std::string_view start = words[0].substr(0, words[0].find('-'));
    if (std::from_chars(start.data(), start.data() + start.size(), row.key, 16).ec != std::errc())
        return false;
    row.access = words[kAccess];
    if (words.size() > kPath) // it may hold blanks
        row.path = head.substr(static_cast<std::size_t>(words[kPath].data() - head.data()));
    row.sizeMiB = mebibytes(entry, "Size:");
    row.residentMiB = mebibytes(entry, "Rss:");
    row.dirtyMiB = mebibytes(entry, "Private_Dirty:");
    row.text = entry;
    return true;
}

} // namespace

std::vector<MappingRow> parseMappings(const std::string& text)
{
    std::vector<MappingRow> rows;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = endOfEntry(text, start);
        MappingRow row;
        if (parseRow(std::string_view(text).substr(start, end - start), row))
            rows.push_back(std::move(row));
        start = end;
    }
    return rows;
}

} // namespace demo
