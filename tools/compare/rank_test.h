#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

namespace compare {

/// The Mann-Whitney U test: do two groups of numbers come from one source? It ranks the numbers of both
/// groups together and asks nothing of their distribution.
class RankTest {
public:
    /// Numbers of both groups together, up to which the distribution is counted out, ties included. Beyond,
    /// it is taken for normal, with its variance corrected for ties and a step of 1/2 for continuity.
    static constexpr std::size_t kMostExact = 30;

    /// How likely groups of one source differ as much as these or more, in either direction. Both are sorted
    /// (`sortNumbers`) and not empty.
    double probability(const std::vector<double>& first, const std::vector<double>& second);

    /// The least that `probability` can be for groups of these sizes: with all of one group before the other.
    static double leastProbability(std::size_t first, std::size_t second);

private:
    /// What was counted out: size of the first group, doubled U, sizes of the groups of ties.
    std::map<std::vector<std::uint32_t>, double> m_known;
};

} // namespace compare
