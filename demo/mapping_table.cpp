#include "mapping_table.h"

#include "files.h"
#include "proc_text.h"

#include <imgui.h>

#include <charconv>
#include <cstdio>

namespace demo {

using statistics::CounterValue;

namespace {

constexpr float kPeriod = 5.0f; // seconds; the kernel walks all pages for it
constexpr std::size_t kResidentColumn = 3;

std::string hexadecimal(std::uint64_t address)
{
    char text[20];
    std::snprintf(text, sizeof(text), "%012llx", static_cast<unsigned long long>(address));
    return text;
}

std::string nameOf(const std::string& path)
{
    return path.empty() ? "(anonymous)" : path.substr(path.rfind('/') + 1);
}

unsigned kibibytes(std::string_view entry, const char* key)
{
    return static_cast<unsigned>(numberOf(entry, key).value_or(0));
}

/// The position behind the entry that starts at `start`: its last line starts with "VmFlags:".
std::size_t endOfEntry(const std::string& text, std::size_t start)
{
    const std::size_t last = text.find("\nVmFlags:", start);
    const std::size_t end = last == std::string::npos ? last : text.find('\n', last + 1);
    return end == std::string::npos ? text.size() : end + 1;
}

} // namespace

MappingTable::MappingTable(PanelBook& book, unsigned parent, Notices& notices)
    : m_table(book, "Table", book.sum("Mappings", parent, kPeriod, {"%u KiB in memory"}, kResidentColumn),
              kPeriod, [] { return readRows(); })
{
    addColumns();
    addActions(notices);
}

void MappingTable::addColumns()
{
    m_table.addColumn("File", 0.32f, [](const Row& row) { return CounterValue(nameOf(row.path)); });
    m_table.addColumn("Access", 0.09f, [](const Row& row) { return CounterValue(row.access); });
    m_table.addColumn(
        "Size", 0.14f, [](const Row& row) { return CounterValue(row.sizeKiB); }, "%u KiB");
    m_table.addColumn(
        "Resident", 0.14f, [](const Row& row) { return CounterValue(row.residentKiB); }, "%u KiB");
    m_table.addColumn(
        "Dirty", 0.14f, [](const Row& row) { return CounterValue(row.dirtyKiB); }, "%u KiB");
    m_table.addColumn("Address", 0.17f, [](const Row& row) { return CounterValue(hexadecimal(row.key)); });
    m_table.setKeyColumn(0);
}

void MappingTable::addActions(Notices& notices)
{
    m_table.addClipboardAction();
    m_table.addAction("Copy path", [&notices](const Row& row) {
        if (!row.path.empty())
            ImGui::SetClipboardText(row.path.c_str());
        notices.message = row.path.empty() ? "This mapping has no file." : "Copied: " + row.path;
    });
    m_table.setDefaultAction([&notices](const Row& row) {
        notices.details = {"Mapping " + nameOf(row.path), row.text};
    });
}

std::vector<MappingTable::Row> MappingTable::readRows()
{
    std::vector<Row> rows;
    const std::string text = readText("/proc/self/smaps").value_or("");
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = endOfEntry(text, start);
        Row row{};
        if (parseRow(std::string_view(text).substr(start, end - start), row))
            rows.push_back(std::move(row));
        start = end;
    }
    return rows;
}

// "55f276b26000-55f276b2c000 r-xp 00002000 fe:00 247498 /usr/bin/head", then lines of a name and a value.
bool MappingTable::parseRow(std::string_view entry, Row& row)
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
    row.sizeKiB = kibibytes(entry, "Size:");
    row.residentKiB = kibibytes(entry, "Rss:");
    row.dirtyKiB = kibibytes(entry, "Private_Dirty:");
    row.text = entry;
    return true;
}

} // namespace demo
