#pragma once

#include "live_table.h"
#include "notices.h"
#include "panel_items.h"
#include "process_list.h"
#include "reader_thread.h"

#include <cstddef>
#include <set>
#include <string>
#include <vector>

namespace demo {

/// The processes of the machine. A double click shows all that the kernel tells of one, the menu copies its
/// command line or hides it.
class ProcessTable {
public:
    /// Stands under a counter of its rows. `folder` is "/proc", or where another machine's is mounted.
    ProcessTable(unsigned parent, std::string folder, ReaderThread& reader, Notices& notices);

    void refresh(float dt, bool hold) { m_table.refresh(dt, hold); }

    std::size_t hiddenCount() const { return m_hidden.size(); }
    void showHidden();

private:
    void addColumns();
    void addActions(Notices& notices);
    void hide(const ProcessRow& row, Notices& notices);

    std::string m_folder;
    std::set<TaskKey> m_hidden;
    LiveTable<ProcessRow> m_table;
};

/// Takes the hidden ones out of the rows, and what isn't among the rows any more out of the hidden ones.
void takeOutHidden(std::vector<ProcessRow>& rows, std::set<TaskKey>& hidden);

} // namespace demo
