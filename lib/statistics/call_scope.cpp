#include "call_scope.h"

#include <utility>

namespace statistics {

unsigned CallScope::s_depth = 0;
CallScope::Waiting* CallScope::s_first = nullptr;
CallScope::Waiting* CallScope::s_last = nullptr;

void CallScope::keep(Place place, void* object, void (*destroy)(void* object)) noexcept
{
    Waiting* const added = place.m_waiting.release();
    *added = {nullptr, object, destroy};
    (s_first ? s_last->next : s_first) = added;
    s_last = added;
}

void CallScope::destroyRetired() noexcept
{
    // Destructors of host objects may remove more items, which come last: go on until nothing is left.
    while (s_first) {
        const std::unique_ptr<Waiting> waiting(s_first);
        s_first = waiting->next;
        waiting->destroy(waiting->object);
    }
}

} // namespace statistics
