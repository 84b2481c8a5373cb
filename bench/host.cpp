#include "host.h"

#include "tree_node.h"

#include <imgui_internal.h>

#include <vector>

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
    ImGuiStorage& states = ImGui::GetCurrentWindow()->StateStorage;
    const statistics::Tree& tree = TestAccess::tree();
    std::vector<ImGuiID> ids(tree.m_nodes.size(), ImGui::GetID("items"));
    tree.forEachNode([&](unsigned id) {
        const std::string& name = TestAccess::render().itemName(tree.item(id));
        ids[id] = statistics::widgets::treeNodeId(ids[tree.m_nodes[id].parent], name);
        if (!tree.m_nodes[id].children.empty())
            states.SetInt(ids[id], 1);
    });
    ImGui::End();
}

} // namespace bench
