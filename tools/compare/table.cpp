#include "table.h"

#include "numbers.h"

#include <algorithm>

namespace compare {

namespace {

constexpr const char* kNothing = "-";

std::string valueOf(const std::optional<Reading>& reading)
{
    if (!reading)
        return kNothing;
    switch (reading->kind) {
    case EKind::Number:
        return shortNumber(reading->numbers.median);
    case EKind::Text:
        return reading->text + (reading->otherTexts ? " (+" + std::to_string(reading->otherTexts) + ")" : "");
    default:
        return "no value";
    }
}

std::string spreadOf(const std::optional<Reading>& reading)
{
    return reading && reading->kind == EKind::Number ? shortNumber(reading->numbers.spread) : kNothing;
}

template<typename Print>
std::string ifAny(const std::optional<double>& number, const Print& print)
{
    return number ? print(*number) : kNothing;
}

} // namespace

Table::Table(const Comparison& comparison, const Look& look)
    : m_showsSpread(std::max(comparison.baseSnapshots, comparison.nowSnapshots) > 1),
      m_showsProbability(look.showsProbability)
{
    m_columns = {{"path", false}, {"base", true}};
    if (m_showsSpread)
        m_columns.push_back({"spread", true});
    m_columns.push_back({"new", true});
    if (m_showsSpread)
        m_columns.push_back({"spread", true});
    m_columns.push_back({"change", true});
    m_columns.push_back({"percent", true});
    if (m_showsProbability)
        m_columns.push_back({"p", true});
    m_columns.push_back({"mark", false});
}

std::vector<std::string> Table::cells(const Row& row) const
{
    std::vector<std::string> cells = {printable(row.path)};
    for (const std::optional<Reading>* reading : {&row.base, &row.now}) {
        cells.push_back(printable(valueOf(*reading)));
        if (m_showsSpread)
            cells.push_back(spreadOf(*reading));
    }
    cells.push_back(ifAny(row.change, signedNumber));
    cells.push_back(ifAny(row.percent, percentText));
    if (m_showsProbability)
        cells.push_back(ifAny(row.probability, probabilityText));
    cells.push_back(markOf(row));
    return cells;
}

std::vector<std::pair<std::string, std::size_t>> countsOf(const Comparison& comparison)
{
    std::vector<std::pair<std::string, std::size_t>> counts;
    for (std::size_t mark = 0; mark < kMarks; ++mark)
        counts.emplace_back(markName(static_cast<EMark>(mark)), comparison.counts[mark]);
    counts.emplace_back("outside", comparison.outside);
    return counts;
}

std::string noteOn(const Comparison& comparison)
{
    if (comparison.untested == 0)
        return {};
    return std::to_string(comparison.untested) +
           " of the changes may be noise: too few values to tell.\nThe test takes " +
           std::to_string(kLeastForTest) + " on each side, more with a small --alpha.";
}

std::string markOf(const Row& row)
{
    return std::string(markName(row.mark)) + (row.limit ? ", outside" : "");
}

std::string printable(std::string text)
{
    const auto steers = [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7f'; };
    std::replace_if(text.begin(), text.end(), steers, '?');
    return text;
}

} // namespace compare
