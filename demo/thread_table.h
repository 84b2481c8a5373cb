#pragma once

#include "live_table.h"
#include "notices.h"
#include "panel_book.h"
#include "task_loads.h"

#include <statistics/value.h>

#include <cstdint>
#include <string>
#include <vector>

namespace demo {

/// The threads of this process. A double click shows all that the kernel tells of one, the menu changes its
/// priority.
class ThreadTable {
public:
    /// Stands under a counter that sums the threads' processor time.
    ThreadTable(PanelBook& book, unsigned parent, Notices& notices);

    void refresh(float dt, bool hold) { m_table.refresh(dt, hold); }

private:
    struct Row {
        std::uint64_t key; // the thread's id
        std::string name;
        const char* state;
        int nice;
        double processorSeconds;
        statistics::CounterValue loadPercent;
        statistics::CounterValue voluntarySwitches;
        statistics::CounterValue involuntarySwitches;
    };

    std::vector<Row> readRows();
    bool readRow(int thread, Row& row);
    void addColumns();
    void addActions(Notices& notices);
    void changeNice(const Row& row, int change, Notices& notices);

    TaskLoads m_loads;
    LiveTable<Row> m_table;
};

} // namespace demo
