#include "call_scope.h"

namespace statistics {

unsigned CallScope::s_depth = 0;
std::size_t CallScope::s_owned = 0;
std::vector<CallScope::Waiting>* CallScope::s_waiting = nullptr;

void CallScope::takeRoom()
{
    if (!s_waiting)
        s_waiting = new std::vector<Waiting>;
    const std::size_t needed = s_waiting->size() + s_owned + 1;
    // By an eighth: there is hardly ever anything in it to be moved.
    if (needed > s_waiting->capacity())
        s_waiting->reserve(needed + needed / 8);
    ++s_owned;
}

void CallScope::retire(void* object, void (*destroy)(void* object)) noexcept
{
    --s_owned;
    if (active())
        return s_waiting->push_back({object, destroy});
    destroy(object);
    giveBackRoom();
}

void CallScope::destroyRetired() noexcept
{
    if (!s_waiting)
        return;
    // Destructors of host objects may remove more items, which come last: go on until nothing is left.
    std::size_t next = 0;
    while (next < s_waiting->size()) {
        const Waiting waiting = (*s_waiting)[next++];
        waiting.destroy(waiting.object);
    }
    s_waiting->clear();
    giveBackRoom();
}

void CallScope::giveBackRoom() noexcept
{
    if (s_owned == 0 && s_waiting && s_waiting->empty())
        delete std::exchange(s_waiting, nullptr);
}

} // namespace statistics
