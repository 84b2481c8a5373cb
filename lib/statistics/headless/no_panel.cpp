// Stands where the panel would be, in the library for hosts without a window.

#include "clipboard.h"

#include <statistics/system.h>

namespace statistics {

void System::draw() {}

#ifndef _WIN32
void setClipboardText(const std::string& /*text*/) {}
#endif

} // namespace statistics
