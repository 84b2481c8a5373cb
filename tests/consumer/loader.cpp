// A host that isn't linked against the library: it loads it while it runs, and so it does with a plugin that
// uses it, again and again. Its own ImGui is what both find.

#include <imgui.h>
#include <statistics/statistics.h>

#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>

namespace {

void check(bool holds, const char* what)
{
    if (!holds) {
        const char* error = dlerror();
        std::printf("failed: %s (%s)\n", what, error ? error : "");
        std::exit(1);
    }
}

template<class Function>
Function* find(void* module, const char* name)
{
    void* address = dlsym(module, name);
    check(address != nullptr, name);
    return reinterpret_cast<Function*>(address);
}

void startImGui()
{
    ImGui::CreateContext();
    ImGui::GetIO().DisplaySize = ImVec2(1280, 720);
    ImGui::GetIO().IniFilename = nullptr;
    ImGui::GetIO().Fonts->Build();
}

struct Library {
    void* module;
    statistics::System* system;

    void frame() const
    {
        find<void(statistics::System*, float, bool)>(module, "_ZN10statistics6System6updateEfb")(system, 0,
                                                                                                 true);
        ImGui::NewFrame();
        find<void(statistics::System*)>(module, "_ZN10statistics6System4drawEv")(system);
        ImGui::Render();
    }
    bool has(const char* path) const
    {
        return find<unsigned(const char*)>(module, "_ZN10statistics12getItemIndexEPKc")(path) !=
               statistics::INVALID_ID;
    }
};

void loadAndUnload(const Library& library, const char* path)
{
    void* plugin = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    check(plugin != nullptr, path);
    find<void()>(plugin, "load")();
    library.frame();
    check(library.has("Plugin/Rows") && library.has("Plugin/Table"), "the plugin's items are there");
    find<void()>(plugin, "unload")();
    dlclose(plugin);
    check(dlopen(path, RTLD_NOW | RTLD_NOLOAD) == nullptr, "the plugin is out of the process");
    check(!library.has("Plugin"), "its items are gone with it");
    library.frame();
}

} // namespace

/// loader <library> <plugin>
int main(int /*count*/, char** arguments)
{
    startImGui();
    void* module = dlopen(arguments[1], RTLD_NOW | RTLD_LOCAL);
    check(module != nullptr, arguments[1]);
    find<void()>(module, "_ZN10statistics6System10initializeEv")();
    const Library library{module, find<statistics::System*()>(module, "_ZN10statistics6System8instanceEv")()};
    for (int round = 0; round < 100; ++round)
        loadAndUnload(library, arguments[2]);
    check(ImGui::GetDrawData()->TotalVtxCount > 0, "the panel is drawn into the host's ImGui");
    find<void()>(module, "_ZN10statistics6System8shutdownEv")();
    dlclose(module);
    ImGui::DestroyContext();
}
