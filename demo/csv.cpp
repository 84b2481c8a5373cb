#include "csv.h"

#include <charconv>

namespace demo {

using statistics::CounterValue;

namespace {

constexpr const char* kLineEnd = "\r\n";

std::string field(const std::string& text)
{
    if (text.find_first_of(",\"\r\n") == std::string::npos)
        return text;
    std::string quoted = "\"";
    for (const char c : text) {
        quoted += c;
        if (c == '"')
            quoted += c;
    }
    return quoted + '"';
}

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
        csv += "," + field(column.title);
    csv += std::string(",Changed") + kLineEnd;
    for (const auto& row : comparison.m_rows) {
        csv += field(row.caption);
        for (const CounterValue& value : row.values)
            csv += "," + field(toText(value));
        csv += std::string(row.changed ? ",yes" : ",no") + kLineEnd;
    }
    return csv;
}

} // namespace demo
