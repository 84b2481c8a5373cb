#include "history.h"

#include <algorithm>
#include <limits>

namespace statistics {

namespace {

constexpr float kGap = std::numeric_limits<float>::quiet_NaN();

} // namespace

std::vector<float> Past::samples() const
{
    std::vector<float> all;
    all.reserve(size());
    for (std::size_t index = 0; index < size(); ++index)
        all.push_back((*this)[index]);
    return all;
}

History::Block::Block(std::uint32_t lanes, std::uint32_t capacity)
    : width(lanes),
      end(lanes * capacity),
      samples(new float[end]),
      cursors(std::make_unique<Cursor[]>(lanes)),
      laps(std::make_unique<std::uint16_t[]>(lanes))
{
    for (std::uint32_t lane = 0; lane < lanes; ++lane)
        start(lane);
}

void History::Block::start(std::uint32_t lane) noexcept
{
    cursors[lane] = Cursor(Past::EKind::Decimal, lane);
    laps[lane] = 0;
}

Past History::Block::past(std::uint32_t lane) const
{
    const std::uint64_t count = (std::uint64_t{laps[lane]} * end + cursors[lane].next()) / width;
    return {&samples[lane], width, end / width, count, cursors[lane].kind()};
}

void History::Block::beginLap(std::uint32_t lane) noexcept
{
    laps[lane] = laps[lane] == std::numeric_limits<std::uint16_t>::max() ? 1 : laps[lane] + 1;
}

/// The rows that have been reached: the others aren't initialised, and take no memory before a sample comes.
void History::Block::copyTo(Block& wider) const noexcept
{
    std::size_t rows = 0;
    for (std::uint32_t lane = 0; lane < width; ++lane) {
        rows = std::max(rows, past(lane).size());
        const std::uint32_t row = cursors[lane].next() / width;
        wider.cursors[lane] = Cursor(cursors[lane].kind(), row * wider.width + lane);
        wider.laps[lane] = laps[lane];
    }
    for (std::size_t row = 0; row < rows; ++row)
        std::copy_n(&samples[row * width], width, &wider.samples[row * wider.width]);
}

History::History(std::size_t capacity)
    : m_capacity(static_cast<std::uint32_t>(std::min(capacity, kMostSamples)))
{
}

void History::makeRoom(unsigned slot)
{
    const std::size_t index = slot / kLanes;
    const std::uint32_t needed = slot % kLanes + 1;
    const std::uint32_t width = index < m_blocks.size() ? m_blocks[index].width : 0;
    if (!isOn() || needed <= width)
        return;
    const std::uint32_t spare = std::max(width / 16, slot / 64);
    Block wider(std::min(needed + spare, std::uint32_t{kLanes}), m_capacity);
    if (index >= m_blocks.size())
        m_blocks.resize(index + 1);
    m_blocks[index].copyTo(wider);
    m_blocks[index] = std::move(wider);
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
    if (hasRoom(slot))
        m_blocks[slot / kLanes].start(slot % kLanes);
}

Past History::past(unsigned slot) const
{
    return hasRoom(slot) ? m_blocks[slot / kLanes].past(slot % kLanes) : Past();
}

} // namespace statistics
