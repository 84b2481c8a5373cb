#ifndef IMGUI_DEFINE_MATH_OPERATORS
#define IMGUI_DEFINE_MATH_OPERATORS
#endif
#include "frame_reader.h"

#include <imgui_internal.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <optional>

namespace offscreen {
namespace {

/// ImGui draws each shape (a glyph, a rectangle, a stroke) as triangles over vertices of its own, so shapes
/// come apart where triangles stop sharing vertices. Around an antialiased shape runs a fringe of transparent
/// vertices, half a pixel outside of the true edge, as the opaque ones are half a pixel inside.
struct Shape {
    ImRect opaque{FLT_MAX, FLT_MAX, -FLT_MAX, -FLT_MAX};
    ImRect all = opaque;
    ImRect uv = opaque;
    ImU32 color = 0;
    ImVec2 sum{0, 0}; ///< of the opaque corners of its triangles
    float corners = 0;
    float area = 0; ///< of the opaque triangles, in square pixels
};

void addTriangle(Shape& shape, const ImDrawVert& a, const ImDrawVert& b, const ImDrawVert& c)
{
    int opaqueCorners = 0;
    for (const ImDrawVert* corner : {&a, &b, &c}) {
        shape.all.Add(corner->pos);
        shape.uv.Add(corner->uv);
        if (corner->col & IM_COL32_A_MASK) {
            shape.opaque.Add(corner->pos);
            shape.color = corner->col;
            shape.sum += corner->pos;
            ++opaqueCorners;
        }
    }
    shape.corners += static_cast<float>(opaqueCorners);
    shape.area += opaqueCorners == 3 ? std::fabs(ImTriangleArea(a.pos, b.pos, c.pos)) : 0;
}

std::vector<Shape> shapesOf(const ImDrawList& list, const ImDrawCmd& command)
{
    std::vector<Shape> shapes;
    const ImDrawVert* vertices = list.VtxBuffer.Data + command.VtxOffset;
    const ImDrawIdx* index = list.IdxBuffer.Data + command.IdxOffset;
    const ImDrawIdx* end = index + command.ElemCount;
    for (int last = -1; index != end; index += 3) {
        const auto [lowest, highest] = std::minmax({index[0], index[1], index[2]});
        if (lowest > last)
            shapes.emplace_back();
        last = std::max<int>(last, highest);
        addTriangle(shapes.back(), vertices[index[0]], vertices[index[1]], vertices[index[2]]);
    }
    return shapes;
}

#ifdef IMGUI_HAS_TEXTURES
using GlyphSource = ImFontBaked;
GlyphSource& glyphsOf(ImFont& font)
{
    const ImGuiStyle& style = ImGui::GetStyle();
    return *font.GetFontBaked(style.FontSizeBase * style.FontScaleMain);
}
float heightOf(const GlyphSource& source)
{
    return source.Size;
}
#else
using GlyphSource = ImFont;
GlyphSource& glyphsOf(ImFont& font)
{
    return font;
}
float heightOf(const GlyphSource& source)
{
    return source.FontSize;
}
#endif

/// Reads one draw list after the other into the frame.
class Reader {
public:
    Reader(Frame& frame, const ImDrawData& data)
        : m_frame(frame),
          m_glyphs(glyphsOf(*ImGui::GetIO().Fonts->Fonts[0])),
          m_display(data.DisplayPos, data.DisplayPos + data.DisplaySize)
    {
    }

    void read(const ImDrawList& list)
    {
        const std::size_t first = m_frame.texts.size();
        m_window = list._OwnerName ? list._OwnerName : "";
        for (const ImDrawCmd& command : list.CmdBuffer)
            if (!command.UserCallback)
                read(list, command);
        sortIntoLines(m_frame.texts.begin() + static_cast<std::ptrdiff_t>(first));
    }

private:
    /// A text never runs on into the next command: columns differ by their clip rectangle.
    void read(const ImDrawList& list, const ImDrawCmd& command)
    {
        m_clip = ImRect(command.ClipRect);
        m_clip.ClipWith(m_display);
        m_runIsOpen = false;
        for (const Shape& shape : shapesOf(list, command))
            if (const ImFontGlyph* glyph = glyphAt(shape.uv.GetCenter()))
                readGlyph(shape, *glyph);
            else if (shape.color)
                readSolid(shape);
    }

    /// The atlas keeps its glyphs apart, so the middle of a quad tells the glyph, even where ImGui cut the
    /// quad.
    const ImFontGlyph* glyphAt(ImVec2 uv) const
    {
        const auto found =
            std::find_if(m_glyphs.Glyphs.begin(), m_glyphs.Glyphs.end(), [uv](const auto& glyph) {
                return glyph.Visible && ImRect(glyph.U0, glyph.V0, glyph.U1, glyph.V1).Contains(uv);
            });
        return found == m_glyphs.Glyphs.end() ? nullptr : found;
    }

    /// The quad may show a part of the glyph: the place of the whole follows from its texture coordinates.
    void readGlyph(const Shape& quad, const ImFontGlyph& glyph)
    {
        const ImVec2 pixels = quad.all.GetSize() / quad.uv.GetSize();
        const ImVec2 min = quad.all.Min + (ImVec2(glyph.U0, glyph.V0) - quad.uv.Min) * pixels;
        const ImVec2 max = quad.all.Min + (ImVec2(glyph.U1, glyph.V1) - quad.uv.Min) * pixels;
        const ImVec2 center = (min + max) * 0.5f;
        if (m_clip.Contains(center) && quad.all.Contains(center)) {
            const float scale = (max.y - min.y) / (glyph.Y1 - glyph.Y0);
            append(glyph, min - ImVec2(glyph.X0, glyph.Y0) * scale, scale, quad.color);
        }
    }

