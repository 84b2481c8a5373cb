#pragma once

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

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
    struct Waiting {
        void* object;
        void (*destroy)(void* object);
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

    /// Owns what functors may stand on. What it owns when it ends inside a call lives on until the outermost
    /// call returns; outside all calls it goes at once, where that may run destructors of the host. The
    /// memory for that is taken beforehand: an owner's end never needs any.
    template<typename T>
    class Owner {
    public:
        /// Lack of memory leaves `object` where it is.
        explicit Owner(std::unique_ptr<T>&& object)
        {
            if (object)
                takeRoom();
            m_object = std::move(object);
        }
        Owner(Owner&& other) noexcept = default;
        Owner& operator=(Owner&& other) = delete;
        ~Owner()
        {
            if (m_object)
                retire(m_object.release(), [](void* kept) { delete static_cast<T*>(kept); });
        }

        T* get() const { return m_object.get(); }
        T& operator*() const { return *m_object; }
        T* operator->() const { return m_object.get(); }
        /// False if it owns nothing, such as once it was moved from.
        explicit operator bool() const { return m_object != nullptr; }

    private:
        std::unique_ptr<T> m_object;
    };

private:
    static void takeRoom();
    static void retire(void* object, void (*destroy)(void* object)) noexcept;
    static void destroyRetired() noexcept;
    static void giveBackRoom() noexcept;

    static unsigned s_depth;
    static std::size_t s_owned; ///< objects that have an owner
    /// In the order in which it was retired, with room for all that has an owner; null while nothing has. A
    /// plain pointer has no destructor that could run before the last instance goes at process exit.
    static std::vector<Waiting>* s_waiting;
};

} // namespace statistics
