#include "host.h"

#include "balance.h"

#include <imgui_internal.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <numeric>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace offscreen {
namespace {

/// ImGui shows a popup in the second frame after it was opened and knows one frame late what is hovered.
constexpr int kSettleFrames = 2;

#if IMGUI_VERSION_NUM >= 18700
void feedPosition(ImGuiIO& io, ImVec2 point)
{
    io.AddMousePosEvent(point.x, point.y);
}
void feedButton(ImGuiIO& io, EButton button, bool down)
{
    io.AddMouseButtonEvent(button, down);
}
void feedWheel(ImGuiIO& io, float dx, float dy)
{
    io.AddMouseWheelEvent(dx, dy);
}
void feedKey(ImGuiIO& io, ImGuiKey key, bool down)
{
    io.AddKeyEvent(key, down);
}
void feedModifiers(ImGuiIO& io, bool shift, bool control)
{
#if IMGUI_VERSION_NUM >= 18900
    io.AddKeyEvent(ImGuiMod_Shift, shift);
    io.AddKeyEvent(ImGuiMod_Ctrl, control);
#else
    io.AddKeyEvent(ImGuiKey_ModShift, shift);
    io.AddKeyEvent(ImGuiKey_ModCtrl, control);
#endif
}
#else
void feedPosition(ImGuiIO& io, ImVec2 point)
{
    io.MousePos = point;
}
void feedButton(ImGuiIO& io, EButton button, bool down)
{
    io.MouseDown[button] = down;
}
void feedWheel(ImGuiIO& io, float dx, float dy)
{
    io.MouseWheelH = dx;
    io.MouseWheel = dy;
}
void feedKey(ImGuiIO& io, ImGuiKey key, bool down)
{
    std::iota(std::begin(io.KeyMap), std::end(io.KeyMap), 0);
    io.KeysDown[key] = down;
}
void feedModifiers(ImGuiIO& io, bool shift, bool control)
{
    io.KeyShift = shift;
    io.KeyCtrl = control;
}
#endif

} // namespace

Host::Host(ImVec2 displaySize) : m_context(displaySize), m_scene([] {}) {}

void Host::frame()
{
    m_read.reset();
    m_context.beginFrame(std::exchange(m_nextFrameTime, Context::kFrameTime));
    const OpenScopes before = openScopes();
    const auto finish = [&] {
        m_imbalance = describeImbalance(before, openScopes());
        closeOpenScopes();
        m_context.endFrame();
    };
    try {
        m_scene();
    } catch (...) {
        finish();
        feedButton(io(), EButtonLeft, false);
        feedButton(io(), EButtonRight, false);
        throw;
    }
    finish();
}

void Host::frames(int count)
{
    for (int i = 0; i < count; ++i)
        frame();
}

const Frame& Host::read()
{
    m_context.makeCurrent();
    if (!m_read) {
        const ImDrawData* data = ImGui::GetDrawData();
        m_read = data ? readFrame(*data) : Frame();
    }
    return *m_read;
}

const Text& Host::text(std::string_view exact, std::size_t nth)
{
    const Text* found = read().find(exact, nth);
    if (!found)
        reportMissing("text", exact, nth);
    return *found;
}

void Host::moveTo(ImVec2 point)
{
    feedPosition(io(), point);
    frames(kSettleFrames);
}

void Host::pressOrRelease(EButton button, bool down)
{
    feedButton(io(), button, down);
    frames(kSettleFrames);
}

void Host::wheel(float dx, float dy)
{
    feedWheel(io(), dx, dy);
    frames(kSettleFrames);
}

void Host::pressKey(ImGuiKey key, bool shift, bool control)
{
    io().ConfigFlags |= ImGuiConfigFlags_NavEnableKeyboard;
    const auto feed = [&](bool down) {
        feedModifiers(io(), shift && down, control && down);
        feedKey(io(), key, down);
    };
    feed(true);
    try {
        frames(kSettleFrames);
    } catch (...) {
        feed(false);
        throw;
    }
    feed(false);
    frames(kSettleFrames);
}

void Host::walk(ImGuiKey key, std::string_view text)
{
    const auto arrived = [&] {
        ImGuiWindow* window = ImGui::GetCurrentContext()->NavWindow;
        const Text* found = read().find(text);
        return found && window &&
               ImGui::WindowRectRelToAbs(window, window->NavRectRel[0]).Contains(found->center());
    };
    constexpr int kMostSteps = 40;
    for (int step = 0; !arrived(); ++step) {
        if (step == kMostSteps)
            reportMissing("way by keys to", text);
        pressKey(key);
    }
}

void Host::setFontScale(float scale)
{
#ifdef IMGUI_HAS_TEXTURES
    io();
    ImGui::GetStyle().FontScaleMain = scale;
#else
    io().FontGlobalScale = scale;
#endif
}

void Host::click(ImVec2 point, EButton button)
{
    moveTo(point);
    pause();
    press(button);
    release(button);
}

/// In one long frame the last click gets too old to be the first half of a double click.
void Host::pause()
{
    m_nextFrameTime = 2 * io().MouseDoubleClickTime;
    frame();
}

void Host::doubleClick(ImVec2 point)
{
    click(point);
    press();
    release();
}

void Host::drag(ImVec2 from, ImVec2 to)
{
    moveTo(from);
    pause();
    press();
    moveTo(ImVec2((from.x + to.x) / 2, (from.y + to.y) / 2));
    moveTo(to);
    release();
}

Rect Host::window(std::string_view name)
{
    m_context.makeCurrent();
    const ImGuiWindow* found = ImGui::FindWindowByName(std::string(name).c_str());
    if (!found || !found->WasActive)
        reportMissing("window", name);
    return {found->Pos, ImVec2(found->Pos.x + found->Size.x, found->Pos.y + found->Size.y), 0};
}

void Host::clickClose(std::string_view windowName)
{
    const Rect frame = window(windowName);
    const ImVec2 padding = ImGui::GetStyle().FramePadding;
    const float half = ImGui::GetFontSize() / 2;
    click(ImVec2(frame.max.x - padding.x - half, frame.min.y + padding.y + half));
}

/// A box is as wide as high and stands left of its caption at the distance of the style.
Rect Host::box(std::string_view caption, std::size_t nth)
{
    const Text& label = text(caption, nth);
    const float reach = ImGui::GetStyle().ItemInnerSpacing.x + ImGui::GetStyle().ItemSpacing.x;
    for (const Rect& rect : read().rects) {
        const float gap = label.min.x - rect.max.x;
        if (std::fabs(rect.size().x - rect.size().y) < 1 && gap >= 0 && gap <= reach &&
            rect.contains(ImVec2(rect.min.x, label.center().y)))
            return rect;
    }
    reportMissing("check box", caption, nth);
}

bool Host::ticked(std::string_view caption, std::size_t nth)
{
    const Rect frame = box(caption, nth);
    const ImU32 color = ImGui::GetColorU32(ImGuiCol_CheckMark);
    return std::any_of(read().marks.begin(), read().marks.end(), [&](const Rect& mark) {
        return mark.color == color && frame.contains(mark.center());
    });
}

void Host::reportMissing(std::string_view kind, std::string_view name, std::size_t nth)
{
    std::ostringstream message;
    message << "no " << kind << " \"" << name << "\" #" << nth << " in the frame, which shows:\n";
    for (const std::string& line : read().lines())
        message << "  " << line.substr(0, 200) << '\n';
    throw std::runtime_error(message.str());
}

std::string Host::clipboard()
{
    m_context.makeCurrent();
    const char* copied = ImGui::GetClipboardText();
    return copied ? copied : "";
}

} // namespace offscreen
