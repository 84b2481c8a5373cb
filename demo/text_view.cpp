#include "text_view.h"

#include "texts/shown_text.h"

#include <imgui.h>

#include <algorithm>
#include <cstddef>

namespace demo {

namespace {

constexpr std::size_t kLongestText = 2000; ///< bytes
constexpr int kMostLines = 300;
const ImVec4 kDim(0.55f, 0.62f, 0.70f, 1);

/// "Name:   value".
void showField(std::string_view line)
{
    constexpr float kValueColumn = 190; // pixels
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos) {
        showText(line);
        return;
    }
    ImGui::PushStyleColor(ImGuiCol_Text, kDim);
    showText(line.substr(0, colon));
    ImGui::PopStyleColor();
    ImGui::SameLine(kValueColumn);
    const std::size_t value = line.find_first_not_of(" \t", colon + 1);
    showWrapped(value == std::string_view::npos ? std::string_view() : line.substr(value));
}

} // namespace

void showText(std::string_view text)
{
    const std::string shown = texts::bounded(text, kLongestText);
    ImGui::TextUnformatted(shown.data(), shown.data() + shown.size());
}

void showWrapped(std::string_view text)
{
    ImGui::PushTextWrapPos(0);
    showText(text);
    ImGui::PopTextWrapPos();
}

void showDim(std::string_view text)
{
    ImGui::PushStyleColor(ImGuiCol_Text, kDim);
    showWrapped(text);
    ImGui::PopStyleColor();
}

void showFields(std::string_view lines)
{
    for (int i = 0; i < kMostLines && !lines.empty(); ++i) {
        const std::size_t end = std::min(lines.find('\n'), lines.size());
        showField(lines.substr(0, end));
        lines.remove_prefix(std::min(end + 1, lines.size()));
    }
}

} // namespace demo
