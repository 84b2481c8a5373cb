#pragma once

// Tells what a scene opened in ImGui and left open, before ImGui's own end of the frame asserts on it.

#include <map>
#include <string>

namespace offscreen {

using OpenScopes = std::map<std::string, int>; ///< how many are open of each kind

OpenScopes openScopes();
std::string describeImbalance(OpenScopes before, const OpenScopes& after);

/// Closes whatever is open, so that the frame can end.
void closeOpenScopes();

} // namespace offscreen
