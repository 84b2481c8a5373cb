#include "widgets.h"

#include "layout.h"
#include "text_lines.h"

#include <imgui_internal.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace statistics::widgets {

namespace {

const char* begin(const std::string& text)
{
    return text.data();
}

const char* end(const std::string& text)
{
    return text.data() + text.size();
}

/// ImGui would show less than the text, or nothing that tells it apart.
bool isOddLabel(const std::string& text)
{
    return text.empty() || text.find("##") != std::string::npos || text.find('\0') != std::string::npos;
}

ImVec2 sizeOf(const std::string& text)
{
    return ImGui::CalcTextSize(begin(text), end(text), false);
}

ImRect lastItemRect()
{
    return {ImGui::GetItemRectMin(), ImGui::GetItemRectMax()};
}

/// False for an item out of view, for which ImGui's own widgets draw nothing either.
bool isLastItemShown()
{
    return ImGui::IsItemVisible() || ImGui::GetCurrentContext()->LogEnabled;
}

void drawText(const std::string& text, const ImVec2& position)
{
    if (isLastItemShown())
        ImGui::RenderText(position, begin(text), end(text), false);
}

void drawClipped(const std::string& text, const ImVec2& min, const ImVec2& max, const ImVec2& align,
                 const ImRect& clip)
{
    if (!isLastItemShown())
        return;
    const ImVec2 size = sizeOf(text);
    if (ImGui::GetCurrentContext()->LogEnabled)
        ImGui::LogRenderedText(&min, begin(text), end(text));
    ImGui::RenderTextClippedEx(ImGui::GetWindowDrawList(), min, max, begin(text), end(text), &size, align,
                               &clip);
}

/// The item drawn last may be covered by others in the same place that want the mouse, too.
bool overlappedSelectable(bool selected, const ImVec2& size)
{
#if IMGUI_VERSION_NUM >= 18970
    ImGui::SetNextItemAllowOverlap();
    return ImGui::Selectable("##row", selected, ImGuiSelectableFlags_SpanAllColumns, size);
#else
    const bool pressed = ImGui::Selectable("##row", selected, ImGuiSelectableFlags_SpanAllColumns, size);
    ImGui::SetItemAllowOverlap();
    return pressed;
#endif
}

bool nextWindowHasSize()
{
    const ImGuiNextWindowData& data = ImGui::GetCurrentContext()->NextWindowData;
#if IMGUI_VERSION_NUM >= 19194
    return (data.HasFlags & ImGuiNextWindowDataFlags_HasSize) != 0;
#else
    return (data.Flags & ImGuiNextWindowDataFlags_HasSize) != 0;
#endif
}

/// What it gives must be heeded: without a tooltip there is none to end.
bool beginTooltip()
{
#if IMGUI_VERSION_NUM >= 18970
    return ImGui::BeginTooltip();
#else
    ImGui::BeginTooltip();
    return true;
#endif
}

} // namespace

TooltipScope::TooltipScope(float width) : open(beginTooltip())
{
    if (open)
        ImGui::PushTextWrapPos(layout::scaled(width));
}

TooltipScope::~TooltipScope()
{
    if (!open)
        return;
    ImGui::PopTextWrapPos();
    ImGui::EndTooltip();
}

bool isInsideFrame()
{
    return ImGui::GetCurrentContext()->WithinFrameScope;
}

void suggestNextWindowSize(const ImVec2& size)
{
    if (!nextWindowHasSize())
        ImGui::SetNextWindowSize(size, ImGuiCond_FirstUseEver);
}

void text(const std::string& text)
{
    ImGui::TextUnformatted(begin(text), end(text));
}

void sameLineFrom(float column)
{
    const float place = std::floor(layout::scaled(column));
    ImGui::SameLine(0.0f, 0.0f);
    if (ImGui::GetCursorPosX() > place)
        ImGui::SameLine(0.0f, -1.0f);
    else
        ImGui::SameLine(place, -1.0f);
}

namespace {

/// A label that shows nothing: a blank, below as many line breaks as `text` has.
class BlankLabel {
public:
    explicit BlankLabel(const std::string& text)
    {
        constexpr const char* kBlank = " ##blank";
        const std::size_t breaks = std::min<std::size_t>(lineCount(text) - 1, m_text.size() - 9);
        std::fill_n(m_text.begin(), breaks, '\n');
        std::copy_n(kBlank, 9, m_text.begin() + static_cast<std::ptrdiff_t>(breaks));
    }
    const char* text() const { return m_text.data(); }

private:
    std::array<char, 64> m_text;
};

/// ImGui's own check box with a blank in place of the caption and as much space before it as the caption is
/// wide, so that box, gap and caption take the mouse as one.
bool wideCheckBox(const std::string& caption, bool* value)
{
    const BlankLabel label(caption);
    ImVec2 spacing = ImGui::GetStyle().ItemInnerSpacing;
    spacing.x += sizeOf(caption).x - sizeOf(" ").x;
    const StyleVarScope space(ImGuiStyleVar_ItemInnerSpacing, spacing);
    return ImGui::Checkbox(label.text(), value);
}

} // namespace

bool checkBox(const std::string& caption, bool* value)
{
    if (!isOddLabel(caption))
        return ImGui::Checkbox(caption.c_str(), value);
    if (caption.empty())
        return ImGui::Checkbox("##box", value);
    const bool changed = wideCheckBox(caption, value);
    const ImGuiStyle& style = ImGui::GetStyle();
    const ImVec2 corner = ImGui::GetItemRectMin();
    drawText(caption, ImVec2(corner.x + ImGui::GetFrameHeight() + style.ItemInnerSpacing.x,
                             corner.y + style.FramePadding.y));
    return changed;
}

