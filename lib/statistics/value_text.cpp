// Printing: by default with a point in every locale, or by a format of the host's.

#include <statistics/value.h>

#include "decimal.h"
#include "format.h"

#include <charconv>
#include <cstring>

#if __has_include(<langinfo.h>)
#include <langinfo.h>
#endif

namespace statistics {

namespace {

using EKind = Orv::FormatArgument::EKind;
using ESize = Orv::FormatArgument::ESize;

constexpr const char* kEmptyText = "---";
constexpr int kDefaultDecimals = 3;

template<typename Number>
void printDigits(std::string& text, Number value)
{
    char digits[16];
    const std::to_chars_result end = std::to_chars(digits, digits + sizeof(digits), value);
    text.assign(digits, end.ptr);
}

bool localeHasPoint()
{
#ifdef RADIXCHAR
    return std::strcmp(nl_langinfo(RADIXCHAR), ".") == 0;
#else
    return false;
#endif
}

/// "%.2f" and its like, perhaps with a unit behind: what hosts use most, at a fraction of printf's cost.
/// False for any other format, and where printf wouldn't write a point.
bool printShortDecimal(std::string& text, const char* format, float value)
{
    if (format[0] != '%' || format[1] != '.' || format[2] < '0' || format[2] > '9' || format[3] != 'f')
        return false;
    const char* unit = format + 4;
    if (std::strchr(unit, '%') || !localeHasPoint())
        return false;
    printDecimal(text, value, format[2] - '0');
    text += unit;
    return true;
}

template<typename Default, typename Long, typename LongLong, typename Number>
bool printInteger(std::string& text, const char* format, ESize size, Number value)
{
    switch (size) {
    case ESize::Long:
        return Orv::formatInto(text, format, static_cast<Long>(value));
    case ESize::LongLong:
        return Orv::formatInto(text, format, static_cast<LongLong>(value));
    default:
        return Orv::formatInto(text, format, static_cast<Default>(value));
    }
}

bool printFloating(std::string& text, const char* format, ESize size, double value)
{
    if (size == ESize::LongDouble)
        return Orv::formatInto(text, format, static_cast<long double>(value));
    return Orv::formatInto(text, format, value);
}

} // namespace

std::string CounterValue::toString(const char* format) const
{
    std::string text;
    print(text, format);
    return text;
}

void CounterValue::print(std::string& text, const char* format) const
{
    if (isString() || isEmpty())
        text = isString() ? m_text : kEmptyText;
    else if (!format || !printFormatted(text, format))
        printDefault(text);
}

void CounterValue::printDefault(std::string& text) const
{
    if (isDecimal())
        printDecimal(text, m_number.asFloat, kDefaultDecimals);
    else if (isInt())
        printDigits(text, m_number.asInt);
    else
        printDigits(text, m_number.asUInt);
}

bool CounterValue::printFormatted(std::string& text, const char* format) const
{
    if (isDecimal() && printShortDecimal(text, format, m_number.asFloat))
        return true;
    const Orv::FormatArgument argument = Orv::numberArgument(format);
    switch (argument.kind) {
    case EKind::None:
        return Orv::formatInto(text, format);
    case EKind::Signed:
        return isUInt() && argument.size != ESize::Default
                   ? printInteger<int, long, long long>(text, format, argument.size, m_number.asUInt)
                   : printInteger<int, long, long long>(text, format, argument.size, toInt());
    case EKind::Unsigned:
        return printInteger<unsigned, unsigned long, unsigned long long>(text, format, argument.size,
                                                                         toUInt());
    case EKind::Floating:
        return printFloating(text, format, argument.size, toDouble());
    default:
        return false;
    }
}

} // namespace statistics
