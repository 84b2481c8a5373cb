// U counts the pairs, one number of each group, in which the first group's is the larger one; a pair of
// equals counts one half. All counts of U are kept doubled, so that they are whole. Under one source every
// choice of which of the ranks are the first group's is equally likely; ties are part of what is given.

#include "rank_test.h"

#include "summary.h"

#include <cmath>

namespace compare {

namespace {

struct Ranking {
    double doubledU = 0;
    double tieCorrection = 0; ///< the sum of t^3 - t over all groups of t equals
    /// Their sizes in ascending order of the numbers, groups of one included.
    std::vector<std::uint32_t> ties;
};

/// How many numbers from `from` on equal the one there.
std::size_t equalsFrom(const std::vector<double>& sorted, std::size_t from, double number)
{
    std::size_t end = from;
    while (end < sorted.size() && isEqual(sorted[end], number))
        ++end;
    return end - from;
}

Ranking rank(const std::vector<double>& first, const std::vector<double>& second)
{
    Ranking ranking;
    std::size_t i = 0;
    std::size_t k = 0;
    while (i < first.size() || k < second.size()) {
        const bool isFirst = k == second.size() || (i < first.size() && isBefore(first[i], second[k]));
        const double number = isFirst ? first[i] : second[k];
        const std::size_t ours = equalsFrom(first, i, number);
        const std::size_t theirs = equalsFrom(second, k, number);
        ranking.doubledU += static_cast<double>(ours * (2 * k + theirs));
        const auto size = static_cast<double>(ours + theirs);
        ranking.tieCorrection += size * size * size - size;
        ranking.ties.push_back(static_cast<std::uint32_t>(ours + theirs));
        i += ours;
        k += theirs;
    }
    return ranking;
}

double choices(std::size_t from, std::size_t chosen)
{
    double count = 1;
    for (std::size_t i = 0; i < chosen; ++i)
        count = count * static_cast<double>(from - i) / static_cast<double>(i + 1);
    return std::round(count);
}

/// Ways to choose the first group's numbers, by how many were chosen and by doubled U.
using Ways = std::vector<std::vector<double>>;

/// Goes on by a group of `size` equals, behind `before` smaller numbers.
Ways withTies(const Ways& ways, std::size_t before, std::size_t size, std::size_t second)
{
    Ways next(ways.size(), std::vector<double>(ways.front().size()));
    for (std::size_t chosen = 0; chosen < ways.size() && chosen <= before; ++chosen) {
        const std::size_t others = before - chosen;
        for (std::size_t more = 0; more <= size && chosen + more < ways.size(); ++more) {
            if (others + size - more > second)
                continue;
            const std::size_t gain = more * (2 * others + size - more);
            const double count = choices(size, more);
            for (std::size_t u = 0; u + gain < next.front().size(); ++u)
                next[chosen + more][u + gain] += count * ways[chosen][u];
        }
    }
    return next;
}

double exactProbability(std::size_t first, std::size_t second, const Ranking& ranking)
{
    const std::size_t middle = first * second; // of the doubled U
    Ways ways(first + 1, std::vector<double>(2 * middle + 1));
    ways[0][0] = 1;
    std::size_t before = 0;
    for (const std::uint32_t size : ranking.ties) {
        ways = withTies(ways, before, size, second);
        before += size;
    }
    const double distance = std::fabs(ranking.doubledU - static_cast<double>(middle));
    double asFar = 0;
    for (std::size_t u = 0; u <= 2 * middle; ++u)
        if (std::fabs(static_cast<double>(u) - static_cast<double>(middle)) >= distance)
            asFar += ways[first][u];
    return asFar / choices(first + second, first);
}

double normalProbability(std::size_t first, std::size_t second, const Ranking& ranking)
{
    const auto pairs = static_cast<double>(first) * static_cast<double>(second);
    const auto all = static_cast<double>(first + second);
    const double variance = pairs / 12 * (all + 1 - ranking.tieCorrection / (all * (all - 1)));
    const double distance = std::fabs(ranking.doubledU - pairs) / 2 - 0.5;
    if (distance <= 0 || variance <= 0)
        return 1;
    return std::erfc(distance / std::sqrt(2 * variance));
}

} // namespace

double RankTest::probability(const std::vector<double>& first, const std::vector<double>& second)
{
    Ranking ranking = rank(first, second);
    if (first.size() + second.size() > kMostExact)
        return normalProbability(first.size(), second.size(), ranking);
    std::vector<std::uint32_t> key = ranking.ties;
    key.push_back(static_cast<std::uint32_t>(first.size()));
    key.push_back(static_cast<std::uint32_t>(ranking.doubledU));
    const auto [known, isNew] = m_known.try_emplace(std::move(key));
    if (isNew)
        known->second = exactProbability(first.size(), second.size(), ranking);
    return known->second;
}

double RankTest::leastProbability(std::size_t first, std::size_t second)
{
    if (first + second > kMostExact)
        return normalProbability(first, second, {});
    return 2 / choices(first + second, first);
}

} // namespace compare
