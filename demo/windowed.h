#pragma once

#include "app.h"
#include "options.h"

namespace demo {

/// Runs in a window until the user or the command line wants an end, or the display goes away. Gives the exit
/// status.
int runInWindow(App& app, const Options& options);

} // namespace demo
