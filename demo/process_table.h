#pragma once

#include "live_table.h"
#include "notices.h"
#include "panel_book.h"
#include "task_loads.h"

#include <statistics/value.h>

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

namespace demo {

/// The processes of the machine. A double click shows all that the kernel tells of one, the menu copies its
/// command line or hides it.
class ProcessTable {
public:
    /// Stands under a counter of its rows.
    ProcessTable(PanelBook& book, unsigned parent, Notices& notices);

    void refresh(float dt, bool hold) { m_table.refresh(dt, hold); }

    std::size_t hiddenCount() const { return m_hidden.size(); }
    void showHidden();

private:
    struct Row {
        std::uint64_t key; // the process's id
        std::string name;
        const char* state;
        int threads;
        int nice;
        double processorSeconds;
        statistics::CounterValue loadPercent;
        double residentMiB;
    };

    std::vector<Row> readRows();
    bool readRow(int process, Row& row);
    void addColumns();
    void addActions(Notices& notices);
    void hide(const Row& row, Notices& notices);

    TaskLoads m_loads;
    std::set<std::uint64_t> m_hidden; // keys of rows
    LiveTable<Row> m_table;
};

} // namespace demo
