#pragma once

#include "call_scope.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <utility>

namespace statistics {

/// What a field holds in place of a host's functor once the library has called it: the functor at an address
/// that stays, however the field is moved about.
///
/// A functor is run in place, because it may keep a state of its own and copies may be dear. But the fields
/// are the host's to replace, erase and move, from inside the functor too. So the functor lives beside its
/// field, and when the field lets it go inside a call it lives on until the outermost call returns. A copy
/// of the field has a copy of the functor, as with any `std::function`.
template<typename Functor>
class Pinned;

template<typename Result, typename... Arguments>
class Pinned<std::function<Result(Arguments...)>> {
    using Functor = std::function<Result(Arguments...)>;

public:
    Pinned() : m_functor(std::make_unique<Functor>()) {}
    Pinned(const Pinned& other) : m_functor(std::make_unique<Functor>(*other.m_functor)) {}
    Pinned(Pinned&& other) noexcept = default;
    Pinned& operator=(const Pinned& other) = delete;
    Pinned& operator=(Pinned&& other) = delete;
    ~Pinned()
    {
        if (m_functor)
            ++s_released;
    }

    /// For a host that calls the field itself. Runs the host's functor.
    Result operator()(Arguments... arguments) const
    {
        return (*m_functor)(std::forward<Arguments>(arguments)...);
    }
    Functor& functor() const { return *m_functor; }
    /// How many functors of this kind fields have let go: while it stays, what was pinned before is in place.
    static std::size_t released() { return s_released; }

private:
    static inline std::size_t s_released = 0;

    CallScope::Owner<Functor> m_functor;
};

/// The functor of a field, to be called in place. The reference is good until the outermost call returns,
/// whatever becomes of the field. Runs nothing; lack of memory leaves the field as it was. Calling what an
/// empty field gives raises `std::bad_function_call`.
template<typename Functor>
Functor& pin(Functor& field)
{
    if (!field) {
        static Functor none; // and not the field, which may go
        return none;
    }
    if (const auto* pinned = field.template target<Pinned<Functor>>())
        return pinned->functor();
    Pinned<Functor> pinned;
    Functor& functor = pinned.functor();
    Functor wrapped(std::move(pinned));
    functor.swap(field);
    field.swap(wrapped);
    return functor;
}

} // namespace statistics
