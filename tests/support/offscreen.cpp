#include "offscreen.h"

#include "balance.h"

#include <cmath>
#include <exception>
#include <stdexcept>

namespace test {
namespace {

constexpr float kFrameTime = 1.0F / 60; // seconds
// ImGui shows a new popup in the second frame after it was opened, and knows what is hovered one frame late.
constexpr int kSettleFrames = 2;

void feedPosition(ImVec2 point)
{
#if IMGUI_VERSION_NUM >= 18700
    ImGui::GetIO().AddMousePosEvent(point.x, point.y);
#else
    ImGui::GetIO().MousePos = point;
#endif
}

void feedButton(EButton button, bool down)
{
#if IMGUI_VERSION_NUM >= 18700
    ImGui::GetIO().AddMouseButtonEvent(button, down);
#else
    ImGui::GetIO().MouseDown[button] = down;
#endif
}

void feedWheel(float dx, float dy)
{
#if IMGUI_VERSION_NUM >= 18700
    ImGui::GetIO().AddMouseWheelEvent(dx, dy);
#else
    ImGui::GetIO().MouseWheelH = dx;
    ImGui::GetIO().MouseWheel = dy;
#endif
}

#ifdef IMGUI_HAS_TEXTURES
// Stands for a renderer that did what ImGui wants with its textures.
void acknowledgeTextures()
{
    for (ImTextureData* texture : ImGui::GetPlatformIO().Textures) {
        if (texture->Status == ImTextureStatus_WantDestroy) {
            texture->SetTexID(ImTextureID_Invalid);
            texture->SetStatus(ImTextureStatus_Destroyed);
        } else if (texture->Status != ImTextureStatus_Destroyed) {
            texture->SetTexID(1);
            texture->SetStatus(ImTextureStatus_OK);
        }
    }
}

void releaseTextures()
{
    for (ImTextureData* texture : ImGui::GetPlatformIO().Textures) {
        texture->SetTexID(ImTextureID_Invalid);
        texture->SetStatus(ImTextureStatus_Destroyed);
    }
}

void prepareFonts()
{
    ImGui::GetIO().BackendFlags |= ImGuiBackendFlags_RendererHasTextures;
}
#else
void acknowledgeTextures() {}
void releaseTextures() {}

void prepareFonts()
{
    unsigned char* pixels = nullptr;
    int width = 0;
    int height = 0;
    ImGui::GetIO().Fonts->GetTexDataAsRGBA32(&pixels, &width, &height);
}
#endif

std::exception_ptr run(const std::function<void()>& scene)
{
    try {
        if (scene) {
            scene();
        }
    } catch (...) {
        return std::current_exception();
    }
    return nullptr;
}

bool sameColor(ImU32 a, ImU32 b)
{
    return ((a ^ b) & ~IM_COL32_A_MASK) == 0;
}

} // namespace

Offscreen::Offscreen(ImVec2 displaySize)
    : m_previous(ImGui::GetCurrentContext()), m_context(ImGui::CreateContext())
{
    ImGui::SetCurrentContext(m_context);
    ImGuiIO& io = ImGui::GetIO();
    io.IniFilename = nullptr;
    io.LogFilename = nullptr;
    io.DisplaySize = displaySize;
    io.DeltaTime = kFrameTime;
    prepareFonts();
}

Offscreen::~Offscreen()
{
    ImGui::SetCurrentContext(m_context);
    releaseTextures();
    ImGui::DestroyContext();
    ImGui::SetCurrentContext(m_previous);
}

void Offscreen::setScene(std::function<void()> scene)
{
    m_scene = std::move(scene);
}

void Offscreen::frame()
{
    ImGui::SetCurrentContext(m_context);
    m_read.reset();
    ImGui::NewFrame();
    const OpenScopes before = openScopes();
    const std::exception_ptr thrown = run(m_scene);
    m_imbalance = describeImbalance(before, openScopes());
    closeOpenScopes();
    ImGui::Render();
    acknowledgeTextures();
    if (thrown) {
        feedButton(EButtonLeft, false);
        feedButton(EButtonRight, false);
        std::rethrow_exception(thrown);
    }
}

void Offscreen::frames(int count)
{
    for (int i = 0; i < count; ++i) {
        frame();
    }
}

const Frame& Offscreen::read()
{
    ImGui::SetCurrentContext(m_context);
    if (!m_read) {
        const ImDrawData* data = ImGui::GetDrawData();
        m_read = data ? readFrame(*data) : Frame();
    }
    return *m_read;
}

const Text& Offscreen::text(std::string_view exact, std::size_t nth)
{
    if (const Text* found = read().find(exact, nth)) {
        return *found;
    }
    std::string message = "no text \"" + std::string(exact) + "\" (#" + std::to_string(nth) + ") among:\n";
    for (const std::string& line : read().lines()) {
        message += "  " + line + "\n";
    }
    throw std::runtime_error(message);
}

// In one long frame the last click gets too old to be the first of a double click.
void Offscreen::pause()
{
    ImGui::SetCurrentContext(m_context);
    ImGuiIO& io = ImGui::GetIO();
    io.DeltaTime = io.MouseDoubleClickTime * 2;
    const std::exception_ptr thrown = run([this] { frame(); });
    io.DeltaTime = kFrameTime;
    if (thrown) {
        std::rethrow_exception(thrown);
    }
}

void Offscreen::moveTo(ImVec2 point)
{
    ImGui::SetCurrentContext(m_context);
    feedPosition(point);
    frames(kSettleFrames);
}

void Offscreen::press(EButton button)
{
    ImGui::SetCurrentContext(m_context);
    feedButton(button, true);
    frames(kSettleFrames);
}

void Offscreen::release(EButton button)
{
    ImGui::SetCurrentContext(m_context);
    feedButton(button, false);
    frames(kSettleFrames);
}

void Offscreen::click(ImVec2 point, EButton button)
{
    moveTo(point);
    pause();
    press(button);
    release(button);
}

void Offscreen::doubleClick(ImVec2 point)
{
    click(point);
    press();
    release();
}

void Offscreen::drag(ImVec2 from, ImVec2 to)
{
    moveTo(from);
    pause();
    press();
    moveTo(ImVec2((from.x + to.x) / 2, (from.y + to.y) / 2));
    moveTo(to);
    release();
}

void Offscreen::wheel(float dx, float dy)
{
    ImGui::SetCurrentContext(m_context);
    feedWheel(dx, dy);
    frames(kSettleFrames);
}

// A box is as wide as high and stands next to its caption, with a gap of the style's.
Rect Offscreen::box(std::string_view caption, std::size_t nth)
{
    const Text& label = text(caption, nth);
    const float reach = ImGui::GetStyle().ItemInnerSpacing.x + ImGui::GetStyle().ItemSpacing.x;
    for (const Rect& rect : read().rects) {
        const bool isSquare = std::fabs(rect.width() - rect.height()) < 1;
        const float gap = label.min.x - rect.max.x;
        if (isSquare && gap >= 0 && gap <= reach && rect.contains(ImVec2(rect.min.x, label.center().y))) {
            return rect;
        }
    }
    throw std::runtime_error("no check box left of \"" + std::string(caption) + "\"");
}

bool Offscreen::ticked(std::string_view caption, std::size_t nth)
{
    const Rect frame = box(caption, nth);
    for (const Rect& mark : read().marks) {
        if (frame.contains(mark.center()) && sameColor(mark.color, ImGui::GetColorU32(ImGuiCol_CheckMark))) {
            return true;
        }
    }
    return false;
}

std::string Offscreen::clipboard()
{
    ImGui::SetCurrentContext(m_context);
    const char* copied = ImGui::GetClipboardText();
    return copied ? copied : "";
}

} // namespace test
