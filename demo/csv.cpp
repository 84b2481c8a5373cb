#include "csv.h"

#include "texts/csv_field.h"

#include <charconv>

namespace demo {

using statistics::CounterValue;
using texts::csvField;
using texts::kCsvLineEnd;

namespace {

std::string toText(const CounterValue& value)
{
    if (!value.valid())
        return {}; // an empty cell, not the panel's dashes
    if (!value.isDecimal())
        return value.toString(nullptr);
    char digits[64];
    return {digits, std::to_chars(digits, digits + sizeof(digits), value.toFloat()).ptr};
}

} // namespace

std::string toCsv(const statistics::DiffTable& comparison)
{
    std::string csv = "Caption";
    for (const auto& column : comparison.m_columns)
        csv += "," + csvField(column.title);
    csv += std::string(",Changed") + kCsvLineEnd;
    for (const auto& row : comparison.m_rows) {
        csv += csvField(row.caption);
        for (const CounterValue& value : row.values)
            csv += "," + csvField(toText(value));
        csv += std::string(row.changed ? ",yes" : ",no") + kCsvLineEnd;
    }
    return csv;
}

} // namespace demo
