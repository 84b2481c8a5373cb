#pragma once

#include <string>
#include <string_view>

namespace statistics {

/// Floats as texts, with a point, whatever the host's locale.

/// Prints as "%.3f" and its like do. At most nine decimals.
void printDecimal(std::string& text, float value, int decimals);
/// The number that the text begins with, as `strtof` reads it; 0 if it begins with none.
float parseDecimal(std::string_view text);

} // namespace statistics
