#pragma once

namespace compare {

/// All that there is to know about the command line. Each option that is parsed stands in it.
extern const char* const kHelp;

} // namespace compare
