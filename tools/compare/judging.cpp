#include "judging.h"

#include "rank_test.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace compare {

namespace {

/// Medians and decimal fractions are off by a few units in the last place: that is no change.
bool isWithin(double base, double now, double allowed)
{
    const double rounding =
        4 * std::numeric_limits<double>::epsilon() * std::max(std::fabs(base), std::fabs(now));
    const double change = std::fabs(now - base);
    return std::isfinite(change) && change <= allowed + rounding;
}

bool isSame(double base, double now)
{
    return isEqual(base, now) || isWithin(base, now, 0);
}

bool covers(const Tolerance& tolerance, double base, double now)
{
    return isWithin(base, now, tolerance.isRelative ? tolerance.amount * std::fabs(base) : tolerance.amount);
}

double percentOf(double change, double base)
{
    return change == 0 ? 0 : change / std::fabs(base) * 100;
}

template<typename Value>
void sortDistinct(std::vector<Value>& values)
{
    std::sort(values.begin(), values.end());
    values.erase(std::unique(values.begin(), values.end()), values.end());
}

/// Leaves a run's numbers in order, and of its texts each one once.
Reading read(Series& series)
{
    sortNumbers(series.numbers);
    Reading reading;
    if (!series.texts.empty()) {
        series.numbers.erase(std::unique(series.numbers.begin(), series.numbers.end(), isEqual),
                             series.numbers.end());
        sortDistinct(series.texts);
        reading.kind = EKind::Text;
        reading.text = series.firstText;
        reading.otherTexts = series.texts.size() + series.numbers.size() - 1;
    } else if (!series.numbers.empty()) {
        reading.kind = EKind::Number;
        reading.numbers = summarize(series.numbers);
    }
    return reading;
}

EMark directed(const EDirection* direction, double change)
{
    if (!direction || std::isnan(change))
        return EMark::Changed;
    const bool isLower = change < 0;
    return isLower == (*direction == EDirection::LowerIsBetter) ? EMark::Better : EMark::Worse;
}

class Judge {
public:
    explicit Judge(const Judgement& judgement) : m_judgement(judgement) {}

    Row row(const std::string& path, Series* base, Series* now)
    {
        Row row;
        row.path = path;
        if (base)
            row.base = read(*base);
        if (now)
            row.now = read(*now);
        if (base && now)
            row.mark = row.base->kind == EKind::Number && row.now->kind == EKind::Number
                           ? markOfNumbers(row, *base, *now)
                           : markOfOthers(row, *base, *now);
        else
            row.mark = base ? EMark::Removed : EMark::Added;
        row.limit = limitLeft(row);
        return row;
    }

private:
    EMark markOfNumbers(Row& row, const Series& base, const Series& now)
    {
        const double before = row.base->numbers.median;
        const double after = row.now->numbers.median;
        const bool isUnchanged = isSame(before, after);
        row.change = isUnchanged ? 0 : difference(before, after);
        row.percent = percentOf(*row.change, before);
        row.probability = probability(base.numbers, now.numbers);
        if (isUnchanged)
            return EMark::Same;
        if (allows(row.path) || covers(tolerance(row.path), before, after))
            return EMark::WithinTolerance;
        if (row.probability && *row.probability >= m_judgement.alpha)
            return EMark::Noise;
        return directed(m_judgement.directions.find(row.path), *row.change);
    }

    /// A value that turns into a text, or into nothing, has no difference.
    EMark markOfOthers(const Row& row, const Series& base, const Series& now) const
    {
        if (row.base->kind == row.now->kind && base.texts == now.texts &&
            std::equal(base.numbers.begin(), base.numbers.end(), now.numbers.begin(), now.numbers.end(),
                       isEqual))
            return EMark::Same;
        return allows(row.path) ? EMark::WithinTolerance : EMark::Changed;
    }

    /// Where even the clearest difference couldn't fall below alpha, everything would pass for noise.
    std::optional<double> probability(const std::vector<double>& base, const std::vector<double>& now)
    {
        if (std::min(base.size(), now.size()) < kLeastForTest ||
            RankTest::leastProbability(base.size(), now.size()) >= m_judgement.alpha)
            return std::nullopt;
        return m_test.probability(base, now);
    }

    Tolerance tolerance(const std::string& path) const
    {
        const Tolerance* const found = m_judgement.tolerances.find(path);
        return found ? *found : Tolerance();
    }

    bool allows(const std::string& path) const { return std::isinf(tolerance(path).amount); }

    /// As the panel judges: in the precision of the limits.
    std::optional<statistics::Limit> limitLeft(const Row& row) const
    {
        if (!row.now || row.now->kind != EKind::Number)
            return std::nullopt;
        const statistics::Limit* const limit = m_judgement.limits.find(row.path);
        const auto value = static_cast<float>(row.now->numbers.median);
        if (!limit || !(value < limit->min || value > limit->max))
            return std::nullopt;
        return *limit;
    }

    const Judgement& m_judgement;
    RankTest m_test;
};

void count(const Row& row, Comparison& comparison)
{
    ++comparison.counts[static_cast<std::size_t>(row.mark)];
    if (row.limit)
        ++comparison.outside;
    if (row.change && isChange(row.mark) && !row.probability)
        ++comparison.untested;
}

} // namespace

const char* markName(EMark mark)
{
    static constexpr const char* kNames[kMarks] = {"changed",          "worse", "better", "added", "removed",
                                                   "within tolerance", "noise", "same"};
    return kNames[static_cast<std::size_t>(mark)];
}

bool isChange(EMark mark)
{
    return mark < EMark::WithinTolerance;
}

Comparison judge(const Paths& paths, Samples& base, Samples& now, const Judgement& judgement)
{
    Comparison comparison;
    comparison.baseSnapshots = base.snapshots();
    comparison.nowSnapshots = now.snapshots();
    Judge judge(judgement);
    for (std::size_t path = 0; path < paths.size(); ++path) {
        Series* const before = base.find(path);
        Series* const after = now.find(path);
        if (!before && !after) // only in a file that was skipped
            continue;
        comparison.rows.push_back(judge.row(paths[path], before, after));
        count(comparison.rows.back(), comparison);
    }
    return comparison;
}

} // namespace compare
