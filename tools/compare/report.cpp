#include "report.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace compare {

namespace {

constexpr double kEndless = std::numeric_limits<double>::infinity();

/// What has no number comes first: paths on one side only, and texts that differ.
double sizeOfChange(const Row& row)
{
    if (!row.percent)
        return isChange(row.mark) ? kEndless : 0;
    return std::isnan(*row.percent) ? kEndless : std::fabs(*row.percent);
}

template<typename Key>
void sortBy(std::vector<Row>& rows, const Key& key)
{
    std::stable_sort(rows.begin(), rows.end(),
                     [&key](const Row& left, const Row& right) { return key(left) < key(right); });
}

} // namespace

void select(Comparison& comparison, const Selection& selection)
{
    std::vector<Row>& rows = comparison.rows;
    if (selection.onlyChanged)
        rows.erase(std::remove_if(rows.begin(), rows.end(),
                                  [](const Row& row) { return !isChange(row.mark) && !row.limit; }),
                   rows.end());
    switch (selection.sort) {
    case ESort::None:
        break;
    case ESort::Path:
        sortBy(rows, [](const Row& row) -> const std::string& { return row.path; });
        break;
    case ESort::Change:
        sortBy(rows, [](const Row& row) { return -sizeOfChange(row); });
        break;
    case ESort::Probability:
        sortBy(rows, [](const Row& row) { return row.probability.value_or(kEndless); });
        break;
    }
}

} // namespace compare
