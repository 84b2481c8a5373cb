#pragma once

namespace Orv {

/// The named scopes that the library is in, for whoever looks into a report.
class StackTracker {
public:
    /// Enters a scope. `name` and `file` are string literals.
    static void push(const char* name, const char* file, unsigned line) noexcept;
    /// Leaves the scope last entered.
    static void pop() noexcept;

    static unsigned depth() noexcept;
    /// The name of the innermost scope, null outside all.
    static const char* current() noexcept;
};

/// Pairs every push with a pop, on every way out.
class [[nodiscard]] StackScope {
public:
    StackScope(const char* name, const char* file, unsigned line) { StackTracker::push(name, file, line); }
    ~StackScope() { StackTracker::pop(); }
    StackScope(const StackScope&) = delete;
    StackScope& operator=(const StackScope&) = delete;
};

} // namespace Orv
