#pragma once

#include "history.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <unordered_map>
#include <vector>

namespace statistics {

/// Lowest and highest of some samples; those that aren't finite don't count.
struct PastRange {
    bool isEmpty() const { return lowest > highest; }
    void add(float sample)
    {
        if (std::isfinite(sample))
            add({sample, sample});
    }
    void add(const PastRange& other)
    {
        lowest = std::min(lowest, other.lowest);
        highest = std::max(highest, other.highest);
    }

    float lowest = std::numeric_limits<float>::infinity();
    float highest = -std::numeric_limits<float>::infinity();
};

/// The ranges of pasts that are looked at in frame after frame. The ranges of pieces of a past are kept
/// beside it, so that a new sample, or the end of an old one, costs a look at one piece and not at the whole
/// past.
class PastRanges {
public:
    /// Of the counter in `slot`, whose past is given.
    const PastRange& range(unsigned slot, const Past& past);
    /// For a slot whose counter goes.
    void forget(unsigned slot) noexcept { m_kept.erase(slot); }
    void clear() noexcept { m_kept.clear(); }
    /// Once a draw: what isn't asked for any more is dropped.
    void endDraw();

private:
    static constexpr std::size_t kPiece = 128; ///< samples
    static constexpr unsigned kKeptDraws = 8;  ///< more than one, for hosts that draw in several contexts

    struct Kept {
        std::uint64_t count = 0; ///< of the past, when it was read
        PastRange whole;
        std::vector<PastRange> pieces; ///< of rows
        unsigned lastDraw = 0;
    };

    static void readOn(Kept& kept, const Past& past);

    std::unordered_map<unsigned, Kept> m_kept; ///< by slot
    unsigned m_draw = 0;
};

} // namespace statistics
