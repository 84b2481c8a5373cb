#ifndef IMGUI_DEFINE_MATH_OPERATORS
#define IMGUI_DEFINE_MATH_OPERATORS
#endif
#include "frame_reader.h"

#include <imgui_internal.h>

#include <algorithm>
#include <cmath>
#include <functional>

namespace test {
namespace {

// ImGui draws each shape (a glyph, a rectangle, a stroke) as triangles over vertices of its own, so the
// shapes come apart where the triangles stop sharing vertices. Antialiased shapes are surrounded by a fringe
// of transparent vertices, half a pixel outside of the true edge as the opaque ones are half a pixel inside.
struct Shape {
    ImRect opaque, all, uv;
    ImU32 color;
    float area; // of the opaque triangles, square pixels
};

struct PlacedGlyph {
    unsigned codepoint;
    ImRect bounds;
    ImVec2 origin; // where the pen stands: left end, top of the line
    float advance;
    float scale; // of the text against the font's own size
};

#ifdef IMGUI_HAS_TEXTURES
using GlyphSource = ImFontBaked;
GlyphSource& defaultGlyphs()
{
    return *ImGui::GetIO().Fonts->Fonts[0]->GetFontBaked(ImGui::GetStyle().FontSizeBase);
}
float fontHeight(const GlyphSource& source)
{
    return source.Size;
}
#else
using GlyphSource = ImFont;
GlyphSource& defaultGlyphs()
{
    return *ImGui::GetIO().Fonts->Fonts[0];
}
float fontHeight(const GlyphSource& source)
{
    return source.FontSize;
}
#endif

bool isOpaque(const ImDrawVert& vertex)
{
    return (vertex.col & IM_COL32_A_MASK) != 0;
}

float triangleArea(ImVec2 a, ImVec2 b, ImVec2 c)
{
    return std::fabs((b.x - a.x) * (c.y - a.y) - (c.x - a.x) * (b.y - a.y)) / 2;
}

ImRect middle(const ImRect& a, const ImRect& b)
{
    return ImRect((a.Min + b.Min) * 0.5F, (a.Max + b.Max) * 0.5F);
}

void addVertex(Shape& shape, const ImDrawVert& vertex)
{
    shape.all.Add(vertex.pos);
    shape.uv.Add(vertex.uv);
    if (isOpaque(vertex)) {
        shape.opaque.Add(vertex.pos);
        shape.color = vertex.col;
    }
}

void addTriangle(Shape& shape, const ImDrawVert& a, const ImDrawVert& b, const ImDrawVert& c)
{
    for (const ImDrawVert* vertex : {&a, &b, &c}) {
        addVertex(shape, *vertex);
    }
    if (isOpaque(a) && isOpaque(b) && isOpaque(c)) {
        shape.area += triangleArea(a.pos, b.pos, c.pos);
    }
}

Shape emptyShape()
{
    const ImRect inverted(FLT_MAX, FLT_MAX, -FLT_MAX, -FLT_MAX);
    return {inverted, inverted, inverted, 0, 0.0F};
}

std::vector<Shape> shapesOf(const ImDrawList& list, const ImDrawCmd& command)
{
    std::vector<Shape> shapes;
    const ImDrawIdx* indices = list.IdxBuffer.Data + command.IdxOffset;
    const ImDrawVert* vertices = list.VtxBuffer.Data + command.VtxOffset;
    int lastOfShape = -1;
    for (unsigned i = 0; i + 3 <= command.ElemCount; i += 3) {
        const int a = indices[i];
        const int b = indices[i + 1];
        const int c = indices[i + 2];
        if (std::min({a, b, c}) > lastOfShape) {
            shapes.push_back(emptyShape());
        }
        lastOfShape = std::max({a, b, c, lastOfShape});
        addTriangle(shapes.back(), vertices[a], vertices[b], vertices[c]);
    }
    return shapes;
}

class Reader {
public:
    Reader(Frame& frame, const ImDrawData& data)
        : m_frame(frame),
          m_display(data.DisplayPos, data.DisplayPos + data.DisplaySize),
          m_glyphs(defaultGlyphs())
    {
    }

