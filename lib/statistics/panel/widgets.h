#pragma once

#include <imgui.h>

#include <cstddef>
#include <string>

/// Everything that adapts Dear ImGui to the panel: guards that close what they open, widgets that show a text
/// whole, and what was renamed between ImGui's releases. Columns of fixed width have a file of their own.
///
/// ImGui cuts a label at "##" and tells widgets apart by it. The widgets here show every byte and take their
/// identity from the scope they stand in (`IdScope`), one widget of a kind per scope.
namespace statistics::widgets {

const ImVec4 labelColor{0.475f, 0.6f, 0.718f, 1.0f};
const ImVec4 outsideColor{0.96f, 0.19f, 0.19f, 1.0f}; ///< of what is outside its limits

class [[nodiscard]] IdScope {
public:
    explicit IdScope(int id) { ImGui::PushID(id); }
    explicit IdScope(const char* id) { ImGui::PushID(id); }
    explicit IdScope(std::size_t id) { ImGui::PushID(reinterpret_cast<const void*>(id)); }
    ~IdScope() { ImGui::PopID(); }
    IdScope(const IdScope&) = delete;
    IdScope& operator=(const IdScope&) = delete;
};

class [[nodiscard]] ColorScope {
public:
    ColorScope(ImGuiCol entry, const ImVec4& color) { ImGui::PushStyleColor(entry, color); }
    ~ColorScope() { ImGui::PopStyleColor(1); }
    ColorScope(const ColorScope&) = delete;
    ColorScope& operator=(const ColorScope&) = delete;
};

class [[nodiscard]] StyleVarScope {
public:
    StyleVarScope(ImGuiStyleVar entry, const ImVec2& value) { ImGui::PushStyleVar(entry, value); }
    ~StyleVarScope() { ImGui::PopStyleVar(1); }
    StyleVarScope(const StyleVarScope&) = delete;
    StyleVarScope& operator=(const StyleVarScope&) = delete;
};

class [[nodiscard]] ItemWidthScope {
public:
    explicit ItemWidthScope(float width) { ImGui::PushItemWidth(width); }
    ~ItemWidthScope() { ImGui::PopItemWidth(); }
    ItemWidthScope(const ItemWidthScope&) = delete;
    ItemWidthScope& operator=(const ItemWidthScope&) = delete;
};

/// The context menu's popup; `open` tells whether it shows.
class [[nodiscard]] PopupScope {
public:
    explicit PopupScope(const char* id) : open(ImGui::BeginPopup(id, 0)) {}
    ~PopupScope()
    {
        if (open)
            ImGui::EndPopup();
    }
    PopupScope(const PopupScope&) = delete;
    PopupScope& operator=(const PopupScope&) = delete;

    const bool open;
};

/// A window of its own at the mouse; `open` tells whether it shows. Longer texts are wrapped at `width`, in
/// pixels of the layout.
class [[nodiscard]] TooltipScope {
public:
    explicit TooltipScope(float width);
    ~TooltipScope();
    TooltipScope(const TooltipScope&) = delete;
    TooltipScope& operator=(const TooltipScope&) = delete;

    const bool open;
};

/// True between the host's NewFrame and Render.
bool isInsideFrame();
/// The size of the window that comes next, unless the host or ImGui's saved settings give one.
void suggestNextWindowSize(const ImVec2& size);

/// Puts what follows on the line of the item before, at `column` of the window in pixels of the layout, or
/// behind that item where it reaches past the column.
void sameLineFrom(float column);

void text(const std::string& text);
bool checkBox(const std::string& caption, bool* value);
bool isEscapePressed();
/// An entry of a popup, which closes when the entry is clicked.
bool menuItem(const std::string& caption);
/// As wide as the column that shows `text` needs to be, in pixels of the layout.
float columnWidthFor(const std::string& text);
/// The spacing around the buttons on top of columns.
class [[nodiscard]] HeaderScope {
public:
    HeaderScope();

private:
    StyleVarScope m_spacing;
};
enum class ESortArrow { None, Up, Down };
/// The button on top of a column. An arrow stands at its right end, where there is room; the caption ends
/// before it.
bool headerButton(const std::string& caption, ESortArrow arrow = ESortArrow::None);
/// A text that selects the whole row, beneath what follows in it.
bool rowSelectable(const std::string& text, bool selected);
/// What the keys ask of the row that was just drawn, if the host has turned on ImGui's navigation and it
/// stands there: Enter is a double click; with Shift, or the menu's own key where ImGui knows it, a right
/// click.
enum class ERowKey { None, Act, Menu };
ERowKey pressedRowKey();
/// `fraction` below zero or NaN shows an empty bar. The overlay stands behind the filled part.
void progressBar(float fraction, const std::string& overlay);

} // namespace statistics::widgets
