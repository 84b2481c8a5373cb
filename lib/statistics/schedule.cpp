#include "schedule.h"

#include <algorithm>
#include <cfloat>
#include <iterator>
#include <limits>

namespace statistics {

namespace {

constexpr float kForever = std::numeric_limits<float>::infinity();

/// Whatever isn't a number makes an item due. The timer of an item that was never sampled is less than an
/// infinite period, too.
bool waits(float elapsed, float timer, float period)
{
    return (elapsed < period) &
           (timer < FLT_MAX); // no branch: compilers put several of them into one instruction
}

} // namespace

Schedule::Block::Block()
{
    std::fill(std::begin(timers), std::end(timers), 0.0f);
    std::fill(std::begin(periods), std::end(periods), kForever);
}

/// Advances the timer. The time in excess of a period is dropped.
bool Schedule::Block::isDue(unsigned lane, float dt) noexcept
{
    const float elapsed = dt + timers[lane];
    const bool due = !(dt >= 0.0f && waits(elapsed, timers[lane], periods[lane]));
    timers[lane] = due ? 0.0f : elapsed;
    return due;
}

/// Advances all timers, or none if a slot is due. `dt` isn't negative.
bool Schedule::Block::waitAll(float dt) noexcept
{
    unsigned waiting = 1;
    for (unsigned lane = 0; lane < kWidth; ++lane)
        waiting &= static_cast<unsigned>(waits(dt + timers[lane], timers[lane], periods[lane]));
    if (waiting == 0)
        return false;
    for (float& timer : timers)
        timer += dt;
    return true;
}

void Schedule::makeRoom(unsigned slot)
{
    const std::size_t count = slot / kWidth + std::size_t{1};
    if (count <= m_blocks.size())
        return;
    if (count > m_blocks.capacity())
        m_blocks.reserve(count + count / 4); // where `resize` would double
    m_blocks.resize(count);
}

void Schedule::start(unsigned slot, float period) noexcept
{
    set(slot, FLT_MAX, period);
}

void Schedule::stop(unsigned slot) noexcept
{
    if (slot / kWidth < m_blocks.size())
        set(slot, 0.0f, kForever);
}

void Schedule::set(unsigned slot, float timer, float period) noexcept
{
    Block& block = m_blocks[slot / kWidth];
    block.timers[slot % kWidth] = timer;
    block.periods[slot % kWidth] = period;
}

unsigned Schedule::findDue(unsigned slot, float dt) noexcept
{
    while (slot / kWidth < m_blocks.size()) {
        Block& block = m_blocks[slot / kWidth];
        if (slot % kWidth == 0 && dt >= 0.0f && block.waitAll(dt))
            slot += kWidth;
        else if (block.isDue(slot++ % kWidth, dt))
            return slot - 1;
    }
    return npos;
}

} // namespace statistics
