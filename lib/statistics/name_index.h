#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace statistics {

/// Finds positions in a store by the hash of the names of what stands there: a flat table, derived from the
/// store. Names that count only within a group are hashed with the group's number.
///
/// Entries are never taken out. Whoever searches checks what is found against the things themselves, so
/// entries of things that are gone do no harm until the table is filled anew. Among equal hashes the entry
/// added first is found first.
class NameIndex {
public:
    static std::uint32_t hash(unsigned group, std::string_view name);

    /// Drops all entries and makes room for `count` and as many again.
    void reset(std::size_t count);
    /// True if another entry wouldn't fit well.
    bool isFull() const { return (m_used + 1) * 4 > m_entries.size() * 3; }
    void add(std::uint32_t hash, unsigned position);

    /// The first position under this hash that `matches`; `none` if there is no such position.
    template<typename Matches>
    unsigned find(std::uint32_t hash, unsigned none, const Matches& matches) const
    {
        if (m_entries.empty())
            return none;
        for (std::size_t at = hash & mask(); m_entries[at].used; at = (at + 1) & mask())
            if (m_entries[at].hash == hash && matches(m_entries[at].position))
                return m_entries[at].position;
        return none;
    }

private:
    struct Entry {
        std::uint32_t hash;
        unsigned position : 31;
        unsigned used : 1;
    };

    std::size_t mask() const { return m_entries.size() - 1; }

    std::vector<Entry> m_entries; ///< a power of two, never quite full
    std::size_t m_used = 0;
};

} // namespace statistics
