#include "call_scope.h"

#include <vector>

namespace statistics {

namespace {

using Retired = std::vector<std::shared_ptr<void>>;

// A plain pointer has no destructor that could run before the last instance goes at process exit.
Retired* s_retired = nullptr;

} // namespace

unsigned CallScope::s_depth = 0;

void CallScope::keep(std::shared_ptr<void> object)
{
    if (!s_retired)
        s_retired = new Retired;
    s_retired->push_back(std::move(object));
}

void CallScope::destroyRetired() noexcept
{
    // Destructors of host objects may remove more items: go on until nothing is left.
    while (s_retired) {
        const std::unique_ptr<Retired> batch(std::exchange(s_retired, nullptr));
        for (std::shared_ptr<void>& object : *batch)
            object.reset();
    }
}

} // namespace statistics
