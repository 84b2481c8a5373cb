#include "numbers.h"
#include "report.h"

#include "texts/csv_field.h"

namespace compare {

namespace {

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
        return texts::csvField(reading->text) + ",,";
    const Summary& numbers = reading->numbers;
    return fullNumber(numbers.median) + ',' + fullNumber(numbers.spread) + ',' +
           std::to_string(numbers.count);
}

} // namespace

void printCsv(std::ostream& out, const Comparison& comparison)
{
    out << "path,base,base spread,base count,new,new spread,new count,change,percent,p,mark,outside"
        << texts::kCsvLineEnd;
    for (const Row& row : comparison.rows) {
        out << texts::csvField(row.path) << ',' << fields(row.base) << ',' << fields(row.now) << ','
            << field(row.change) << ',' << field(row.percent) << ',' << field(row.probability) << ','
            << markName(row.mark) << ',' << (row.limit ? "yes" : "no") << texts::kCsvLineEnd;
    }
}

} // namespace compare
