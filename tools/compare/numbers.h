#pragma once

#include <string>
#include <string_view>

/// Numbers as texts and back, with a point whatever the locale.
namespace compare {

/// False unless the whole text is one number: "7", "-0.500", "1e9", "inf", "nan". "12 apples" is a text, and
/// so is a number that a double can't hold.
bool parseNumber(std::string_view text, double& number);

/// As few digits as give the same double when read back.
std::string fullNumber(double number);
/// At most 12 digits, which hides what rounding does to differences and means.
std::string shortNumber(double number);
/// The same with its sign, a "+" too.
std::string signedNumber(double number);
/// "+2.60%".
std::string percentText(double percent);
/// Four decimals, or two digits of what is smaller.
std::string probabilityText(double probability);

} // namespace compare
