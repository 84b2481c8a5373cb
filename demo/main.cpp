/// A real-time program that watches itself with the library, in a window.

#include "commands.h"
#include "windowed.h"

int main(int argc, char** argv)
{
    return demo::runProgram(argc, argv, demo::runInWindow);
}
