#include "history.h"

#include <algorithm>
#include <limits>

namespace statistics {

namespace {

constexpr float kGap = std::numeric_limits<float>::quiet_NaN();

/// Sampling likes wide blocks, a counter that comes narrow ones: its block may have to move.
unsigned laneBitsFor(std::size_t capacity)
{
    constexpr unsigned kFewest = 8;
    constexpr unsigned kMost = 11;
    constexpr std::size_t kSamples = std::size_t{1} << 19u; // in a block of more than the fewest lanes
    unsigned bits = kFewest;
    while (bits < kMost && capacity << (bits + 1) <= kSamples)
        ++bits;
    return bits;
}

} // namespace

std::vector<float> Past::samples() const
{
    std::vector<float> all;
    all.reserve(size());
    for (std::size_t index = 0; index < size(); ++index)
        all.push_back((*this)[index]);
    return all;
}

History::History(std::size_t capacity)
    : m_capacity(static_cast<std::uint32_t>(std::min(capacity, kMostSamples))),
      m_laneBits(laneBitsFor(m_capacity))
{
}

void History::makeRoom(unsigned slot)
{
    const std::size_t index = blockOf(slot);
    const std::uint32_t needed = laneOf(slot) + 1;
    const std::uint32_t width = index < m_blocks.size() ? m_blocks[index].width : 0;
    if (!isOn() || needed <= width)
        return;
    const std::uint32_t spare = slot / 64;
    Block wider(std::min(needed + spare, 1u << m_laneBits), m_capacity);
    if (index >= m_blocks.size())
        m_blocks.resize(index + 1);
    makeCursors(slot - laneOf(slot) + wider.width - 1);
    moveTo(wider, index);
}

void History::makeCursors(unsigned lastSlot)
{
    if (lastSlot < m_cursors.size())
        return;
    m_laps.resize(lastSlot + 1);
    m_cursors.reserve(m_laps.capacity());
    while (m_cursors.size() <= lastSlot)
        m_cursors.emplace_back(Past::EKind::Decimal, laneOf(static_cast<unsigned>(m_cursors.size())));
}

/// The rows that have been reached: the others aren't initialised, and take no memory before a sample comes.
void History::moveTo(Block& wider, std::size_t index) noexcept
{
    Block& block = m_blocks[index];
    const auto first = static_cast<unsigned>(index << m_laneBits);
    std::size_t rows = 0;
    for (unsigned lane = 0; lane < block.width; ++lane) {
        Cursor& cursor = m_cursors[first + lane];
        rows = std::max(rows, past(first + lane).size());
        cursor = Cursor(cursor.kind(), cursor.next() / block.width * wider.width + lane);
    }
    for (std::size_t row = 0; row < rows; ++row)
        std::copy_n(&block.samples[row * block.width], block.width, &wider.samples[row * wider.width]);
    block = std::move(wider);
}

void History::beginLap(unsigned slot) noexcept
{
    std::uint16_t& laps = m_laps[slot];
    laps = laps == std::numeric_limits<std::uint16_t>::max() ? 1 : laps + 1;
}

/// Of a value that isn't a decimal.
void History::addOther(unsigned slot, const CounterValue& value) noexcept
{
    const Past before = past(slot);
    if (value.isInt() || value.isUInt())
        push(slot, value.isInt() ? Past::EKind::Int : Past::EKind::UInt, value.toFloat());
    else if (before.size() > 0)
        push(slot, before.kind, kGap);
}

void History::addAll(unsigned slot, const Past& past) noexcept
{
    for (std::size_t index = past.size() - std::min(past.size(), capacity()); index < past.size(); ++index)
        push(slot, past.kind, past[index]);
}

void History::forget(unsigned slot) noexcept
{
    if (!hasRoom(slot))
        return;
    m_cursors[slot] = Cursor(Past::EKind::Decimal, laneOf(slot));
    m_laps[slot] = 0;
}

Past History::past(unsigned slot) const
{
    if (!hasRoom(slot))
        return {};
    const Block& block = m_blocks[blockOf(slot)];
    const Cursor cursor = m_cursors[slot];
    const std::uint64_t count = (std::uint64_t{m_laps[slot]} * block.end + cursor.next()) / block.width;
    return {&block.samples[laneOf(slot)], block.width, m_capacity, count, cursor.kind()};
}

} // namespace statistics
