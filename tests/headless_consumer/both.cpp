// Holds both libraries and is told so, once.

#include <statistics/statistics.h>

#include <string>

struct ImGuiContext;
ImGuiContext* GImGui = nullptr; // the one thing of ImGui that the library with the panel wants at its start

int main()
{
    int told = 0;
    statistics::setReportHandler([&told](const char* report) {
        told += std::string(report).find("two libraries") != std::string::npos ? 1 : 0;
    });
    for (int life = 0; life < 2; ++life) {
        statistics::System::initialize();
        statistics::System::shutdown();
    }
    statistics::setReportHandler({});
    return told == 1 ? 0 : 1;
}
