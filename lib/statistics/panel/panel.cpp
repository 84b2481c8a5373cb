// The panel: whether the host's frame can be drawn into, the window, and the order of the trees in it.

#include "system_data.h"

#include "assertion.h"
#include "call_scope.h"
#include "debug_message.h"
#include "history_draw.h"
#include "layout.h"
#include "running_imgui.h"
#include "stack_tracker.h"
#include "widgets.h"

#include <imgui.h>

namespace statistics {

bool Render::beginWindow()
{
    // Wide enough for a table at the second level of the tree, with a scrollbar beside it.
    const ImGuiStyle& style = ImGui::GetStyle();
    const float frame = 2.0f * (style.WindowPadding.x + style.IndentSpacing) + style.ScrollbarSize;
    widgets::suggestNextWindowSize(
        ImVec2(layout::scaled(layout::kWidth) + frame, layout::scaled(layout::kPanelHeight)));
    ImGui::SetNextWindowBgAlpha(options.background);
    return ImGui::Begin("Statistics", &windowOpen, 0);
}

void Render::endWindow()
{
    ImGui::End();
}

namespace {

/// Both versions, since they are often the same and the cause lies elsewhere.
void reportForeignImGui()
{
    Orv::DebugMessageHelper().criticalMessage(
        __FILE__, __LINE__,
        "ASSERTION FAILED: %s\r\nThe running Dear ImGui is %s, the library was compiled with " IMGUI_VERSION
        ": nothing is drawn. Where both are the same, they differ in the branch (docking or not) or in "
        "imconfig.h.\r\n" __FILE__ "(%d)\r\n",
        "isRunningImGuiTheCompiledOne()", ImGui::GetVersion(), __LINE__);
}

/// Looked at once in the process, at the first draw: it can't change.
bool canDrawIntoRunningImGui()
{
    static const bool fits = [] {
        const bool same = isRunningImGuiTheCompiledOne();
        if (!same)
            reportForeignImGui();
        return same;
    }();
    return fits;
}

/// A host that draws at the wrong moment is told, and goes on.
bool canDrawNow()
{
    return ORV_ASSERT_MESSAGE(ImGui::GetCurrentContext(), "There is no ImGui context.") &&
           canDrawIntoRunningImGui() &&
           ORV_ASSERT_MESSAGE(widgets::isInsideFrame(), "The panel is drawn between NewFrame and Render.");
}

/// Closes the panel's window, collapsed or not.
class [[nodiscard]] WindowScope {
public:
    explicit WindowScope(Render& render) : visible(render.beginWindow()), m_render(render) {}
    ~WindowScope() { m_render.endWindow(); }
    WindowScope(const WindowScope&) = delete;
    WindowScope& operator=(const WindowScope&) = delete;

    const bool visible;

private:
    Render& m_render;
};

/// Each tree has an identity of its own: a host's item "Presets" opens by itself.
template<typename Drawn>
void drawTree(Drawn& tree, Render& render, const char* id)
{
    const widgets::IdScope scope(id);
    tree.draw(render);
}

} // namespace

void SnapshotGroup::draw(Render& render)
{
    tree.draw(render);
}

/// The functors behind what was drawn before may have changed the tree or the filter.
void System::Data::drawItems()
{
    const widgets::IdScope scope("items");
    filter.refresh(tree, render);
    tree.draw(render, filter.isOn() ? &filter : nullptr);
}

void System::draw()
{
    if (!Data::isOutsideFunctors())
        return;
    const Orv::StackScope scope("statistics::System::draw", __FILE__, __LINE__);
    const CallScope call;
    Render& render = m_data->render;
    if (!render.windowOpen || !canDrawNow())
        return;
    const WindowScope window(render);
    if (!window.visible)
        return;
    if (render.options.filter)
        m_data->filter.drawLine(m_data->tree, render);
    if (!limitPresets.empty())
        drawTree(m_data->presetGroup.tree, render, "presets");
    m_data->drawItems();
    if (m_data->statsAnalyzer)
        drawTree(m_data->snapshotGroup, render, "snapshots");
    if (render.history.isOn())
        drawHistoryView(*m_data);
}

} // namespace statistics
