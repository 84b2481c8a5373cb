#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Texts of strangers as they may stand on a screen: a process calls itself and its arguments as it likes.
namespace texts {

/// With a "?" for each control character: no line break, no tab, one line of a terminal or spreadsheet.
std::string visible(std::string_view text);

/// At most `most` bytes of a text, with a word behind it about how many there are. ImGui can't draw a text of
/// 16,000 characters and more in one go.
std::string bounded(std::string_view text, std::size_t most);

} // namespace texts
