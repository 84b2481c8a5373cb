#pragma once

namespace demo {

/// What the program's end means; "--help" lists them.
enum EExitStatus {
    kFine = 0,
    kOutside = 1,   ///< "--check": a counter was outside its limits
    kMistake = 2,   ///< in the command line
    kNoDisplay = 3, ///< or no OpenGL on it
    kNoValue = 4,   ///< "--check": none was outside, but one with limits had no value
    kFailed = 5,    ///< it couldn't do its work; the reason is told
};

} // namespace demo
