// A host whose ImGui is another release than the one that the library was compiled with.

#include <imgui.h>
#include <statistics/statistics.h>

#include <cstdio>
#include <cstring>

const char* ImGui::GetVersion()
{
    return "1.80"; // before that of the shared ImGui, which stays as it is
}

int main()
{
    ImGui::CreateContext();
    ImGui::GetIO().DisplaySize = ImVec2(1280, 720);
    ImGui::GetIO().IniFilename = nullptr;
    ImGui::GetIO().Fonts->Build();
    int reports = 0;
    statistics::setReportHandler([&reports](const char* text) {
        std::puts(text);
        reports += std::strstr(text, IMGUI_VERSION) && std::strstr(text, "1.80") ? 1 : 100;
    });
    statistics::System::initialize();
    for (int frame = 0; frame < 3; ++frame) {
        ImGui::NewFrame();
        statistics::System::instance()->draw();
        ImGui::Render();
    }
    statistics::System::shutdown();
    return reports == 1 && ImGui::GetDrawData()->TotalVtxCount == 0 ? 0 : 1;
}
