#pragma once

#include "measure.h"
#include "panel_items.h"
#include "reader_thread.h"

#include <statistics/statistics.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <limits>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace demo {

/// A table on the panel over rows that are read as a whole, on the reader's thread. The library asks for the
/// number of rows and for cells many times in between; all that costs is a look into the last reading.
///
/// The library keeps order and selection by position. Here they follow what the user sees: after each reading
/// the rows are sorted anew and the selection goes to where its row went. `Row` has a `key` that stays the
/// same from reading to reading.
template<typename Row>
class LiveTable {
public:
    using Rows = std::vector<Row>;
    /// Runs on the reader's thread, even when the table is gone: it owns all that it needs.
    using Read = std::function<Rows()>;
    using Arrange = std::function<void(Rows&)>;
    using Cell = std::function<statistics::CounterValue(const Row&)>;
    using Action = std::function<void(const Row&)>;

    /// Stands under `parent`, a counter that sums up the rows. `arrange` may take rows out of a reading.
    LiveTable(unsigned parent, float period, ReaderThread& reader, Read read, Arrange arrange = {})
        : m_period(period),
          m_reader(reader),
          m_reading(std::make_shared<Reading>(std::move(read))),
          m_arrange(std::move(arrange)),
          m_parent(parent),
          m_id(statistics::System::instance()->createTable(
              "Table", [this] { return m_rows.size(); }, kNeverAgain, parent))
    {
    }
    LiveTable(const LiveTable&) = delete; ///< the library's functors hold the address
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

    /// Has the rows read anew before their period is over.
    void setStale() { m_stale = true; }

    /// Asks for rows if it is time, and shows those that have been read. With `hold` they stay as they are: a
    /// menu is open, and its row shall not change under it.
    void refresh(float dt, bool hold)
    {
        m_stale |= m_period.due(dt);
        if (m_stale && !m_asked)
            ask();
        if (!hold)
            showWhatWasRead();
    }

private:
    /// Shared with the reader's thread.
    struct Reading {
        explicit Reading(Read function) : read(std::move(function)) {}

        Read read; ///< the reader's alone
        std::mutex mutex;
        std::optional<Rows> rows; ///< guarded by `mutex`
    };

    /// The library refreshes the table when it is told to: when there are new rows.
    static constexpr float kNeverAgain = std::numeric_limits<float>::infinity();

    statistics::Table& table() { return *statistics::System::instance()->getTable(m_id); }

    std::function<void(std::size_t)> onRow(Action action)
    {
        return [this, action = std::move(action)](std::size_t row) {
            if (row < m_rows.size())
                action(Row(m_rows[row])); // a copy: the action may make the rows be read anew
        };
    }

    void ask()
    {
        m_asked = true;
        m_stale = false;
        m_reader.post([reading = m_reading] {
            Rows rows = reading->read();
            const std::lock_guard<std::mutex> lock(reading->mutex);
            reading->rows = std::move(rows);
        });
    }

    void showWhatWasRead()
    {
        std::optional<Rows> rows;
        {
            const std::lock_guard<std::mutex> lock(m_reading->mutex);
            rows.swap(m_reading->rows);
        }
        if (!rows)
            return;
        m_asked = false;
        if (m_arrange)
            m_arrange(*rows);
        replaceKeepingSelection(std::move(*rows));
        statistics::System::instance()->updateNode(m_parent);
    }

    void replaceKeepingSelection(Rows rows)
    {
        statistics::Table& view = table();
        const auto selected = keyAt(view, view.m_selectedRow);
        m_rows = std::move(rows);
        view.applySort(view.m_sortColumn, view.m_sortAscending);
        statistics::System::instance()->updateNode(m_id);
        const auto place = std::find_if(view.m_order.begin(), view.m_order.end(),
                                        [&](std::size_t row) { return m_rows[row].key == selected; });
        view.m_selectedRow = place == view.m_order.end()
                                 ? statistics::NO_INDEX
                                 : static_cast<std::size_t>(place - view.m_order.begin());
    }

    std::optional<decltype(Row::key)> keyAt(const statistics::Table& view, std::size_t viewRow) const
    {
        if (viewRow >= view.m_order.size() || view.m_order[viewRow] >= m_rows.size())
            return std::nullopt;
        return m_rows[view.m_order[viewRow]].key;
    }

    Period m_period;
    ReaderThread& m_reader;
    std::shared_ptr<Reading> m_reading;
    Arrange m_arrange;
    Rows m_rows;
    bool m_stale = false;
    bool m_asked = false; ///< a reading is on its way
    unsigned m_parent;
    unsigned m_id; ///< after the members that the table's functors reach
};

} // namespace demo
