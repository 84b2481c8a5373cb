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

History::History(std::size_t capacity) : m_capacity(std::min(capacity, kMostSamples)) {}

/// The rows that have been reached: the others aren't initialised, and take no memory before a sample comes.
void History::Block::copyTo(Block& wider, std::size_t capacity) const noexcept
{
    std::size_t rows = 0;
    for (const Ring& ring : rings)
        rows = std::max(rows, ring.size(capacity));
    for (std::size_t row = 0; row < rows; ++row)
        std::copy_n(&samples[row * width], width, &wider.samples[row * wider.width]);
    std::copy(rings.begin(), rings.end(), wider.rings.begin());
}

void History::makeRoom(unsigned slot)
{
    const std::size_t index = slot / kLanes;
    const std::size_t needed = slot % kLanes + 1;
    const std::size_t width = index < m_blocks.size() ? m_blocks[index].width : 0;
    if (!isOn() || needed <= width)
        return;
    const std::size_t spare = std::max(width / 16, std::size_t{slot / 64});
    Block wider(std::min<std::size_t>(needed + spare, kLanes), m_capacity);
    if (index >= m_blocks.size())
        m_blocks.resize(index + 1);
    m_blocks[index].copyTo(wider, m_capacity);
    m_blocks[index] = std::move(wider);
}

/// Of a value that isn't a decimal.
void History::addOther(Block& block, unsigned lane, const CounterValue& value) noexcept
{
    Ring& ring = block.rings[lane];
    if (value.isInt() || value.isUInt()) {
        ring.kind = value.isInt() ? Past::EKind::Int : Past::EKind::UInt;
        push(block, lane, value.toFloat());
    } else if (ring.size(m_capacity) > 0) {
        push(block, lane, kGap);
    }
}

void History::addAll(unsigned slot, const Past& past) noexcept
{
    Block& block = m_blocks[slot / kLanes];
    block.rings[slot % kLanes].kind = past.kind;
    for (std::size_t index = past.size() - std::min(past.size(), m_capacity); index < past.size(); ++index)
        push(block, slot % kLanes, past[index]);
}

void History::forget(unsigned slot) noexcept
{
    if (hasRoom(slot))
        m_blocks[slot / kLanes].rings[slot % kLanes] = {};
}

Past History::past(unsigned slot) const
{
    if (!hasRoom(slot))
        return {};
    const Block& block = m_blocks[slot / kLanes];
    const Ring& ring = block.rings[slot % kLanes];
    return {&block.samples[slot % kLanes], block.width, m_capacity, ring.count(m_capacity), ring.kind};
}

} // namespace statistics
