#pragma once

#include <cstddef>

namespace statistics {

class Table;

/// While one lives, its table's rows aren't sorted anew because their number has changed. A sort and a
/// refresh run getters, which may ask the table for rows: that would start a sort inside the sort, and one
/// for each cell of a refresh while other threads change the number of rows. Runs no functors.
class [[nodiscard]] SettledOrder {
public:
    explicit SettledOrder(const Table& table) noexcept;
    ~SettledOrder();
    SettledOrder(const SettledOrder&) = delete;
    SettledOrder& operator=(const SettledOrder&) = delete;

    /// True while one on this table lives.
    static bool isOn(const Table& table) noexcept;

private:
    const Table& m_table;
    const SettledOrder* const m_outer;

    static const SettledOrder* s_innermost;
};

} // namespace statistics
