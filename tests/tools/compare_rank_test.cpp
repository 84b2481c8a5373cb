// The test for noise, held against published tables and another implementation; and what stands beside it.
#include "rank_test.h"
#include "summary.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

namespace {

using compare::RankTest;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

double probability(std::vector<double> first, std::vector<double> second)
{
    compare::sortNumbers(first);
    compare::sortNumbers(second);
    return RankTest().probability(first, second);
}

// Groups without ties, the second of which has `u` smaller numbers of the first, counted for each of its own.
double probabilityOf(std::size_t u, std::size_t first, std::size_t second)
{
    std::vector<double> theirs(second);
    std::vector<double> ours(first);
    for (std::size_t i = 0; i < first; ++i)
        ours[i] = static_cast<double>(i);
    for (double& number : theirs) {
        const std::size_t above = std::min(u, first);
        number = static_cast<double>(above) - 0.5 - 0.01 * static_cast<double>(&number - theirs.data());
        u -= above;
    }
    return probability(ours, theirs);
}

// Mann and Whitney, Annals of Mathematical Statistics 18 (1947), Table I: P(U <= u) of 4 and 4, to three
// decimals.
TEST(RankTest, givesTheTableOfItsAuthors)
{
    const double table[] = {0.014, 0.029, 0.057, 0.100, 0.171, 0.243, 0.343, 0.443};
    for (std::size_t u = 0; u < std::size(table); ++u)
        EXPECT_NEAR(probabilityOf(u, 4, 4), 2 * table[u], 0.001) << u;
    EXPECT_EQ(probabilityOf(8, 4, 4), 1);
}

// The largest U that is significant at 0.05 on both sides, as tables of critical values give it.
TEST(RankTest, turnsSignificantAtTheCriticalValues)
{
    const struct {
        std::size_t first, second, critical;
    } cases[] = {{4, 4, 0},  {5, 5, 2},    {6, 6, 5},    {7, 9, 12},
                 {8, 8, 13}, {10, 10, 23}, {12, 12, 37}, {15, 15, 64}};
    for (const auto& [first, second, critical] : cases) {
        EXPECT_LE(probabilityOf(critical, first, second), 0.05) << first << ", " << second;
        EXPECT_GT(probabilityOf(critical + 1, first, second), 0.05) << first << ", " << second;
    }
}

std::vector<double> numbersIn(const std::string& text)
{
    std::istringstream stream(text);
    std::vector<double> numbers;
    for (double number = 0; stream >> number;)
        numbers.push_back(number);
    return numbers;
}

TEST(RankTest, agreesWithAnotherImplementation)
{
    std::ifstream file(COMPARE_REFERENCE);
    std::size_t cases = 0;
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line[0] == '#')
            continue;
        std::istringstream fields(line);
        std::string call, expected, first, second;
        std::getline(fields, call, '|');
        std::getline(fields, expected, '|');
        std::getline(fields, first, '|');
        std::getline(fields, second);
        EXPECT_NEAR(probability(numbersIn(first), numbersIn(second)), std::stod(expected), 1e-12) << line;
        ++cases;
    }
    EXPECT_EQ(cases, 13u);
}

TEST(RankTest, ranksWhatIsNoOrdinaryNumber)
{
    const double nan = std::nan("");
    EXPECT_EQ(probability({1, 2, kInfinity, nan}, {-kInfinity, 5, 6, -nan}),
              probability({1, 2, 8, 9}, {0, 5, 6, 9}));
    EXPECT_EQ(probability({5, 5, 5, 5}, {5, 5, 5, 5}), 1);
    const std::vector<double> same(40, 7.0);
    EXPECT_EQ(probability(same, same), 1);
}

TEST(RankTest, knowsHowClearItCanBe)
{
    EXPECT_NEAR(RankTest::leastProbability(4, 4), 2.0 / 70, 1e-15);
    const std::vector<double> low(20, 1.0);
    std::vector<double> rising(20);
    for (std::size_t i = 0; i < rising.size(); ++i)
        rising[i] = 2 + static_cast<double>(i);
    std::vector<double> falling = rising;
    for (double& number : falling)
        number -= 100;
    EXPECT_NEAR(RankTest::leastProbability(20, 20), probability(rising, falling), 1e-15);
    EXPECT_GT(RankTest::leastProbability(1000, 1000), -1e-15);
}

TEST(Summary, givesMedianAndSpread)
{
    const auto told = [](std::vector<double> numbers) {
        compare::sortNumbers(numbers);
        const compare::Summary summary = compare::summarize(numbers);
        return std::vector<double>{summary.median, summary.spread, summary.smallest, summary.largest};
    };
    EXPECT_EQ(told({4, 1, 3, 2}), (std::vector<double>{2.5, 1.5, 1, 4}));
    EXPECT_EQ(told({7}), (std::vector<double>{7, 0, 7, 7}));
    EXPECT_EQ(told({kInfinity, 1, kInfinity, kInfinity, kInfinity}),
              (std::vector<double>{kInfinity, 0, 1, kInfinity}));
    EXPECT_TRUE(std::isnan(told({std::nan(""), 1, std::nan("")})[0]));
}

} // namespace
