#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace statistics {

/// The latest changes of something whose parts have ids, for readers that look now and then and remember how
/// far they have read. Nothing is kept until the first reader opens the log, and never more than `kKept`
/// changes: who comes too late learns that anything may have changed. Noting takes no memory and can't fail.
class ChangeLog {
public:
    using Position = std::uint64_t;

    void note(unsigned id) noexcept
    {
        if (!m_latest.empty())
            m_latest[m_end % kKept] = id;
        ++m_end;
    }
    /// Everything may have changed.
    void noteAll() noexcept { m_end += kKept + 1; }
    void open() { m_latest.resize(kKept); }

    /// Calls `visit` with the id of each change since `position`, which moves on to the present. False, and
    /// no call, if there were more than are kept.
    template<typename Visit>
    bool readFrom(Position& position, const Visit& visit) const
    {
        const bool complete = m_end - position <= m_latest.size();
        for (Position at = complete ? position : m_end; at != m_end; ++at)
            visit(m_latest[at % kKept]);
        position = m_end;
        return complete;
    }

private:
    static constexpr std::size_t kKept = 16384; ///< of them all: a power of two

    std::vector<unsigned> m_latest; ///< a ring; empty until it is opened
    Position m_end = 0;             ///< number of changes so far
};

} // namespace statistics
