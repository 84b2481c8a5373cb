#include "panel_items.h"

#include <memory>
#include <utility>

namespace demo {

using statistics::Counter;
using statistics::System;

unsigned addLabel(const std::string& name, unsigned parent)
{
    return System::instance()->createLabel(name, parent);
}

unsigned addCounter(const std::string& name, unsigned parent, float period, Counter::Getter getter,
                    const Look& look)
{
    auto counter = look.limitKey.empty() ? std::make_unique<Counter>(std::move(getter), look.format)
                                         : std::make_unique<Counter>(std::move(getter), look.format,
                                                                     look.limitFormat, look.limitKey);
    return System::instance()->createCounter(name, std::move(counter), period, parent);
}

unsigned addSum(const std::string& name, unsigned parent, float period, const Look& look, std::size_t column)
{
    System& system = *System::instance();
    return look.limitKey.empty() ? system.createChildrenCounter(name, column, period, look.format, parent)
                                 : system.createChildrenCounter(name, column, period, look.limitKey,
                                                                look.format, look.limitFormat, parent);
}

} // namespace demo
