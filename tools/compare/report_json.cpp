#include "numbers.h"
#include "table.h"

#include <nlohmann/json.hpp>

#include <cmath>

namespace compare {

using nlohmann::ordered_json;

namespace {

ordered_json numberOf(double number)
{
    if (std::isfinite(number))
        return number;
    return fullNumber(number);
}

ordered_json numberOf(const std::optional<double>& number)
{
    return number ? numberOf(*number) : ordered_json();
}

/// Null for a path that the side hasn't.
ordered_json sideOf(const std::optional<Reading>& reading)
{
    if (!reading)
        return {};
    if (reading->kind == EKind::Missing)
        return {{"value", nullptr}};
    if (reading->kind == EKind::Text)
        return {{"value", reading->text}, {"otherTexts", reading->otherTexts}};
    const Summary& numbers = reading->numbers;
    return {{"value", numberOf(numbers.median)},
            {"spread", numberOf(numbers.spread)},
            {"smallest", numberOf(numbers.smallest)},
            {"largest", numberOf(numbers.largest)},
            {"count", numbers.count}};
}

ordered_json rowOf(const Row& row)
{
    ordered_json entry = {{"path", row.path},
                          {"base", sideOf(row.base)},
                          {"new", sideOf(row.now)},
                          {"change", numberOf(row.change)},
                          {"percent", numberOf(row.percent)},
                          {"p", numberOf(row.probability)},
                          {"mark", markName(row.mark)},
                          {"outside", row.limit.has_value()}};
    if (row.limit)
        entry["limit"] = {{"min", double(row.limit->min)}, {"max", double(row.limit->max)}};
    return entry;
}

/// Paths and texts are bytes of the host: what isn't UTF-8 becomes U+FFFD.
std::string textOf(const ordered_json& value)
{
    return value.dump(-1, ' ', false, ordered_json::error_handler_t::replace);
}

} // namespace

/// Row by row, so that the whole document never stands in memory.
void printJson(std::ostream& out, const Comparison& comparison, double alpha)
{
    ordered_json counts = ordered_json::object();
    for (const auto& [name, count] : countsOf(comparison))
        counts[name] = count;
    out << R"({"snapshots": )"
        << textOf({{"base", comparison.baseSnapshots}, {"new", comparison.nowSnapshots}})
        << ",\n\"alpha\": " << textOf(alpha) << ",\n\"counts\": " << textOf(counts)
        << ",\n\"untested\": " << comparison.untested << ",\n\"rows\": [";
    const char* separator = "\n";
    for (const Row& row : comparison.rows) {
        out << separator << textOf(rowOf(row));
        separator = ",\n";
    }
    out << "\n]}\n";
}

} // namespace compare
