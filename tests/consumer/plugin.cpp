// What a program loads and drops while it runs: it adds items and takes them away again. Compiled without
// exceptions and type information, as such modules often are.

#include <statistics/statistics.h>

#include <array>
#include <memory>

namespace {

const std::array<int, 3> kRows{10, 20, 30};
unsigned s_group = statistics::INVALID_ID;

} // namespace

extern "C" void load()
{
    using namespace statistics;
    s_group = label("Plugin");
    System::instance()->createCounter(
        "Rows", std::make_unique<Counter>([] { return CounterValue(static_cast<int>(kRows.size())); }), 0,
        s_group);
    const unsigned id = table("Table", 0, s_group, [] { return kRows.size(); });
    System::instance()->getTable(id)->addColumn(
        "Row", [](std::size_t row) { return CounterValue(kRows[row]); }, 0.5f);
    addRowAction(id, "Act", [](std::size_t) {});
}

/// Every functor that points into this module goes, with the group that holds them all.
extern "C" void unload()
{
    statistics::System::instance()->removeItem(s_group);
}
