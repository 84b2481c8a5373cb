#pragma once

#include <statistics/export.h>

#include <string>

namespace statistics {

/// The one value type of the library: a measurement, a limit, a table cell or a snapshot entry.
///
/// Holds a signed or an unsigned 32-bit integer, a 32-bit float, a text, or nothing (`Empty`). A value owns
/// its text; copying copies it, moving takes it. No operation throws but for lack of memory, and none runs
/// host functors; misuse goes to the report handler (report.h) and leaves a defined result. Reading and
/// printing are safe from any thread as long as nobody writes the same value.
class STATISTICS_EXPORT CounterValue {
public:
    enum class ECounterType : unsigned char { Int, UInt, Decimal, String, Empty };

    /// `Empty`: no value. Prints "---", reads as zero, is never outside a limit.
    CounterValue() = default;
    CounterValue(int value) : m_number{value}, m_type{ECounterType::Int} {}
    CounterValue(unsigned int value) : m_type{ECounterType::UInt} { m_number.asUInt = value; }
    CounterValue(float value) : m_type{ECounterType::Decimal} { m_number.asFloat = value; }
    CounterValue(const std::string& text) : m_text{text}, m_type{ECounterType::String} {}
    /// A null text is no value: `Empty`.
    CounterValue(const char* text)
        : m_text{text ? text : ""}, m_type{text ? ECounterType::String : ECounterType::Empty}
    {
    }
    // A value has 32 bits. Which part of a wider number matters is for the host to say:
    CounterValue(double) = delete;             ///< write static_cast<float>(value)
    CounterValue(long double) = delete;        ///< write static_cast<float>(value)
    CounterValue(long) = delete;               ///< write static_cast<int>(value) or static_cast<float>(value)
    CounterValue(long long) = delete;          ///< write static_cast<int>(value) or static_cast<float>(value)
    CounterValue(unsigned long) = delete;      ///< write static_cast<unsigned>(value) or the like with float
    CounterValue(unsigned long long) = delete; ///< write static_cast<unsigned>(value) or the like with float

    CounterValue(const CounterValue&) = default;
    CounterValue& operator=(const CounterValue&) = default;
    /// The source keeps its number and kind, with an empty text.
    CounterValue(CounterValue&& other) noexcept;
    CounterValue& operator=(CounterValue&& other) noexcept;
    ~CounterValue() = default;

    bool isInt() const { return m_type == ECounterType::Int; }
    bool isUInt() const { return m_type == ECounterType::UInt; }
    bool isDecimal() const { return m_type == ECounterType::Decimal; }
    bool isString() const { return m_type == ECounterType::String; }
    bool isEmpty() const { return m_type == ECounterType::Empty; }
    /// True for every kind but `Empty`.
    bool valid() const { return !isEmpty(); }

    /// The value as a number. A text is never parsed: `String` and `Empty` read as zero. `Int` and `UInt`
    /// share their 32 bits; a `Decimal` is truncated toward zero and saturates at the ends of the range (of
    /// the signed 64-bit range on the way to unsigned, so -1.5 reads as 4294967295); NaN reads as zero.
    int toInt() const;
    unsigned int toUInt() const;
    float toFloat() const
    {
        if (isDecimal())
            return m_number.asFloat;
        if (isInt())
            return static_cast<float>(m_number.asInt);
        return isUInt() ? static_cast<float>(m_number.asUInt) : 0.0f;
    }

    /// The value as text. A null `format` gives the default print: all digits of an integer, three decimals
    /// of a `Decimal` (with a point, whatever the locale), the text of a `String`, "---" for `Empty`.
    /// Otherwise `format` is a printf format with at most one conversion; the number is converted to what
    /// that asks for. A format that could read anything else (a text, pointer or writing conversion, a "*",
    /// two conversions), or with a width of more than four digits, gives the default print. `String` and
    /// `Empty` ignore the format.
    std::string toString(const char* format) const;
    /// The same into `text`, which keeps its memory: nothing is allocated once it is large enough.
    void print(std::string& text, const char* format) const;

    /// `Empty` equals only `Empty`; a `String` is compared with the other side's default print; a `Decimal`
    /// as floats; two integers by their 32 bits.
    bool operator==(const CounterValue& other) const;
    bool operator!=(const CounterValue& other) const { return !(*this == other); }
    /// The left side's kind decides, the right side is read in that kind. Not symmetric between kinds.
    /// `Empty` on the left is never less and never greater.
    bool operator<(const CounterValue& other) const;
    bool operator>(const CounterValue& other) const;

    /// Adds a number of a fitting kind (`Int` and `UInt` fit each other, with wrap-around). `Empty` takes
    /// over the other value; adding `Empty` changes nothing. Kinds that don't fit, and texts, are reported
    /// and the value stays as it is.
    CounterValue& operator+=(const CounterValue& other);

    /// Where this value lies on the way from `min` (0) to `max` (1), not clamped. For an integer, limits of
    /// either integer kind keep their kind, and that of `min` decides: signed or unsigned differences, with
    /// wrap-around; other limits are read in this value's kind. So a `UInt` wants `UInt` limits. A bar needs
    /// two finite limits: with infinite or equal ones, or ones as far apart as `-FLT_MAX` and `FLT_MAX`, the
    /// result says nothing. A lower limit that is no number is reported and gives -1; an upper one counts as
    /// 0.
    float weight(const CounterValue& min, const CounterValue& max);

private:
    void printDefault(std::string& text) const;
    bool printFormatted(std::string& text, const char* format) const;
    double toDouble() const;
    bool canCast(ECounterType own, ECounterType other) const;
    CounterValue castToOwnType(const CounterValue& other) const;
    CounterValue castToFloat(const CounterValue& other) const;
    CounterValue castToInt(const CounterValue& other) const;
    CounterValue castToUInt(const CounterValue& other) const;

    union Number {
        int asInt;
        unsigned int asUInt;
        float asFloat;
    };

    std::string m_text;
    Number m_number{0};
    ECounterType m_type = ECounterType::Empty;
};

} // namespace statistics
