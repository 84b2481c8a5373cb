#include "decimal.h"

#include <algorithm>
#include <charconv>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <optional>

#if defined(__APPLE__) || defined(__FreeBSD__)
#include <xlocale.h>
#endif

namespace statistics {

namespace {

/// `value`, below 2^54, divided by two to the power of `shift`; ties go to the even number, as in printf.
std::uint64_t dividedByPower(std::uint64_t value, int shift)
{
    if (shift >= 64)
        return 0;
    const std::uint64_t unit = std::uint64_t{1} << static_cast<unsigned>(shift);
    const std::uint64_t whole = value / unit;
    const std::uint64_t rest = value % unit;
    return whole + (2 * rest > unit || (2 * rest == unit && whole % 2 == 1) ? 1 : 0);
}

/// Writes at least `count` digits, the last one before `end`; gives where they begin.
char* writeDigits(char* end, std::uint32_t number, int count)
{
    for (; count > 0 || number > 0; --count, number /= 10)
        *--end = static_cast<char>('0' + number % 10);
    return end;
}

/// For what is below 2^24: an integer of 24 bits over a power of two, so that its digits can be told in whole
/// numbers, several times as fast as by `to_chars`.
void printSmallDecimal(std::string& text, float value, int decimals)
{
    constexpr std::uint32_t kPowers[] = {1,      10,      100,      1000,      10000,
                                         100000, 1000000, 10000000, 100000000, 1000000000};
    constexpr int kFractionBits = 23;
    constexpr int kExponentOfOne = 127;
    std::uint32_t bits = 0;
    std::memcpy(&bits, &value, sizeof(bits));
    const auto exponent = static_cast<int>(bits >> 23u & 0xFFu);
    const std::uint64_t mantissa = (bits & 0x7FFFFFu) | (exponent > 0 ? 0x800000u : 0u);
    const std::uint64_t scaled =
        dividedByPower(mantissa * kPowers[decimals], kFractionBits + kExponentOfOne - std::max(exponent, 1));

    char digits[32];
    char* const end = digits + sizeof(digits);
    char* begin = writeDigits(end, static_cast<std::uint32_t>(scaled % kPowers[decimals]), decimals);
    if (decimals > 0)
        *--begin = '.';
    begin = writeDigits(begin, static_cast<std::uint32_t>(scaled / kPowers[decimals]), 1);
    if (std::signbit(value))
        *--begin = '-';
    text.assign(begin, end);
}

/// `strtof` with the point of the "C" locale. Text that doesn't begin with a number gives zero.
float parseFloat(const char* text)
{
#if defined(_MSC_VER)
    static const _locale_t locale = _create_locale(LC_ALL, "C");
    return _strtof_l(text, nullptr, locale);
#elif defined(_WIN32)
    // mingw-w64 has no strtof_l, and its _strtod_l knows neither infinities nor hexadecimal numbers.
    std::string number = text;
    const char point = *std::localeconv()->decimal_point;
    if (point != '.') {
        number.resize(std::min(number.find(point), number.size()));
        std::replace(number.begin(), number.end(), '.', point);
    }
    char* end = nullptr;
    const float value = std::strtof(number.c_str(), &end);
    return end == number.c_str() ? 0.0f : value; // "---" gives it a negative zero
#else
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
    return strtof_l(text, nullptr, locale);
#endif
}

/// A number of up to seven digits, as the library writes them: both parts of the fraction are floats exactly,
/// so their quotient, taken in double, gives the float that is nearest. Nothing for any other text.
std::optional<float> parseShort(std::string_view text)
{
    constexpr double kPowers[] = {1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7};
    constexpr std::size_t kMostDigits = 7;
    const bool negative = !text.empty() && text.front() == '-';
    text.remove_prefix(negative ? 1 : 0);
    const std::size_t point = std::min(text.find('.'), text.size());
    const std::size_t digits = text.size() - (point < text.size() ? 1 : 0);
    if (digits == 0 || digits > kMostDigits)
        return std::nullopt;
    int number = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (at == point)
            continue;
        if (text[at] < '0' || text[at] > '9')
            return std::nullopt;
        number = number * 10 + (text[at] - '0');
    }
    const auto value = static_cast<float>(number / kPowers[digits - point]);
    return negative ? -value : value;
}

} // namespace

void printDecimal(std::string& text, float value, int decimals)
{
    static_assert(std::numeric_limits<float>::is_iec559 && sizeof(float) == sizeof(std::uint32_t));
    constexpr float kAllBelowHaveFractions = 16777216.0f;
    if (std::abs(value) < kAllBelowHaveFractions)
        return printSmallDecimal(text, value, decimals);
    char digits[64]; // the largest float has 39 digits before the point
    const auto end =
        std::to_chars(digits, digits + sizeof(digits), value, std::chars_format::fixed, decimals);
    text.assign(digits, end.ptr);
}

float parseDecimal(std::string_view text)
{
    const std::optional<float> number = parseShort(text);
    return number ? *number : parseFloat(std::string(text).c_str());
}

} // namespace statistics
