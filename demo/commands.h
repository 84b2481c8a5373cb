#pragma once

#include "app.h"
#include "options.h"

#include <functional>

/// What the program does from its command line. Needs no window.
namespace demo {

/// What to do with the program once it is up; gives the exit status.
using Run = std::function<int(App& app, const Options& options)>;

/// The whole program: reads the command line, takes the library up, and lists, checks, records or, if none of
/// these is asked for, runs `run`. Gives the exit status.
int runProgram(int argc, char** argv, const Run& run);

} // namespace demo
