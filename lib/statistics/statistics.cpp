// The free functions: `System`'s members, safe without an instance.

#include <statistics/statistics.h>

#include "debug_message.h"

#include <utility>

namespace statistics {

namespace {

/// Null without an instance, and for a node that holds no table.
Table* tableOf(unsigned id)
{
    System* system = System::instance();
    return system ? system->getTable(id) : nullptr;
}

} // namespace

ReportHandler setReportHandler(ReportHandler handler)
{
    return Orv::DebugMessageHelper::setHandler(std::move(handler));
}

unsigned label(const char* name, unsigned parent)
{
    System* system = System::instance();
    return system && name ? system->createLabel(name, parent) : INVALID_ID;
}

unsigned getItemIndex(const char* path)
{
    const System* system = System::instance();
    return system && path ? system->getItemIndex(path) : INVALID_ID;
}

unsigned childrenCounter(const std::string& name, float period, unsigned parent, std::size_t column,
                         const std::string& format)
{
    System* system = System::instance();
    return system ? system->createChildrenCounter(name, column, period, format, parent) : INVALID_ID;
}

unsigned table(const std::string& name, float period, unsigned parent, std::function<std::size_t()> rowCount)
{
    System* system = System::instance();
    return system ? system->createTable(name, std::move(rowCount), period, parent) : INVALID_ID;
}

void setKeyColumn(unsigned id, std::size_t column)
{
    if (Table* table = tableOf(id))
        table->m_keyColumn = column;
}

std::string getTableCell(unsigned id, std::size_t row, std::size_t column)
{
    const Table* table = tableOf(id);
    return table ? table->getCell(column, row) : std::string();
}

void addRowAction(unsigned id, std::string caption, std::function<void(std::size_t)> action)
{
    if (Table* table = tableOf(id))
        table->addAction(std::move(caption), std::move(action));
}

void setDefaultAction(unsigned id, std::function<void(std::size_t)> action)
{
    if (Table* table = tableOf(id))
        table->m_defaultAction = std::move(action);
}

void addClipboardAction(unsigned id)
{
    if (System* system = System::instance())
        system->addTableCliboardAction(id);
}

} // namespace statistics
