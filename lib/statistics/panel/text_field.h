#pragma once

#include <string>

namespace statistics::widgets {

/// The text as a field can take it, up to its first zero: what ImGui can't hold as a character is replaced by
/// U+FFFD. Of such bytes ImGui counts others than it removes, and fails when there are none left.
std::string editable(const std::string& text);
/// A line of text that the user edits, which must be `editable`; what is pasted into it is made so. True when
/// it has changed, which may be while it is being typed.
bool textField(const char* id, const char* hint, std::string& text);
/// Whatever the user types is lost; for a text that changes from elsewhere.
void leaveTextField(const char* id);

} // namespace statistics::widgets
