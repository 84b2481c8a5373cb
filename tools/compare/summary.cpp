#include "summary.h"

#include <algorithm>
#include <cmath>

namespace compare {

namespace {

/// `fraction` of the way through the numbers, from 0 to 1.
double quantile(const std::vector<double>& sorted, double fraction)
{
    const double place = fraction * static_cast<double>(sorted.size() - 1);
    const auto below = static_cast<std::size_t>(place);
    const double part = place - static_cast<double>(below);
    // Nothing is added to a number that is met exactly: its neighbour may be infinite.
    if (part == 0 || isEqual(sorted[below], sorted[below + 1]))
        return sorted[below];
    return sorted[below] * (1 - part) + sorted[below + 1] * part;
}

} // namespace

bool isBefore(double left, double right)
{
    return left < right || (std::isnan(right) && !std::isnan(left));
}

bool isEqual(double left, double right)
{
    return left == right || (std::isnan(left) && std::isnan(right));
}

void sortNumbers(std::vector<double>& numbers)
{
    const auto end =
        std::partition(numbers.begin(), numbers.end(), [](double number) { return !std::isnan(number); });
    std::sort(numbers.begin(), end);
}

Summary summarize(const std::vector<double>& sorted)
{
    Summary summary;
    summary.count = sorted.size();
    summary.median = quantile(sorted, 0.5);
    summary.spread = difference(quantile(sorted, 0.25), quantile(sorted, 0.75));
    summary.smallest = sorted.front();
    summary.largest = sorted.back();
    return summary;
}

double difference(double from, double to)
{
    return isEqual(from, to) ? 0 : to - from;
}

} // namespace compare
