#include "mapping_table.h"

#include "files.h"
#include "texts/shown_text.h"

#include <cstdio>

namespace demo {

using statistics::CounterValue;
using Row = MappingRow;

namespace {

constexpr float kPeriod = 5.0f; ///< seconds; the kernel walks all pages for it
constexpr std::size_t kResidentColumn = 3;

std::string hexadecimal(std::uint64_t address)
{
    char text[20];
    std::snprintf(text, sizeof(text), "%012llx", static_cast<unsigned long long>(address));
    return text;
}

std::string nameOf(const std::string& path)
{
    return path.empty() ? "(anonymous)" : texts::visible(path.substr(path.rfind('/') + 1));
}

} // namespace

MappingTable::MappingTable(unsigned parent, ReaderThread& reader, Notices& notices)
    : m_table(addSum("Mappings", parent, kPeriod, {"%.3f MiB in memory"}, kResidentColumn), kPeriod, reader,
              [] { return parseMappings(readText("/proc/self/smaps").value_or("")); })
{
    addColumns();
    addActions(notices);
}

void MappingTable::addColumns()
{
    // MiB with three decimals: a page shows, and so do terabytes of addresses, which KiB in 32 bits can't.
    constexpr const char* kMebibytes = "%.3f MiB";
    m_table.addColumn("File", 0.32f, [](const Row& row) { return CounterValue(nameOf(row.path)); });
    m_table.addColumn("Access", 0.09f, [](const Row& row) { return CounterValue(row.access); });
    m_table.addColumn(
        "Size", 0.15f, [](const Row& row) { return toValue(row.sizeMiB); }, kMebibytes);
    m_table.addColumn(
        "Resident", 0.14f, [](const Row& row) { return toValue(row.residentMiB); }, kMebibytes);
    m_table.addColumn(
        "Dirty", 0.13f, [](const Row& row) { return toValue(row.dirtyMiB); }, kMebibytes);
    m_table.addColumn("Address", 0.17f, [](const Row& row) { return CounterValue(hexadecimal(row.key)); });
    m_table.setKeyColumn(0);
}

void MappingTable::addActions(Notices& notices)
{
    m_table.addClipboardAction();
    m_table.addAction("Copy path", [&notices](const Row& row) {
        if (!row.path.empty())
            notices.copy(row.path);
        notices.message = row.path.empty() ? "This mapping has no file." : "Copied: " + row.path;
    });
    m_table.setDefaultAction([&notices](const Row& row) {
        notices.details = {"Mapping " + nameOf(row.path), row.text};
    });
}

} // namespace demo
