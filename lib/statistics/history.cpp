#include "history.h"

#include <algorithm>
#include <limits>

namespace statistics {

namespace {

constexpr float kGap = std::numeric_limits<float>::quiet_NaN();

bool isNumber(const CounterValue& value)
{
    return !value.isString() && !value.isEmpty();
}

Past::EKind kindOf(const CounterValue& value)
{
    if (value.isDecimal())
        return Past::EKind::Decimal;
    return value.isInt() ? Past::EKind::Int : Past::EKind::UInt;
}

} // namespace

History::History(std::size_t capacity) : m_capacity(std::min(capacity, kMostSamples)) {}

std::size_t History::Block::usedRows() const
{
    std::size_t used = 0;
    for (const Ring& ring : rings)
        used = std::max<std::size_t>(used, ring.size);
    return used;
}

void History::makeRoom(unsigned slot)
{
    const std::size_t index = slot / kLanes;
    const std::size_t width = slot % kLanes + 1;
    if (!isOn() || (index < m_blocks.size() && width <= m_blocks[index].width))
        return;
    // Not initialised: pages that no sample has reached yet take no memory.
    std::unique_ptr<float[]> wider(new float[m_capacity * width]);
    if (index >= m_blocks.size())
        m_blocks.resize(index + 1);
    Block& block = m_blocks[index];
    const std::size_t rows = block.usedRows();
    for (std::size_t row = 0; row < rows; ++row)
        std::copy_n(&block.samples[row * block.width], block.width, &wider[row * width]);
    block.samples = std::move(wider);
    block.width = width;
}

void History::add(unsigned slot, const CounterValue& value) noexcept
{
    Block& block = m_blocks[slot / kLanes];
    Ring& ring = block.rings[slot % kLanes];
    const bool number = isNumber(value);
    if (!number && ring.size == 0)
        return;
    if (number)
        ring.kind = kindOf(value);
    push(block, slot % kLanes, number ? value.toFloat() : kGap);
}

void History::push(Block& block, unsigned lane, float sample) noexcept
{
    Ring& ring = block.rings[lane];
    block.samples[ring.next * block.width + lane] = sample;
    ring.next = ring.next + 1 < m_capacity ? ring.next + 1 : 0;
    if (ring.size < m_capacity)
        ++ring.size;
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
    if (slot / kLanes < m_blocks.size())
        m_blocks[slot / kLanes].rings[slot % kLanes] = {};
}

Past History::past(unsigned slot) const
{
    if (slot / kLanes >= m_blocks.size())
        return {};
    const Block& block = m_blocks[slot / kLanes];
    const Ring& ring = block.rings[slot % kLanes];
    if (ring.size == 0)
        return {};
    const std::size_t first = ring.size < m_capacity ? 0 : ring.next;
    return {&block.samples[slot % kLanes], block.width, m_capacity, first, ring.size, ring.kind};
}

} // namespace statistics
