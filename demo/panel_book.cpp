#include "panel_book.h"

#include <memory>
#include <utility>

namespace demo {

using statistics::Counter;
using statistics::System;

unsigned PanelBook::label(const std::string& name, unsigned parent)
{
    return remember(System::instance()->createLabel(name, parent), name, parent);
}

unsigned PanelBook::counter(const std::string& name, unsigned parent, float period, Getter getter,
                            const Look& look)
{
    auto counter = look.limitKey.empty() ? std::make_unique<Counter>(std::move(getter), look.format)
                                         : std::make_unique<Counter>(std::move(getter), look.format,
                                                                     look.limitFormat, look.limitKey);
    const unsigned id = System::instance()->createCounter(name, std::move(counter), period, parent);
    return remember(id, name, parent);
}

unsigned PanelBook::sum(const std::string& name, unsigned parent, float period, const Look& look,
                        std::size_t column)
{
    System& system = *System::instance();
    const unsigned id = look.limitKey.empty()
                            ? system.createChildrenCounter(name, column, period, look.format, parent)
                            : system.createChildrenCounter(name, column, period, look.limitKey, look.format,
                                                           look.limitFormat, parent);
    return remember(id, name, parent);
}

unsigned PanelBook::table(const std::string& name, unsigned parent, float period,
                          std::function<std::size_t()> rowCount)
{
    const unsigned id = System::instance()->createTable(name, std::move(rowCount), period, parent);
    return remember(id, name, parent);
}

unsigned PanelBook::remember(unsigned id, const std::string& name, unsigned parent)
{
    const auto above = m_pathOf.find(parent);
    std::string path = above == m_pathOf.end() ? name : above->second + "/" + name;
    m_paths.push_back(path);
    m_pathOf[id] = std::move(path);
    return id;
}

} // namespace demo
