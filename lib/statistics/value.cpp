#include <statistics/value.h>

#include "assertion.h"
#include "decimal.h"
#include "format.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <utility>

#if __has_include(<langinfo.h>)
#include <langinfo.h>
#endif

// Weights may be infinite or NaN, and bars, reports and comparisons rely on telling so.
#if defined(__FINITE_MATH_ONLY__) && __FINITE_MATH_ONLY__
#error "The library is compiled with -fno-finite-math-only, behind whatever a host sets."
#endif

namespace statistics {

namespace {

using EKind = Orv::FormatArgument::EKind;
using ESize = Orv::FormatArgument::ESize;

constexpr const char* kEmptyText = "---";
constexpr int kDefaultDecimals = 3;

/// Truncates toward zero; saturates at the ends of the range, NaN gives zero.
template<typename Integer>
Integer truncated(float value)
{
    // The upper end rounds up to a power of two as a float, so everything below it fits.
    constexpr auto kUpper = static_cast<float>(std::numeric_limits<Integer>::max());
    if (std::isnan(value))
        return 0;
    if (value >= kUpper)
        return std::numeric_limits<Integer>::max();
    if (value <= -kUpper)
        return std::numeric_limits<Integer>::min();
    return static_cast<Integer>(value);
}

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

/// (value - low) / (high - low), both differences wrapped to 32 bits.
template<typename Integer>
float integerWeight(unsigned value, unsigned low, unsigned high)
{
    const auto done = static_cast<Integer>(value - low);
    const auto whole = static_cast<Integer>(high - low);
    return static_cast<float>(done) / static_cast<float>(whole);
}

} // namespace

CounterValue::CounterValue(CounterValue&& other) noexcept
    : m_text(std::move(other.m_text)), m_number(other.m_number), m_type(other.m_type)
{
    other.m_text.clear();
}

CounterValue& CounterValue::operator=(CounterValue&& other) noexcept
{
    if (this != &other) {
        m_text = std::move(other.m_text);
        m_number = other.m_number;
        m_type = other.m_type;
        other.m_text.clear();
    }
    return *this;
}

int CounterValue::toInt() const
{
    switch (m_type) {
    case ECounterType::Int:
    case ECounterType::UInt:
        return m_number.asInt;
    case ECounterType::Decimal:
        return truncated<std::int32_t>(m_number.asFloat);
    default:
        return 0;
    }
}

unsigned int CounterValue::toUInt() const
{
    switch (m_type) {
    case ECounterType::Int:
    case ECounterType::UInt:
        return m_number.asUInt;
    case ECounterType::Decimal:
        return static_cast<unsigned int>(truncated<std::int64_t>(m_number.asFloat));
    default:
        return 0;
    }
}

float CounterValue::toFloat() const
{
    switch (m_type) {
    case ECounterType::Int:
        return static_cast<float>(m_number.asInt);
    case ECounterType::UInt:
        return static_cast<float>(m_number.asUInt);
    case ECounterType::Decimal:
        return m_number.asFloat;
    default:
        return 0.0f;
    }
}

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

/// Exact for all three kinds of number, where a float isn't.
double CounterValue::toDouble() const
{
    if (isDecimal())
        return static_cast<double>(m_number.asFloat);
    return isInt() ? static_cast<double>(m_number.asInt) : static_cast<double>(m_number.asUInt);
}

bool CounterValue::operator==(const CounterValue& other) const
{
    if (isEmpty() || other.isEmpty())
        return isEmpty() && other.isEmpty();
    if (isString() && other.isString())
        return m_text == other.m_text;
    if (isString() || other.isString())
        return toString(nullptr) == other.toString(nullptr);
    if (isDecimal() || other.isDecimal())
        return toFloat() == other.toFloat();
    return m_number.asUInt == other.m_number.asUInt;
}

bool CounterValue::operator<(const CounterValue& other) const
{
    switch (m_type) {
    case ECounterType::Int:
        return m_number.asInt < other.toInt();
    case ECounterType::UInt:
        return m_number.asUInt < other.toUInt();
    case ECounterType::Decimal:
        return m_number.asFloat < other.toFloat();
    case ECounterType::String:
        return other.isString() ? m_text < other.m_text : m_text < other.toString(nullptr);
    default:
        return false;
    }
}

bool CounterValue::operator>(const CounterValue& other) const
{
    switch (m_type) {
    case ECounterType::Int:
        return m_number.asInt > other.toInt();
    case ECounterType::UInt:
        return m_number.asUInt > other.toUInt();
    case ECounterType::Decimal:
        return m_number.asFloat > other.toFloat();
    case ECounterType::String:
        return other.isString() ? m_text > other.m_text : m_text > other.toString(nullptr);
    default:
        return false;
    }
}

CounterValue& CounterValue::operator+=(const CounterValue& other)
{
    if (isEmpty())
        return *this = other;
    if (other.isEmpty() || !ORV_ASSERT(canCast(m_type, other.m_type)))
        return *this;
    if (isDecimal())
        m_number.asFloat += other.m_number.asFloat;
    else if (isString())
        ORV_ASSERT(false);
    else
        m_number.asUInt += other.m_number.asUInt;
    return *this;
}

float CounterValue::weight(const CounterValue& min, const CounterValue& max)
{
    const CounterValue lo = castToOwnType(min);
    const CounterValue hi = castToOwnType(max);
    switch (lo.m_type) {
    case ECounterType::Int:
        return integerWeight<int>(m_number.asUInt, lo.m_number.asUInt, hi.m_number.asUInt);
    case ECounterType::UInt:
        return integerWeight<unsigned>(m_number.asUInt, lo.m_number.asUInt, hi.m_number.asUInt);
    case ECounterType::Decimal:
        return (m_number.asFloat - lo.m_number.asFloat) / (hi.m_number.asFloat - lo.m_number.asFloat);
    default:
        ORV_ASSERT_MESSAGE(
            false, "Cannot weight CounterValue. Incorrect underlying type (expected int, uint or float).");
        return -1.0f;
    }
}

bool CounterValue::canCast(ECounterType own, ECounterType other) const
{
    const auto isInteger = [](ECounterType type) {
        return type == ECounterType::Int || type == ECounterType::UInt;
    };
    return own == other || own == ECounterType::Empty || other == ECounterType::Empty ||
           (isInteger(own) && isInteger(other));
}

CounterValue CounterValue::castToOwnType(const CounterValue& other) const
{
    if (canCast(m_type, other.m_type))
        return other;
    switch (m_type) {
    case ECounterType::Int:
        return castToInt(other);
    case ECounterType::UInt:
        return castToUInt(other);
    case ECounterType::Decimal:
        return castToFloat(other);
    default:
        return other.toString(nullptr);
    }
}

CounterValue CounterValue::castToFloat(const CounterValue& other) const
{
    if (!ORV_ASSERT_MESSAGE(!other.isString(), "Cannot cast CounterValue to float. Incorrect underlying type "
                                               "(expected int, uint or float)."))
        return {};
    return other.toFloat();
}

CounterValue CounterValue::castToInt(const CounterValue& other) const
{
    if (!ORV_ASSERT_MESSAGE(!other.isString(), "Cannot cast CounterValue to int. Incorrect underlying type "
                                               "(expected int, uint or float)."))
        return {};
    return other.toInt();
}

CounterValue CounterValue::castToUInt(const CounterValue& other) const
{
    if (!ORV_ASSERT_MESSAGE(!other.isString(), "Cannot cast CounterValue to uint. Incorrect underlying type "
                                               "(expected int, uint or float)."))
        return {};
    return other.toUInt();
}

} // namespace statistics
