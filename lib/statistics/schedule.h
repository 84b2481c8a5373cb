#pragma once

#include <vector>

namespace statistics {

/// When the items of one pool are sampled: the `period` and the `timer` of each, known by its slot in the
/// pool.
///
/// They lie apart from the items, and in blocks, so that an update in which nothing is due reads 8 bytes an
/// item, several items at once. A slot without an item has a timer that runs towards an infinite period: it
/// waits with the others, but for a `dt` by which everything is due.
class Schedule {
public:
    /// No slot: nothing more is due.
    static constexpr unsigned npos = static_cast<unsigned>(-1);

    /// Takes the memory for this slot and those below it. Lack of memory leaves all as it was.
    void makeRoom(unsigned slot);
    /// For a new item in a slot that there is room for: it is due at the next update.
    void start(unsigned slot, float period) noexcept;
    /// For a slot whose item goes. Does nothing for a slot that never had one.
    void stop(unsigned slot) noexcept;

    /// The lowest slot from `slot` on that is due after another `dt`, `npos` if none is. The timers up to
    /// there move on, the one of the slot found begins anew; a slot found may have no item.
    unsigned findDue(unsigned slot, float dt) noexcept;

    /// The time between two samples, in the unit of `dt`.
    float period(unsigned slot) const { return m_blocks[slot / kWidth].periods[slot % kWidth]; }
    /// The time since the last sample, in the same unit.
    float timer(unsigned slot) const { return m_blocks[slot / kWidth].timers[slot % kWidth]; }

private:
    static constexpr unsigned kWidth = 32;

    struct Block {
        Block();

        bool isDue(unsigned lane, float dt) noexcept;
        bool waitAll(float dt) noexcept;

        float timers[kWidth];
        float periods[kWidth];
    };

    void set(unsigned slot, float timer, float period) noexcept;

    std::vector<Block> m_blocks;
};

} // namespace statistics