namespace {

bool isPressed(ImGuiKey key)
{
#if IMGUI_VERSION_NUM >= 18700
    return ImGui::IsKeyPressed(key, false);
#else
    return ImGui::IsKeyPressed(ImGui::GetKeyIndex(key), false);
#endif
}

#if IMGUI_VERSION_NUM >= 18700
bool isMenuKeyPressed()
{
    return isPressed(ImGuiKey_Menu);
}
constexpr ImGuiKey kKeypadEnter = ImGuiKey_KeypadEnter;
#else
/// That release doesn't know the key.
bool isMenuKeyPressed()
{
    return false;
}
constexpr ImGuiKey kKeypadEnter = ImGuiKey_KeyPadEnter;
#endif

} // namespace

bool isEscapePressed()
{
    return isPressed(ImGuiKey_Escape);
}

ERowKey pressedRowKey()
{
    const ImGuiIO& io = ImGui::GetIO();
    if (!io.NavVisible || !ImGui::IsItemFocused())
        return ERowKey::None;
    if (isPressed(ImGuiKey_Enter) || isPressed(kKeypadEnter))
        return io.KeyShift ? ERowKey::Menu : ERowKey::Act;
    return isMenuKeyPressed() ? ERowKey::Menu : ERowKey::None;
}

bool menuItem(const std::string& caption)
{
    // ImGui 1.86 gives each entry one line.
    if (!isOddLabel(caption) && lineCount(caption) == 1)
        return ImGui::MenuItem(caption.c_str(), nullptr, false, true);
    constexpr int kLikeMenuItem = ImGuiSelectableFlags_SelectOnRelease | ImGuiSelectableFlags_SpanAvailWidth;
    const ImVec2 position = ImGui::GetCursorScreenPos();
    const bool pressed = ImGui::Selectable("##entry", false, kLikeMenuItem, sizeOf(caption));
    drawText(caption, position);
    return pressed;
}

float columnWidthFor(const std::string& text)
{
    constexpr float kCut = 2.0f; // pixels that ImGui takes from the column's end
    return (sizeOf(text).x + ImGui::GetStyle().ItemSpacing.x + kCut) / layout::scaled(1.0f);
}

HeaderScope::HeaderScope() : m_spacing(ImGuiStyleVar_ItemSpacing, layout::scaled(layout::kHeaderSpacing)) {}

namespace {

/// At the right end of the button, with the measures of ImGui's own tables; gives back where it begins.
/// Nothing, and the button's end, where the button is too narrow.
float drawSortArrow(const ImRect& button, ESortArrow arrow)
{
    constexpr float kScale = 0.65f; // of the font
    const float width = std::floor(ImGui::GetFontSize() * kScale + ImGui::GetStyle().FramePadding.x);
    const float left = button.Max.x - width - ImGui::GetStyle().FramePadding.x;
    if (arrow == ESortArrow::None || left < button.Min.x)
        return button.Max.x;
    const ImVec2 corner(left, std::floor(button.GetCenter().y - ImGui::GetFontSize() * kScale / 2.0f));
    if (isLastItemShown())
        ImGui::RenderArrow(ImGui::GetWindowDrawList(), corner, ImGui::GetColorU32(ImGuiCol_Text),
                           arrow == ESortArrow::Up ? ImGuiDir_Up : ImGuiDir_Down, kScale);
    return left;
}

} // namespace

bool headerButton(const std::string& caption, ESortArrow arrow)
{
    const ImGuiStyle& style = ImGui::GetStyle();
    const ImVec2 size(std::max(ImGui::GetColumnWidth(-1) - layout::scaled(layout::kHeaderGap), 1.0f),
                      layout::scaled(layout::kHeaderHeight));
    const bool pressed = ImGui::Button("##header", size);
    const ImRect button = lastItemRect();
    // The height is the layout's: padding gives way to the text.
    const float padding = std::min(style.FramePadding.y, (size.y - ImGui::GetFontSize()) / 2.0f);
    ImRect inside = button;
    inside.Expand(ImVec2(-style.FramePadding.x, -padding));
    ImRect clip = button;
    clip.Max.x = drawSortArrow(button, arrow);
    inside.Max.x = std::min(inside.Max.x, clip.Max.x);
    drawClipped(caption, inside.Min, inside.Max, style.ButtonTextAlign, clip);
    return pressed;
}

bool rowSelectable(const std::string& text, bool selected)
{
    ImVec2 position = ImGui::GetCursorScreenPos();
    position.y += ImGui::GetCurrentWindow()->DC.CurrLineTextBaseOffset;
    const bool tall = lineCount(text) > 1;
    const bool pressed = overlappedSelectable(selected, ImVec2(0.0f, tall ? sizeOf(text).y : 0.0f));
    drawText(text, position);
    return pressed;
}

void progressBar(float fraction, const std::string& overlay)
{
    const float filled = fraction > 0.0f ? std::min(fraction, 1.0f) : 0.0f;
    ImGui::ProgressBar(filled, ImVec2(0.0f, 0.0f), "");
    if (overlay.empty())
        return;
    const ImGuiStyle& style = ImGui::GetStyle();
    const ImRect bar = lastItemRect();
    const float rightmost = bar.Max.x - sizeOf(overlay).x - style.ItemInnerSpacing.x;
    const float behindFill = bar.Min.x + filled * bar.GetWidth() + style.ItemSpacing.x;
    const float left = std::max(std::min(behindFill, rightmost), bar.Min.x);
    drawClipped(overlay, ImVec2(left, bar.Min.y), bar.Max, ImVec2(0.0f, 0.5f), bar);
}

} // namespace statistics::widgets
