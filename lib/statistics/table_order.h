#pragma once

#include <cstddef>

namespace statistics {

class Table;

/// While one lives, its table's rows aren't sorted anew because their number has changed. A sort and a
/// refresh run getters, which may ask the table for rows: that would start a sort inside the sort, and one
/// for each cell of a refresh while other threads change the number of rows. Runs no functors.
class [[nodiscard]] SettledOrder {
public:
    enum class EReason { Sort, Refresh };

    SettledOrder(const Table& table, EReason why) noexcept;
    ~SettledOrder();
    SettledOrder(const SettledOrder&) = delete;
    SettledOrder& operator=(const SettledOrder&) = delete;

    /// The innermost one on a table, null if its order isn't settled.
    static const SettledOrder* of(const Table& table) noexcept;

    const EReason reason;

private:
    const Table& m_table;
    const SettledOrder* const m_outer;

    static const SettledOrder* s_innermost;
};

} // namespace statistics
