#include "table_order.h"

namespace statistics {

const SettledOrder* SettledOrder::s_innermost = nullptr;

SettledOrder::SettledOrder(const Table& table) noexcept : m_table(table), m_outer(s_innermost)
{
    s_innermost = this;
}

SettledOrder::~SettledOrder()
{
    s_innermost = m_outer;
}

bool SettledOrder::isOn(const Table& table) noexcept
{
    const SettledOrder* settled = s_innermost;
    while (settled && &settled->m_table != &table)
        settled = settled->m_outer;
    return settled != nullptr;
}

} // namespace statistics
