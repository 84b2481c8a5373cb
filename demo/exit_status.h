#pragma once

namespace demo {

/// What the program's end means; "--help" lists them.
constexpr int kFine = 0;
constexpr int kOutside = 1;   ///< "--check": a counter was outside its limits
constexpr int kMistake = 2;   ///< in the command line
constexpr int kNoDisplay = 3; ///< or no OpenGL on it
constexpr int kNoValue = 4;   ///< "--check": none was outside, but one with limits had no value
constexpr int kFailed = 5;    ///< it couldn't do its work; the reason is told

} // namespace demo
