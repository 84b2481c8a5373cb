#pragma once

#include "live_table.h"
#include "mapping_list.h"
#include "notices.h"
#include "panel_items.h"
#include "reader_thread.h"

namespace demo {

/// The memory mappings of this process. A double click shows all that the kernel tells of one, the menu
/// copies the path of the mapped file.
class MappingTable {
public:
    /// Stands under a counter that sums what is in memory.
    MappingTable(unsigned parent, ReaderThread& reader, Notices& notices);

    void refresh(float dt, bool hold) { m_table.refresh(dt, hold); }

private:
    void addColumns();
    void addActions(Notices& notices);

    LiveTable<MappingRow> m_table;
};

} // namespace demo
