#include "context.h"

namespace offscreen {
namespace {

#ifdef IMGUI_HAS_TEXTURES
void prepareFonts(ImGuiIO& io)
{
    io.BackendFlags |= ImGuiBackendFlags_RendererHasTextures;
}

/// Stands for a renderer that has done what ImGui wants with its textures.
void settleTextures(bool keep)
{
    for (ImTextureData* texture : ImGui::GetPlatformIO().Textures) {
        const bool alive = keep && texture->Status != ImTextureStatus_WantDestroy;
        texture->SetTexID(alive ? 1 : ImTextureID_Invalid);
        texture->SetStatus(alive ? ImTextureStatus_OK : ImTextureStatus_Destroyed);
    }
}
#else
void prepareFonts(ImGuiIO& io)
{
    io.Fonts->Build();
}
void settleTextures(bool) {}
#endif

} // namespace

Context::Context(ImVec2 displaySize)
    : m_previous(ImGui::GetCurrentContext()), m_context(ImGui::CreateContext())
{
    io().IniFilename = nullptr;
    io().DisplaySize = displaySize;
    io().BackendFlags |= ImGuiBackendFlags_RendererHasVtxOffset;
    prepareFonts(io());
}

Context::~Context()
{
    makeCurrent();
    settleTextures(false);
    ImGui::DestroyContext();
    ImGui::SetCurrentContext(m_previous);
}

ImGuiIO& Context::io()
{
    makeCurrent();
    return ImGui::GetIO();
}

void Context::beginFrame(float seconds)
{
    io().DeltaTime = seconds;
    ImGui::NewFrame();
}

void Context::endFrame()
{
    ImGui::Render();
    settleTextures(true);
}

} // namespace offscreen
