#pragma once

#include "prefetch.h"

#include <statistics/value.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace statistics {

/// The samples of one counter that are kept, oldest first: good until the history changes.
class Past {
public:
    enum class EKind : unsigned char { Decimal, Int, UInt };

    Past() = default;
    /// The sample n of all so far stands in row n modulo `capacity`.
    Past(const float* lane, std::size_t stride, std::size_t capacity, std::uint64_t count, EKind lastKind)
        : kind(lastKind),
          m_lane(lane),
          m_stride(stride),
          m_capacity(capacity),
          m_count(count),
          m_first(count < capacity ? 0 : static_cast<std::size_t>(count % capacity))
    {
    }

    std::size_t size() const { return m_count < m_capacity ? static_cast<std::size_t>(m_count) : m_capacity; }
    /// `index` is below `size()`. Not a number where the counter gave none.
    float operator[](std::size_t index) const
    {
        const std::size_t row = m_first + index;
        return inRow(row < m_capacity ? row : row - m_capacity);
    }
    std::vector<float> samples() const;

    // For readers that come again and read what is new. Samples never move from row to row.
    /// Another number after each sample; less than before where the past, or the counting, has begun anew.
    std::uint64_t count() const { return m_count; }
    std::size_t capacity() const { return m_capacity; }
    /// `row` is below `size()`.
    float inRow(std::size_t row) const { return m_lane[row * m_stride]; }

    const EKind kind = EKind::Decimal; ///< of the last number

private:
    const float* m_lane = nullptr;
    std::size_t m_stride = 0; ///< floats from one sample to the next
    std::size_t m_capacity = 0;
    std::uint64_t m_count = 0;
    std::size_t m_first = 0; ///< row of the oldest sample
};

/// The past of every counter: the newest samples, known by the counter's slot in its pool.
///
/// Counters stand in blocks, whose samples of one moment lie side by side: counters that are sampled one
/// after the other fill page after page, where rings of their own would cost a miss each. A block is as wide
/// as it can be within some megabytes, for each new one is a miss, too. A counter costs 6 bytes besides its
/// samples, and up to twice that while the arrays of cursors and laps grow. A block has room for the counters
/// in it, and for a 64th more of those before it: where they come one by one, not each of them moves it, for
/// what hosts allocate next fills the holes that moved blocks leave, and counters scattered over them cost
/// more than their past. What a removed counter leaves is kept for the next one in its slot.
///
/// Memory is taken when the past is turned on and when a counter comes, never by a sample.
class History {
public:
    /// More samples of a counter aren't kept, whatever is asked for.
    static constexpr std::size_t kMostSamples = 100000;

    /// `capacity` samples of each counter, at most `kMostSamples`; 0 keeps none.
    explicit History(std::size_t capacity = 0);

    bool isOn() const { return m_capacity > 0; }
    std::size_t capacity() const { return m_capacity; }

    /// Gives the counter in this slot its place. Lack of memory leaves all as it was.
    void makeRoom(unsigned slot);
    /// Adds a sample of a counter that has its place; the oldest one goes when there are too many. Texts and
    /// `Empty` are no samples; in a past that has begun they are gaps, which keep the time right.
    void add(unsigned slot, const CounterValue& value) noexcept;
    /// Adds the newest samples of another history, as many as fit.
    void addAll(unsigned slot, const Past& past) noexcept;
    /// For a slot whose counter goes: the next one begins anew.
    void forget(unsigned slot) noexcept;
    /// Empty for a slot without samples.
    Past past(unsigned slot) const;

private:
    /// Where the next sample of a counter goes in its block, and the kind of the last number: one word, for
    /// sampling reads and writes it each time.
    class Cursor {
    public:
        Cursor(Past::EKind kind, std::uint32_t next)
            : m_word(static_cast<std::uint32_t>(kind) << kNextBits | next)
        {
        }
        Cursor() = default;

        std::uint32_t next() const { return m_word & ((1u << kNextBits) - 1); }
        Past::EKind kind() const { return static_cast<Past::EKind>(m_word >> kNextBits); }

    private:
        static constexpr unsigned kNextBits = 30;

        std::uint32_t m_word = 0;
    };
    /// `capacity` rows of a sample for each of `width` counters.
    struct Block {
        Block(std::uint32_t lanes, std::uint32_t capacity)
            : samples(new float[std::size_t{lanes} * capacity]), width(lanes), end(lanes * capacity)
        {
        }
        Block() = default;

        std::unique_ptr<float[]> samples;
        std::uint32_t width = 0;
        std::uint32_t end = 0; ///< of the samples
    };

    std::size_t blockOf(unsigned slot) const { return slot >> m_laneBits; }
    std::uint32_t laneOf(unsigned slot) const { return slot & ((1u << m_laneBits) - 1); }
    bool hasRoom(unsigned slot) const
    {
        return blockOf(slot) < m_blocks.size() && laneOf(slot) < m_blocks[blockOf(slot)].width;
    }
    void makeCursors(unsigned lastSlot);
    void moveTo(Block& wider, std::size_t index) noexcept;
    void addOther(unsigned slot, const CounterValue& value) noexcept;
    void push(unsigned slot, Past::EKind kind, float sample) noexcept;
    void beginLap(unsigned slot) noexcept;

    std::uint32_t m_capacity;
    unsigned m_laneBits; ///< of the slots in a block: their number is a power of two
    std::vector<Block> m_blocks;
    std::vector<Cursor> m_cursors;     ///< by slot
    std::vector<std::uint16_t> m_laps; ///< by slot: rounds so far; from the greatest number on 1 again
};

// Decimals, as most values are, cost sampling a few instructions and no call.

inline void History::add(unsigned slot, const CounterValue& value) noexcept
{
    if (value.isDecimal())
        push(slot, Past::EKind::Decimal, value.toFloat());
    else
        addOther(slot, value);
}

inline void History::push(unsigned slot, Past::EKind kind, float sample) noexcept
{
    const Block& block = m_blocks[blockOf(slot)];
    std::uint32_t next = m_cursors[slot].next();
    block.samples[next] = sample;
    prefetchNextLine(&block.samples[next]); // of the counters that are likely to come next
    next += block.width;
    if (next >= block.end) {
        next -= block.end; // to its first row
        beginLap(slot);
    }
    m_cursors[slot] = Cursor(kind, next);
}

} // namespace statistics
