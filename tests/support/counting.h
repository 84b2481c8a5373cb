#pragma once

// Functors with a state of their own.

#include <memory>
#include <stdexcept>
#include <utility>

namespace test {

/// Calls `act`, and keeps count in itself: who calls a copy of it loses the count, and std::logic_error
/// tells.
template<typename Act>
auto counting(Act act)
{
    return [act, calls = 0, all = std::make_shared<int>(0)](auto&&... arguments) mutable {
        if (++calls != ++*all)
            throw std::logic_error("a functor was called through a copy");
        return act(std::forward<decltype(arguments)>(arguments)...);
    };
}

} // namespace test
