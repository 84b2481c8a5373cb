#pragma once

#include <cstddef>
#include <cstdio>

namespace compare {

bool isTerminal(std::FILE* stream);
/// In columns; 0 for no limit, where stdout is no terminal or doesn't tell.
std::size_t terminalWidth();
/// On a terminal that has them, unless the user's NO_COLOR is set.
bool wantsColours();

} // namespace compare
