#pragma once

#include <string_view>

namespace statistics {

/// The order of names on the panel: numbers in them by their value, so that "run-9" comes before "run-10",
/// all else byte by byte. Of two names that differ in leading zeros alone, the one that is first byte by
/// byte.
bool isNameBefore(std::string_view left, std::string_view right);

} // namespace statistics
