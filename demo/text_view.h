#pragma once

#include <string>
#include <string_view>

/// Texts in ImGui's current window. Whatever their length, they are bounded to what ImGui can draw and a
/// person may want to read.
namespace demo {

void showText(std::string_view text);
/// Wrapped at the window's right side.
void showWrapped(std::string_view text);
/// The same, less bright.
void showDim(std::string_view text);
/// Lines of a name, a colon and a value, in two columns.
void showFields(std::string_view lines);

} // namespace demo
