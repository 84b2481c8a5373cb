#include "host.h"

#include <imgui_internal.h>

namespace bench {

using statistics::TestAccess;

std::string name(std::size_t index)
{
    return "counter number " + std::to_string(index);
}

statistics::Counter::Getter getter(const float& source)
{
    return [&source] { return statistics::CounterValue(source); };
}

void addGroupedCounters(Library& library, std::size_t count, const std::vector<float>& sources, float period)
{
    unsigned group = 0;
    for (std::size_t index = 0; index < count; ++index) {
        if (index % 100 == 0)
            group = library->createLabel("group " + std::to_string(index / 100));
        library->createCounter(name(index), std::make_unique<statistics::Counter>(getter(sources[index])),
                               period, group);
    }
}

void openAllNodes()
{
    ImGui::Begin("Statistics");
    ImGui::PushID("items");
    ImGui::PushID("");
    ImGuiWindow* window = ImGui::GetCurrentWindow();
    TestAccess::tree().forEach([&](unsigned item, unsigned) {
        window->StateStorage.SetInt(window->GetID(static_cast<int>(item)), 1);
    });
    ImGui::PopID();
    ImGui::PopID();
    ImGui::End();
}

} // namespace bench
