#pragma once

#include <memory>
#include <utility>

namespace statistics {

/// Marks that the library is inside one of its calls.
///
/// Host functors run inside such calls and may remove anything, themselves included. What is removed leaves
/// its pool at once, so that ids and searches are right from the next line on, but the object lives on until
/// the outermost call returns: a functor never loses the ground it stands on. Removal itself is such a call,
/// so destructors of host objects run only when pools and trees are whole again, and may call back too.
///
/// The state is the process's, not the instance's: `Table` and `Counter` are called by hosts directly.
class [[nodiscard]] CallScope {
public:
    CallScope() noexcept { ++s_depth; }
    ~CallScope()
    {
        if (s_depth == 1)
            destroyRetired();
        --s_depth;
    }
    CallScope(const CallScope&) = delete;
    CallScope& operator=(const CallScope&) = delete;

    /// True inside a call, which is where functors run.
    static bool active() noexcept { return s_depth != 0; }

    /// Takes an object over and destroys it when the outermost call returns; at once outside all calls.
    template<typename T>
    static void retire(T object)
    {
        if (active())
            keep(std::make_shared<T>(std::move(object)));
    }

private:
    static void keep(std::shared_ptr<void> object);
    static void destroyRetired() noexcept;

    static unsigned s_depth;
};

} // namespace statistics
