/// The same program for machines without a display: the library's form without a panel, no Dear ImGui, no
/// window.

#include "commands.h"
#include "exit_status.h"

#include <cstdio>

namespace {

int refuse(demo::App&, const demo::Options&)
{
    std::fputs("statistics_demo_headless: no window here; say --list, --check or --record\n", stderr);
    return demo::kMistake;
}

} // namespace

int main(int argc, char** argv)
{
    return demo::runProgram(argc, argv, refuse);
}
