#include <statistics/value.h>

#include "assertion.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

// Weights may be infinite or NaN, and bars, reports and comparisons rely on telling so.
#if defined(__FINITE_MATH_ONLY__) && __FINITE_MATH_ONLY__
#error "The library is compiled with -fno-finite-math-only, behind whatever a host sets."
#endif

namespace statistics {

namespace {

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
