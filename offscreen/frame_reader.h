#pragma once

// Reads back from ImGui's draw data what a person would see in a frame: the texts with place and colour, and
// the filled rectangles. Nothing here knows which widgets drew them.
//
// Limits: texts are known by the glyphs of the default font at its size and scale; a glyph counts as seen
// when its centre is inside the clip rectangle and the display; that a window hides another isn't taken into
// account.

#include <imgui.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace offscreen {

/// A filled area, cut to what its clip rectangle lets through.
struct Rect {
    ImVec2 min, max;
    ImU32 color;
    ImVec2 middle = center(); ///< of its corners: an arrow has more of them at its back

    ImVec2 center() const { return {(min.x + max.x) / 2, (min.y + max.y) / 2}; }
    ImVec2 size() const { return {max.x - min.x, max.y - min.y}; }
    bool contains(ImVec2 p) const { return p.x >= min.x && p.x < max.x && p.y >= min.y && p.y < max.y; }
};

/// A run of glyphs on one line. Spaces leave no trace in the draw data: one or two between glyphs are told by
/// the distance, a wider gap starts a new Text, and those at the ends are lost. Columns never share a Text.
struct Text {
    std::string text; ///< UTF-8
    ImVec2 min, max;  ///< as wide as the pen went, as high as the font
    ImU32 color;
    std::string window; ///< that drew it
    std::size_t line;   ///< its index in Frame::lines(); texts side by side in one window share a line

    ImVec2 center() const { return {(min.x + max.x) / 2, (min.y + max.y) / 2}; }
};

struct Frame {
    /// As one reads: windows from back to front, lines downwards, from left to right.
    std::vector<Text> texts;
    std::vector<Rect> rects; ///< in the order of drawing, rounded ones included
    std::vector<Rect> marks; ///< bounds of all other shapes: arrows, check marks, borders, lines

    /// The nth text of that wording, null if there are fewer.
    const Text* find(std::string_view exact, std::size_t nth = 0) const;
    const Text* findContaining(std::string_view part) const;
    std::vector<Text> findAll(std::string_view exact) const;
    bool contains(std::string_view part) const { return findContaining(part) != nullptr; }
    std::vector<Text> textsOnLineOf(const Text& text) const;
    std::vector<std::string> lines(std::string_view separator = " | ") const;
    std::vector<Rect> rectsOf(ImU32 color) const;
    std::vector<Rect> rectsAt(ImVec2 point) const;
};

/// Reads a frame of the current context; to be called between its Render and the next NewFrame.
Frame readFrame(const ImDrawData& data);

} // namespace offscreen
