#include "name_index.h"

#include <functional>

namespace statistics {

namespace {

constexpr std::size_t kLeastEntries = 64;
constexpr unsigned kNowhere = 0x7FFFFFFF; ///< all bits that an entry has for a position

} // namespace

std::uint32_t NameIndex::hash(unsigned group, std::string_view name)
{
    const std::uint64_t mixed = std::hash<std::string_view>()(name) + group * 0x9E3779B97F4A7C15u;
    return static_cast<std::uint32_t>((mixed ^ (mixed >> 32u)) & 0xFFFFFFFFu);
}

void NameIndex::reset(std::size_t count)
{
    std::size_t size = kLeastEntries;
    while (size < count * 2)
        size *= 2;
    m_entries.assign(size, Entry{0, 0, 0});
    m_used = 0;
}

void NameIndex::add(std::uint32_t hash, unsigned position)
{
    std::size_t at = hash & mask();
    for (; m_entries[at].used; at = (at + 1) & mask())
        // What had this name in this place is gone: the new one stands behind its namesakes.
        if (m_entries[at].hash == hash && m_entries[at].position == position)
            m_entries[at].position = kNowhere;
    m_entries[at] = {hash, position & kNowhere, 1};
    ++m_used;
}

} // namespace statistics
