#pragma once

// An ImGui context without a window: frames are drawn and nobody sees them.

#include <imgui.h>

namespace offscreen {

/// Current from its construction on; the context that was current before comes back at its end. Several may
/// live at a time if they end in reverse order.
class Context {
public:
    explicit Context(ImVec2 displaySize);
    ~Context();
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;

    void makeCurrent() { ImGui::SetCurrentContext(m_context); }
    ImGuiIO& io(); ///< makes this context the current one
    void beginFrame(float seconds = kFrameTime);
    void endFrame();

    template<typename Scene>
    void frame(const Scene& scene)
    {
        beginFrame();
        scene();
        endFrame();
    }

    static constexpr float kFrameTime = 1.0f / 60; ///< seconds

private:
    ImGuiContext* m_previous;
    ImGuiContext* m_context;
};

} // namespace offscreen
