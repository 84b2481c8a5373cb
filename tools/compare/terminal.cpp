#include "terminal.h"

#include <cstdlib>
#include <cstring>

#ifdef _WIN32
#include <io.h>
#else
#include <sys/ioctl.h>
#include <unistd.h>
#endif

namespace compare {

bool isTerminal(std::FILE* stream)
{
#ifdef _WIN32
    return _isatty(_fileno(stream)) != 0;
#else
    return isatty(fileno(stream)) != 0;
#endif
}

std::size_t terminalWidth()
{
#ifndef _WIN32
    winsize size{};
    if (isTerminal(stdout) && ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0)
        return size.ws_col;
#endif
    return 0;
}

bool wantsColours()
{
    const char* const refused = std::getenv("NO_COLOR");
    const char* const kind = std::getenv("TERM");
    const bool isAble = kind && std::strcmp(kind, "dumb") != 0;
    return isAble && !(refused && *refused) && isTerminal(stdout);
}

} // namespace compare
