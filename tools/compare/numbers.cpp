#include "numbers.h"

#include <charconv>
#include <cmath>
#include <system_error>

namespace compare {

namespace {

constexpr int kShortDigits = 12;
constexpr double kLongestPercent = 1e7; ///< from here on with an exponent

template<typename... Format>
std::string print(double number, Format... format)
{
    if (std::isnan(number))
        return "nan"; // its sign means nothing
    char digits[64];
    return {digits, std::to_chars(digits, digits + sizeof(digits), number, format...).ptr};
}

std::string withSign(double number, const std::string& digits)
{
    return number > 0 ? "+" + digits : digits;
}

} // namespace

bool parseNumber(std::string_view text, double& number)
{
    const char* const end = text.data() + text.size();
    const std::from_chars_result result = std::from_chars(text.data(), end, number);
    return result.ec == std::errc() && result.ptr == end;
}

std::string fullNumber(double number)
{
    return print(number);
}

std::string shortNumber(double number)
{
    return print(number, std::chars_format::general, kShortDigits);
}

std::string signedNumber(double number)
{
    return withSign(number, shortNumber(number));
}

std::string percentText(double percent)
{
    const bool isLong = std::fabs(percent) >= kLongestPercent;
    return withSign(percent, isLong ? print(percent, std::chars_format::general, 4)
                                    : print(percent, std::chars_format::fixed, 2)) +
           "%";
}

std::string probabilityText(double probability)
{
    return probability < 0.0001 ? print(probability, std::chars_format::general, 2)
                                : print(probability, std::chars_format::fixed, 4);
}

} // namespace compare
