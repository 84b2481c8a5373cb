#pragma once

#include "live_table.h"
#include "notices.h"
#include "panel_items.h"
#include "reader_thread.h"
#include "thread_list.h"

namespace demo {

/// The threads of this process. A double click shows all that the kernel tells of one, the menu changes its
/// priority.
class ThreadTable {
public:
    /// Stands under a counter that sums the threads' processor time.
    ThreadTable(unsigned parent, ReaderThread& reader, Notices& notices);

    void refresh(float dt, bool hold) { m_table.refresh(dt, hold); }

private:
    void addColumns();
    void addActions(Notices& notices);
    void changeNice(const ThreadRow& row, int change, Notices& notices);

    LiveTable<ThreadRow> m_table;
};

} // namespace demo
