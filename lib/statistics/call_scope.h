#pragma once

#include <memory>

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
    /// An entry of the list of what waits, in the order in which it was retired.
    struct Waiting {
        Waiting* next = nullptr;
        void* object = nullptr;
        void (*destroy)(void* object) = nullptr;
    };

public:
    CallScope() noexcept { ++s_depth; }
    /// The outermost one destroys what was retired, which may run destructors of the host.
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

    /// A place among what waits, taken beforehand by whoever owns what functors may stand on: so removing
    /// never needs memory.
    class Place {
    public:
        Place() : m_waiting(std::make_unique<Waiting>()) {}

    private:
        friend class CallScope;

        std::unique_ptr<Waiting> m_waiting; ///< null once it was moved from
    };

    /// Destroys an object when the outermost call returns; at once outside all calls, where that may run
    /// destructors of the host.
    template<typename T>
    static void retire(std::unique_ptr<T> object, Place place) noexcept
    {
        if (active() && object)
            keep(std::move(place), object.release(), [](void* kept) { delete static_cast<T*>(kept); });
    }

private:
    static void keep(Place place, void* object, void (*destroy)(void* object)) noexcept;
    static void destroyRetired() noexcept;

    static unsigned s_depth;
    /// Plain pointers have no destructor that could run before the last instance goes at process exit.
    static Waiting* s_first;
    static Waiting* s_last;
};

} // namespace statistics
