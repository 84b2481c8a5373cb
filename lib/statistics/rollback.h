#pragma once

#include <utility>

namespace statistics {

/// Takes a step back on the way out of a scope, unless the steps behind it have been done too.
template<typename Undo>
class [[nodiscard]] Rollback {
public:
    explicit Rollback(Undo undo) : m_undo(std::move(undo)) {}
    // NOLINTNEXTLINE(bugprone-exception-escape): what it undoes is there to be undone
    ~Rollback()
    {
        if (!m_done)
            m_undo();
    }
    Rollback(const Rollback&) = delete;
    Rollback& operator=(const Rollback&) = delete;

    void done() noexcept { m_done = true; }

private:
    Undo m_undo;
    bool m_done = false;
};

} // namespace statistics
