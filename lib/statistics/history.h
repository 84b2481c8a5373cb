#pragma once

#include <statistics/value.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <vector>

namespace statistics {

/// The samples of one counter that are kept, oldest first: good until the history changes.
class Past {
public:
    enum class EKind : unsigned char { Int, UInt, Decimal };

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
/// Counters stand in blocks of 256, whose samples of one moment lie side by side: counters that are sampled
/// one after the other fill one page, where rings of their own would cost a miss each. A counter costs 9
/// bytes besides its samples. A block has room for the counters in it; where they come one by one, for a
/// sixteenth more or for a 64th of all counters, so that not each of them moves the block: what hosts
/// allocate next fills the holes that moved blocks leave, and counters scattered over them cost more than
/// their past. What a removed counter leaves is kept for the next one in its slot.
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
    static constexpr unsigned kLanes = 256;

    struct Ring {
        std::size_t size(std::size_t capacity) const { return laps > 0 ? capacity : next; }
        std::uint64_t count(std::size_t capacity) const { return std::uint64_t{laps} * capacity + next; }

        std::uint32_t next = 0; ///< where the next sample goes; from the first lap on the oldest one's place
        std::uint16_t laps = 0; ///< from the greatest number on 1 again
        Past::EKind kind = Past::EKind::Decimal;
    };
    struct Block {
        Block(std::size_t lanes, std::size_t capacity)
            : samples(new float[capacity * lanes]), rings(lanes), width(lanes)
        {
        }
        Block() = default;

        void copyTo(Block& wider, std::size_t capacity) const noexcept;

        std::unique_ptr<float[]> samples; ///< `capacity` rows of a sample for each ring
        std::vector<Ring> rings;
        std::size_t width = 0;
    };

    bool hasRoom(unsigned slot) const
    {
        return slot / kLanes < m_blocks.size() && slot % kLanes < m_blocks[slot / kLanes].width;
    }
    void addOther(Block& block, unsigned lane, const CounterValue& value) noexcept;
    void push(Block& block, unsigned lane, float sample) noexcept;

    std::size_t m_capacity;
    std::vector<Block> m_blocks;
};

// Decimals, as most values are, cost sampling a few instructions and no call.

inline void History::add(unsigned slot, const CounterValue& value) noexcept
{
    Block& block = m_blocks[slot / kLanes];
    if (!value.isDecimal())
        return addOther(block, slot % kLanes, value);
    block.rings[slot % kLanes].kind = Past::EKind::Decimal;
    push(block, slot % kLanes, value.toFloat());
}

inline void History::push(Block& block, unsigned lane, float sample) noexcept
{
    Ring& ring = block.rings[lane];
    block.samples[ring.next * block.width + lane] = sample;
    if (++ring.next == m_capacity) {
        ring.next = 0;
        ring.laps = ring.laps == std::numeric_limits<std::uint16_t>::max() ? 1 : ring.laps + 1;
    }
}

} // namespace statistics
