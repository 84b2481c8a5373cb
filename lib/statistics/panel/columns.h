#pragma once

#include <imgui.h>

namespace statistics::widgets {

/// Columns whose set is as wide as it was laid out, whatever the window does: widths stay for any size of the
/// window, any indent and scrollbar, and where the user dragged a border. A border that is dragged to the
/// right takes from the last column as far as its floor; from there on the set grows.
class [[nodiscard]] ColumnsScope {
public:
    /// `width` of all columns together, in pixels of the layout. ImGui keeps what the user did under `id`.
    ColumnsScope(int count, const char* id, float width);
    ~ColumnsScope();
    ColumnsScope(const ColumnsScope&) = delete;
    ColumnsScope& operator=(const ColumnsScope&) = delete;

    /// True if ImGui has no widths for these columns yet: a new context, or another number of columns.
    bool isNew() const { return m_isNew; }
    /// `width` in pixels of the layout; it has a floor and a ceiling, and what isn't a number counts as zero.
    /// To be called for all columns, from left to right.
    void setWidth(int column, float width) const;
    /// Moves what follows, unless the column is as wide already.
    void widen(int column, float width) const;

private:
    static float columnsEnd();
    static void stretchRows();
    float fractionOf(float width) const;

    float m_workRectEnd;
    float m_mostWidth; ///< of a column, in pixels of the layout
    bool m_isNew;
};

} // namespace statistics::widgets
