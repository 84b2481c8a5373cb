#pragma once

#include <statistics/value.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace statistics {

/// The samples of one counter that are kept, oldest first: good until the history changes.
class Past {
public:
    enum class EKind : unsigned char { Int, UInt, Decimal };

    Past() = default;
    Past(const float* lane, std::size_t stride, std::size_t capacity, std::size_t first, std::size_t size,
         EKind lastKind)
        : kind(lastKind), m_lane(lane), m_stride(stride), m_capacity(capacity), m_first(first), m_size(size)
    {
    }

    std::size_t size() const { return m_size; }
    /// `index` is below `size()`. Not a number where the counter gave none.
    float operator[](std::size_t index) const
    {
        const std::size_t row = m_first + index;
        return m_lane[(row < m_capacity ? row : row - m_capacity) * m_stride];
    }

    const EKind kind = EKind::Decimal; ///< of the last number

private:
    const float* m_lane = nullptr;
    std::size_t m_stride = 0; ///< floats from one sample to the next
    std::size_t m_capacity = 0;
    std::size_t m_first = 0;
    std::size_t m_size = 0;
};

/// The past of every counter: the newest samples, known by the counter's slot in its pool.
///
/// Counters stand in blocks of 16, whose samples of one moment lie side by side: counters that are sampled
/// one after the other fill one cache line, where rings of their own would cost a miss each. A block is as
/// wide as the counters in it need, and a counter costs 13 bytes besides its samples, 26 where the list of
/// blocks has just grown. What a removed counter leaves is kept for the next one in its slot.
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
    static constexpr unsigned kLanes = 16;

    struct Ring {
        std::uint32_t next = 0; ///< where the next sample goes
        std::uint32_t size = 0;
        Past::EKind kind = Past::EKind::Decimal;
    };
    struct Block {
        std::unique_ptr<float[]> samples; ///< `capacity` rows of `width`
        std::size_t width = 0;
        std::array<Ring, kLanes> rings;

        std::size_t usedRows() const;
    };

    void push(Block& block, unsigned lane, float sample) noexcept;

    std::size_t m_capacity;
    std::vector<Block> m_blocks;
};

} // namespace statistics
