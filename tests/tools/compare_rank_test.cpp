// The test for noise, held against another implementation; and what stands beside it.
#include "rank_test.h"
#include "summary.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <limits>
#include <numeric>
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
    EXPECT_EQ(probability({1, 4}, {2, 3}), 1);
    EXPECT_EQ(probability({5, 5, 5, 5}, {5, 5, 5, 5}), 1);
    const std::vector<double> same(40, 7.0);
    EXPECT_EQ(probability(same, same), 1);
}

TEST(RankTest, knowsHowClearItCanBe)
{
    EXPECT_NEAR(RankTest::leastProbability(4, 4), 2.0 / 70, 1e-15);
    std::vector<double> below(20);
    std::iota(below.begin(), below.end(), 0);
    std::vector<double> above(20);
    std::iota(above.begin(), above.end(), 100);
    EXPECT_NEAR(RankTest::leastProbability(20, 20), probability(below, above), 1e-15);
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
