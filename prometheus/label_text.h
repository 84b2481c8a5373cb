#pragma once

#include <string>
#include <string_view>

/// Texts as labels of the exposition format, and patterns on paths.
namespace statistics::prometheus_export {

/// The text with a replacement character (U+FFFD) for each byte that is no UTF-8 and for each zero byte, at
/// which servers stop reading.
std::string repaired(std::string_view text);
/// Appends `name="value"` with what the format wants escaped. `value` is UTF-8.
void appendLabel(std::string& line, std::string_view name, std::string_view value);

/// True if the pattern fits the whole text: "*" stands for any bytes, "?" for one.
bool matches(std::string_view pattern, std::string_view text);

} // namespace statistics::prometheus_export
