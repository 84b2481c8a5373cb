#pragma once

#include "measure.h"
#include "panel_book.h"

#include <statistics/statistics.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace demo {

/// A table on the panel over rows that are read as a whole, at the table's period. The library asks for the
/// number of rows and for cells many times in between; all that costs is a look into the reading.
///
/// The library keeps order and selection by position. Here they follow what the user sees: after each reading
/// the rows are sorted anew and the selection goes to where its row went. `Row` has a `key` that stays the
/// same from reading to reading.
template<typename Row>
class LiveTable {
public:
    using Read = std::function<std::vector<Row>()>;
    using Cell = std::function<statistics::CounterValue(const Row&)>;
    using Action = std::function<void(const Row&)>;

    LiveTable(PanelBook& book, const std::string& name, unsigned parent, float period, Read read)
        : m_period(period),
          m_read(std::move(read)),
          m_id(book.table(name, parent, period, [this] { return m_rows.size(); }))
    {
    }
    LiveTable(const LiveTable&) = delete; // the library's functors hold the address
    LiveTable& operator=(const LiveTable&) = delete;

    void addColumn(const std::string& caption, float widthFraction, Cell cell, const std::string& format = {})
    {
        auto getter = [this, cell = std::move(cell)](std::size_t row) {
            return row < m_rows.size() ? cell(m_rows[row]) : statistics::CounterValue();
        };
        table().addColumn(caption, std::move(getter), widthFraction, format);
    }

    void setKeyColumn(std::size_t column) { statistics::setKeyColumn(m_id, column); }
    void addClipboardAction() { statistics::addClipboardAction(m_id); }
    void addAction(const std::string& caption, Action action)
    {
        statistics::addRowAction(m_id, caption, onRow(std::move(action)));
    }
    void setDefaultAction(Action action) { statistics::setDefaultAction(m_id, onRow(std::move(action))); }

    /// Shows the rows anew at the next chance, before their period is over.
    void setStale() { m_stale = true; }

    /// Reads the rows if it is time. With `hold` they stay as they are: a menu is open, and its row shall
    /// not change under it.
    void refresh(float dt, bool hold)
    {
        const bool due = m_period.due(dt);
        if (hold || !(due || m_stale))
            return;
        readKeepingSelection();
        if (std::exchange(m_stale, false))
            statistics::System::instance()->updateNode(m_id);
    }

private:
    statistics::Table& table() { return *statistics::System::instance()->getTable(m_id); }

    std::function<void(std::size_t)> onRow(Action action)
    {
        return [this, action = std::move(action)](std::size_t row) {
            if (row < m_rows.size())
                action(Row(m_rows[row])); // a copy: the action may make the rows be read anew
        };
    }

    void readKeepingSelection()
    {
        statistics::Table& view = table();
        const std::optional<std::uint64_t> selected = keyAt(view, view.m_selectedRow);
        m_rows = m_read();
        view.applySort(view.m_sortColumn, view.m_sortAscending);
        const auto place = std::find_if(view.m_order.begin(), view.m_order.end(),
                                        [&](std::size_t row) { return m_rows[row].key == selected; });
        view.m_selectedRow = place == view.m_order.end()
                                 ? statistics::NO_INDEX
                                 : static_cast<std::size_t>(place - view.m_order.begin());
    }

    std::optional<std::uint64_t> keyAt(const statistics::Table& view, std::size_t viewRow) const
    {
        if (viewRow >= view.m_order.size() || view.m_order[viewRow] >= m_rows.size())
            return std::nullopt;
        return m_rows[view.m_order[viewRow]].key;
    }

    Period m_period;
    Read m_read;
    std::vector<Row> m_rows;
    bool m_stale = false;
    unsigned m_id; // after the members that the table's functors reach
};

} // namespace demo