    void append(const ImFontGlyph& glyph, ImVec2 pen, float scale, ImU32 color)
    {
        const std::optional<int> spaces = spacesUpTo(pen, scale, color);
        if (!spaces) {
            m_frame.texts.push_back(
                {"", pen, pen + ImVec2(0, heightOf(m_glyphs) * scale), color, m_window, 0});
            m_runIsOpen = true;
        }
        char utf8[5] = {};
        ImTextCharToUtf8(utf8, glyph.Codepoint);
        Text& run = m_frame.texts.back();
        run.text.append(static_cast<std::size_t>(spaces.value_or(0)), ' ').append(utf8);
        run.max.x = pen.x + glyph.AdvanceX * scale;
    }

    /// The spaces between the open run and the pen, or nothing if the pen stands somewhere else.
    std::optional<int> spacesUpTo(ImVec2 pen, float scale, ImU32 color) const
    {
        constexpr float kRounding = 0.6f; // pixels
        if (!m_runIsOpen || m_frame.texts.back().color != color)
            return {};
        const float space = m_glyphs.GetCharAdvance(' ') * scale;
        const ImVec2 step = pen - ImVec2(m_frame.texts.back().max.x, m_frame.texts.back().min.y);
        const int spaces = static_cast<int>(std::lround(step.x / space));
        const float off = std::fabs(step.x - space * static_cast<float>(spaces)) + std::fabs(step.y);
        return off < kRounding && spaces >= 0 && spaces <= 2 ? std::optional(spaces) : std::nullopt;
    }

    void readSolid(const Shape& shape)
    {
        constexpr float kFilled = 0.85f; // a rounded rectangle fills its bounds more than this, a disc 0.79
        const ImVec2 size = shape.opaque.GetSize();
        const bool isRect = shape.uv.GetSize().x <= 0 && shape.area > kFilled * size.x * size.y;
        ImRect seen((shape.opaque.Min + shape.all.Min) * 0.5f, (shape.opaque.Max + shape.all.Max) * 0.5f);
        seen.ClipWith(m_clip);
        if (seen.GetWidth() > 0 && seen.GetHeight() > 0)
            (isRect ? m_frame.rects : m_frame.marks)
                .push_back({seen.Min, seen.Max, shape.color, shape.sum / shape.corners});
    }

    /// Texts that overlap by more than half of their height share a line: frames shift theirs by some pixels.
    void sortIntoLines(std::vector<Text>::iterator begin)
    {
        const auto end = m_frame.texts.end();
        std::sort(begin, end, [](const Text& a, const Text& b) { return a.min.y < b.min.y; });
        float lineCenter = -FLT_MAX;
        for (auto text = begin; text != end; ++text) {
            if (text->min.y >= lineCenter) {
                ++m_lines;
                lineCenter = text->center().y;
            }
            text->line = m_lines - 1;
        }
        std::sort(begin, end, [](const Text& a, const Text& b) {
            return a.line != b.line ? a.line < b.line : a.min.x < b.min.x;
        });
    }

    Frame& m_frame;
    GlyphSource& m_glyphs;
    ImRect m_display;
    ImRect m_clip;
    std::string m_window;
    bool m_runIsOpen = false; ///< may the next glyph continue the last text?
    std::size_t m_lines = 0;
};

template<class T, class Wanted>
std::vector<T> select(const std::vector<T>& from, Wanted wanted)
{
    std::vector<T> selected;
    std::copy_if(from.begin(), from.end(), std::back_inserter(selected), wanted);
    return selected;
}

} // namespace

Frame readFrame(const ImDrawData& data)
{
    Frame frame;
    Reader reader(frame, data);
    for (int i = 0; i < data.CmdListsCount; ++i)
        reader.read(*data.CmdLists[i]);
    return frame;
}

const Text* Frame::find(std::string_view exact, std::size_t nth) const
{
    for (const Text& text : texts)
        if (text.text == exact && nth-- == 0)
            return &text;
    return nullptr;
}

const Text* Frame::findContaining(std::string_view part) const
{
    for (const Text& text : texts)
        if (text.text.find(part) != std::string::npos)
            return &text;
    return nullptr;
}

std::vector<Text> Frame::findAll(std::string_view exact) const
{
    return select(texts, [exact](const Text& text) { return text.text == exact; });
}

std::vector<Text> Frame::textsOnLineOf(const Text& text) const
{
    return select(texts, [&text](const Text& other) { return other.line == text.line; });
}

std::vector<std::string> Frame::lines(std::string_view separator) const
{
    std::vector<std::string> result;
    for (const Text& text : texts) {
        result.resize(text.line + 1);
        std::string& line = result.back();
        line.append(line.empty() ? "" : separator).append(text.text);
    }
    return result;
}

std::vector<Rect> Frame::rectsOf(ImU32 color) const
{
    return select(rects, [color](const Rect& rect) { return rect.color == color; });
}

std::vector<Rect> Frame::rectsAt(ImVec2 point) const
{
    return select(rects, [point](const Rect& rect) { return rect.contains(point); });
}

} // namespace offscreen
