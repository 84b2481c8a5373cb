#pragma once

#include <string>
#include <string_view>

/// Tables as RFC 4180 text: fields between commas, rows that end with CR and LF.
namespace texts {

constexpr const char* kCsvLineEnd = "\r\n";

/// As it stands in a file: in quotes where it would be taken for more than one field.
std::string csvField(std::string_view text);

} // namespace texts
