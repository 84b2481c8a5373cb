#pragma once

namespace demo {

/// Has `lost` set when the display goes away: the X server ends, or somebody cuts the connection. Without it,
/// X11 ends the whole program there and then, and nothing is kept. To be called when GLFW is up; what it
/// talks to may be no X server, and then nothing happens.
void watchForDisplayLoss(bool& lost);

} // namespace demo
