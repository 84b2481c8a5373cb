#pragma once

#include "live_table.h"
#include "notices.h"
#include "panel_book.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace demo {

/// The memory mappings of this process. A double click shows all that the kernel tells of one, the menu
/// copies the path of the mapped file.
class MappingTable {
public:
    /// Stands under a counter that sums what is in memory.
    MappingTable(PanelBook& book, unsigned parent, Notices& notices);

    void refresh(float dt, bool hold) { m_table.refresh(dt, hold); }

private:
    struct Row {
        std::uint64_t key; // address of the first byte
        std::string path;
        std::string access;
        unsigned sizeKiB;
        unsigned residentKiB;
        unsigned dirtyKiB; // changed and this process's alone
        std::string text;  // the kernel's entry
    };

    static std::vector<Row> readRows();
    static bool parseRow(std::string_view entry, Row& row);
    void addColumns();
    void addActions(Notices& notices);

    LiveTable<Row> m_table;
};

} // namespace demo
