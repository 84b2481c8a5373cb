#include "numbers.h"
#include "report.h"

namespace compare {

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

std::string field(const std::optional<double>& number)
{
    return number ? fullNumber(*number) : std::string();
}

/// Value, spread, and number of values.
std::string fields(const std::optional<Reading>& reading)
{
    if (!reading || reading->kind == EKind::Missing)
        return ",,";
    if (reading->kind == EKind::Text)
        return field(reading->text) + ",,";
    const Summary& numbers = reading->numbers;
    return fullNumber(numbers.median) + ',' + fullNumber(numbers.spread) + ',' +
           std::to_string(numbers.count);
}

} // namespace

void printCsv(std::ostream& out, const Comparison& comparison)
{
    out << "path,base,base spread,base count,new,new spread,new count,change,percent,p,mark,outside"
        << kLineEnd;
    for (const Row& row : comparison.rows) {
        out << field(row.path) << ',' << fields(row.base) << ',' << fields(row.now) << ','
            << field(row.change) << ',' << field(row.percent) << ',' << field(row.probability) << ','
            << markName(row.mark) << ',' << (row.limit ? "yes" : "no") << kLineEnd;
    }
}

} // namespace compare
