#include "only_library.h"

#include <statistics/export.h>

#ifdef _WIN32
#include <windows.h>
#endif

namespace statistics {

#ifdef _WIN32

bool isOnlyLibrary()
{
    const wchar_t* const names[] = {L"statistics.dll", L"libstatistics.dll", L"statistics_headless.dll",
                                    L"libstatistics_headless.dll"};
    int loaded = 0;
    for (const wchar_t* name : names)
        if (GetModuleHandleW(name))
            ++loaded;
    return loaded < 2;
}

#else

/// One variable for all libraries of the process: the linker lets the first definition serve them all.
STATISTICS_EXPORT extern int s_librariesLoaded;
int s_librariesLoaded = 0;

namespace {

struct Loaded {
    Loaded() { ++s_librariesLoaded; }
    ~Loaded() { --s_librariesLoaded; }
    Loaded(const Loaded&) = delete;
    Loaded& operator=(const Loaded&) = delete;
};

const Loaded s_loaded;

} // namespace

bool isOnlyLibrary()
{
    return s_librariesLoaded < 2;
}

#endif

} // namespace statistics
