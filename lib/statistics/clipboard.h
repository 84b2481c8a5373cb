#pragma once

#include <string>

namespace statistics {

/// Replaces the system clipboard's contents. Silent on failure; the earlier contents then stay as a rule.
void setClipboardText(const std::string& text);

} // namespace statistics