    void readList(const ImDrawList& list);

private:
    void readCommand(const ImDrawList& list, const ImDrawCmd& command);
    void readShape(const ImDrawList& list, const Shape& shape);
    void readSolid(const Shape& shape);
    void readGlyph(const ImDrawList& list, const Shape& shape, const ImFontGlyph& glyph);
    const ImFontGlyph* glyphAt(ImVec2 uv) const;
    bool continuesRun(const PlacedGlyph& glyph, ImU32 color) const;
    void append(const PlacedGlyph& glyph);
    void sortIntoLines(std::size_t first);

    Frame& m_frame;
    ImRect m_display;
    GlyphSource& m_glyphs;
    ImRect m_clip;
    bool m_runIsOpen = false;
    int m_lines = 0;
};

// The atlas keeps its glyphs apart, so the middle of a quad tells the glyph, even where ImGui cut the quad.
const ImFontGlyph* Reader::glyphAt(ImVec2 uv) const
{
    for (const ImFontGlyph* glyph = m_glyphs.Glyphs.begin(); glyph != m_glyphs.Glyphs.end(); ++glyph) {
        if (glyph->Visible && uv.x > glyph->U0 && uv.x < glyph->U1 && uv.y > glyph->V0 && uv.y < glyph->V1) {
            return glyph;
        }
    }
    return nullptr;
}

// The place of the whole glyph, from a quad that may show a part of it.
PlacedGlyph place(const Shape& shape, const ImFontGlyph& glyph)
{
    const ImVec2 pixels = shape.all.GetSize() / shape.uv.GetSize();
    const ImVec2 min = shape.all.Min + (ImVec2(glyph.U0, glyph.V0) - shape.uv.Min) * pixels;
    const ImVec2 max = shape.all.Min + (ImVec2(glyph.U1, glyph.V1) - shape.uv.Min) * pixels;
    const float scale = (max.y - min.y) / (glyph.Y1 - glyph.Y0);
    return {glyph.Codepoint, ImRect(min, max), min - ImVec2(glyph.X0, glyph.Y0) * scale,
            glyph.AdvanceX * scale, scale};
}

bool Reader::continuesRun(const PlacedGlyph& glyph, ImU32 color) const
{
    constexpr float kTolerance = 0.6F; // pixels, for positions that ImGui rounded
    if (!m_runIsOpen || m_frame.texts.back().color != color) {
        return false;
    }
    const Text& run = m_frame.texts.back();
    const float gap = glyph.origin.x - run.max.x;
    const float spaces = std::round(gap / (m_glyphs.GetCharAdvance(' ') * glyph.scale));
    const float remainder = gap - spaces * m_glyphs.GetCharAdvance(' ') * glyph.scale;
    return std::fabs(glyph.origin.y - run.min.y) < kTolerance && spaces >= 0 && spaces <= 2 &&
           std::fabs(remainder) < kTolerance;
}

void Reader::append(const PlacedGlyph& glyph)
{
    Text& run = m_frame.texts.back();
    const float spaces =
        std::round((glyph.origin.x - run.max.x) / (m_glyphs.GetCharAdvance(' ') * glyph.scale));
    char utf8[5] = {};
    ImTextCharToUtf8(utf8, glyph.codepoint);
    run.text.append(static_cast<std::size_t>(spaces), ' ').append(utf8);
    run.max.x = glyph.origin.x + glyph.advance;
}

void Reader::readGlyph(const ImDrawList& list, const Shape& shape, const ImFontGlyph& glyph)
{
    const PlacedGlyph placed = place(shape, glyph);
    const ImVec2 center = placed.bounds.GetCenter();
    if (!m_clip.Contains(center) || !shape.all.Contains(center)) {
        return;
    }
    if (!continuesRun(placed, shape.color)) {
        const ImVec2 end = placed.origin + ImVec2(0, fontHeight(m_glyphs) * placed.scale);
        m_frame.texts.push_back(
            {"", placed.origin, end, shape.color, list._OwnerName ? list._OwnerName : "", 0});
        m_runIsOpen = true;
    }
    append(placed);
}

void Reader::readSolid(const Shape& shape)
{
    constexpr float kFilled = 0.85F; // a rounded rectangle fills its bounds more than this, a disc 0.79
    ImRect bounds = middle(shape.opaque, shape.all);
    bounds.ClipWith(m_clip);
    if (bounds.GetWidth() <= 0 || bounds.GetHeight() <= 0) {
        return;
    }
    const bool textured = shape.uv.GetWidth() > 0 || shape.uv.GetHeight() > 0;
    const bool filled = shape.area > kFilled * shape.opaque.GetWidth() * shape.opaque.GetHeight();
    (filled && !textured ? m_frame.rects : m_frame.marks).push_back({bounds.Min, bounds.Max, shape.color});
}

void Reader::readShape(const ImDrawList& list, const Shape& shape)
{
    if (shape.color == 0) {
        return;
    }
    const bool isQuad = shape.uv.GetWidth() > 0 && shape.uv.GetHeight() > 0;
    const ImFontGlyph* glyph = isQuad ? glyphAt(shape.uv.GetCenter()) : nullptr;
    if (glyph) {
        readGlyph(list, shape, *glyph);
    } else {
        readSolid(shape);
    }
}

// Text never runs on from one command into the next: columns differ by their clip rectangle.
void Reader::readCommand(const ImDrawList& list, const ImDrawCmd& command)
{
    m_clip = ImRect(command.ClipRect);
    m_clip.ClipWith(m_display);
    m_runIsOpen = false;
    for (const Shape& shape : shapesOf(list, command)) {
        readShape(list, shape);
    }
}

// Texts that overlap by more than half of their height share a line; frames shift theirs by some pixels.
void Reader::sortIntoLines(std::size_t first)
{
    const auto begin = m_frame.texts.begin() + static_cast<std::ptrdiff_t>(first);
    std::sort(begin, m_frame.texts.end(), [](const Text& a, const Text& b) { return a.min.y < b.min.y; });
    float lineCenter = -FLT_MAX;
    for (auto text = begin; text != m_frame.texts.end(); ++text) {
        if (text->min.y >= lineCenter) {
            ++m_lines;
            lineCenter = text->center().y;
        }
        text->line = m_lines;
    }
    std::sort(begin, m_frame.texts.end(), [](const Text& a, const Text& b) {
        return a.line != b.line ? a.line < b.line : a.min.x < b.min.x;
    });
}

void Reader::readList(const ImDrawList& list)
{
    const std::size_t first = m_frame.texts.size();
    for (const ImDrawCmd& command : list.CmdBuffer) {
        if (!command.UserCallback) {
            readCommand(list, command);
        }
    }
    sortIntoLines(first);
}

std::vector<const Text*> select(const std::vector<Text>& texts,
                                const std::function<bool(const Text&)>& wanted)
{
    std::vector<const Text*> selected;
    for (const Text& text : texts) {
        if (wanted(text)) {
            selected.push_back(&text);
        }
    }
    return selected;
}

std::vector<Rect> select(const std::vector<Rect>& rects, const std::function<bool(const Rect&)>& wanted)
{
    std::vector<Rect> selected;
    std::copy_if(rects.begin(), rects.end(), std::back_inserter(selected), wanted);
    return selected;
}

} // namespace

Frame readFrame(const ImDrawData& data)
{
    Frame frame;
    Reader reader(frame, data);
    for (int i = 0; i < data.CmdListsCount; ++i) {
        reader.readList(*data.CmdLists[i]);
    }
    return frame;
}

const Text* Frame::find(std::string_view exact, std::size_t nth) const
{
    const std::vector<const Text*> all = findAll(exact);
    return nth < all.size() ? all[nth] : nullptr;
}

const Text* Frame::findContaining(std::string_view part) const
{
    const auto found = std::find_if(texts.begin(), texts.end(), [part](const Text& text) {
        return text.text.find(part) != std::string::npos;
    });
    return found == texts.end() ? nullptr : &*found;
}

std::vector<const Text*> Frame::findAll(std::string_view exact) const
{
    return select(texts, [exact](const Text& text) { return text.text == exact; });
}

std::vector<const Text*> Frame::textsOnLineOf(const Text& text) const
{
    return select(texts, [&text](const Text& other) { return other.line == text.line; });
}

std::vector<std::string> Frame::lines(std::string_view separator) const
{
    std::vector<std::string> result;
    int line = 0;
    for (const Text& text : texts) {
        if (text.line == line) {
            result.back().append(separator).append(text.text);
        } else {
            result.push_back(text.text);
        }
        line = text.line;
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

} // namespace test
