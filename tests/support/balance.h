// Tells what a scene opened in ImGui and left open, before ImGui's own end of the frame would assert on it.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace test {

// Each kind of scope with the number of them that are open; windows with something left inside come last.
using OpenScopes = std::vector<std::pair<std::string, int>>;

OpenScopes openScopes();
std::string describeImbalance(const OpenScopes& before, const OpenScopes& after);

// Closes everything that is still open, so that the frame can end.
void closeOpenScopes();

} // namespace test
