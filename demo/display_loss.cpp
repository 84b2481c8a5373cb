#include "display_loss.h"

#include <dlfcn.h>

namespace demo {

namespace {

using Display = void; ///< X11's; its headers would bring macros such as None and Bool
using GetDisplay = Display*();
using ErrorHandler = int(Display*);
using SetErrorHandler = ErrorHandler*(ErrorHandler*);
using ExitHandler = void(Display*, void* userData);
using SetExitHandler = void(Display*, ExitHandler*, void* userData);

template<typename Function>
Function* find(void* library, const char* name)
{
    return reinterpret_cast<Function*>(dlsym(library, name));
}

} // namespace

/// Looked up while it runs: a GLFW for Wayland knows no X11, and X11 before 1.7 no such handler.
void watchForDisplayLoss(bool& lost)
{
    void* const x11 = dlopen("libX11.so.6", RTLD_LAZY | RTLD_NOLOAD);
    if (!x11)
        return;
    auto* const getDisplay = find<GetDisplay>(RTLD_DEFAULT, "glfwGetX11Display");
    auto* const setErrorHandler = find<SetErrorHandler>(x11, "XSetIOErrorHandler");
    auto* const setExitHandler = find<SetExitHandler>(x11, "XSetIOErrorExitHandler");
    Display* const display = getDisplay ? getDisplay() : nullptr;
    if (display && setErrorHandler && setExitHandler) {
        setErrorHandler([](Display*) { return 0; }); // the usual one ends the program itself
        setExitHandler(
            display, [](Display*, void* flag) { *static_cast<bool*>(flag) = true; }, &lost);
    }
    dlclose(x11); // GLFW holds it, too
}

} // namespace demo
