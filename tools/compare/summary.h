#pragma once

#include <cstddef>
#include <vector>

namespace compare {

/// What is told of the numbers of one path on one side.
struct Summary {
    std::size_t count = 0;
    double median = 0;
    double spread = 0; ///< from the lower quartile to the upper one: half of the numbers lie within
    double smallest = 0;
    double largest = 0;
};

/// The order of everything here: NaN equals NaN and stands behind all other numbers.
bool isBefore(double left, double right);
bool isEqual(double left, double right);
void sortNumbers(std::vector<double>& numbers);

/// `sorted` must not be empty. Quantiles lie between two numbers in proportion (the default of numpy and R).
Summary summarize(const std::vector<double>& sorted);

/// `to` - `from`; 0 for equal infinities and NaNs.
double difference(double from, double to);

} // namespace compare
