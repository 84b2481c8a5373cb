// Reads back from ImGui's draw data what a person would see in the frame: the texts, where they stand and in
// which colour, and the filled rectangles. Nothing here knows which widgets drew them.
//
// Limits: texts are known by the glyphs of the default font at its normal size; a glyph counts as seen when
// its centre is inside the clip rectangle and the display; windows that hide others are not taken into
// account.
#pragma once

#include <imgui.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace test {

// A filled area, cut to what its clip rectangle lets through.
struct Rect {
    ImVec2 min, max;
    ImU32 color;

    ImVec2 center() const { return {(min.x + max.x) / 2, (min.y + max.y) / 2}; }
    float width() const { return max.x - min.x; }
    float height() const { return max.y - min.y; }
    bool contains(ImVec2 point) const
    {
        return point.x >= min.x && point.x < max.x && point.y >= min.y && point.y < max.y;
    }
};

// A run of glyphs on one line. Spaces leave no trace in the draw data: one or two between glyphs are told by
// the distance, a wider gap starts a new Text, and those at the ends are lost. Texts in different columns are
// always different Texts.
struct Text {
    std::string text; // UTF-8
    ImVec2 min, max;  // from the first glyph's origin to behind the last one, the font's full height
    ImU32 color;
    std::string window; // name of the window that drew it
    int line;           // texts with the same number stand side by side in one window

    ImVec2 center() const { return {(min.x + max.x) / 2, (min.y + max.y) / 2}; }
};

// The pointers that the queries give live as long as the Frame.
struct Frame {
    std::vector<Text> texts; // as one reads: windows from back to front, lines downwards, from left to right
    std::vector<Rect> rects; // in the order of drawing, rounded ones included
    std::vector<Rect> marks; // bounds of all other solid shapes: arrows, check marks, borders, lines

    const Text* find(std::string_view exact, std::size_t nth = 0) const;
    const Text* findContaining(std::string_view part) const;
    std::vector<const Text*> findAll(std::string_view exact) const;
    bool contains(std::string_view part) const { return findContaining(part) != nullptr; }
    std::vector<const Text*> textsOnLineOf(const Text& text) const;
    std::vector<std::string> lines(std::string_view separator = " | ") const;
    std::vector<Rect> rectsOf(ImU32 color) const;
    std::vector<Rect> rectsAt(ImVec2 point) const; // from back to front
};

// Reads a frame of the current context; to be called between its Render and the next NewFrame.
Frame readFrame(const ImDrawData& data);

} // namespace test
