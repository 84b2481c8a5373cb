#include "stack_tracker.h"

namespace Orv {

namespace {

struct Scope {
    const char* name;
    const char* file;
    unsigned line;
};

/// A fixed array: entering a scope must neither allocate nor fail. Scopes beyond it are only counted.
constexpr unsigned kTrackedScopes = 32;
Scope s_scopes[kTrackedScopes];
unsigned s_depth = 0;

} // namespace

void StackTracker::push(const char* name, const char* file, unsigned line) noexcept
{
    if (s_depth < kTrackedScopes)
        s_scopes[s_depth] = {name, file, line};
    ++s_depth;
}

void StackTracker::pop() noexcept
{
    if (s_depth > 0)
        --s_depth;
}

unsigned StackTracker::depth() noexcept
{
    return s_depth;
}

const char* StackTracker::current() noexcept
{
    if (s_depth == 0)
        return nullptr;
    return s_scopes[s_depth < kTrackedScopes ? s_depth - 1 : kTrackedScopes - 1].name;
}

} // namespace Orv
