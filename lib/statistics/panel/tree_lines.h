#pragma once

#include "change_log.h"
#include "filter.h"

#include <imgui.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

struct ImGuiWindow;

namespace statistics {

class Render;
class Tree;

/// The room that something takes on the panel: a node with all that shows below it, or a run of siblings.
struct Extent {
    float width = 0.0f;       ///< pixels from the start of the line
    float height = 0.0f;      ///< pixels, the spacing below included
    bool navigable = false;   ///< keyboard and gamepad can move to something in it
    bool hasBranches = false; ///< some of it opens and closes
    bool known = false;
};

/// Lines without anything below them that are of one height.
enum class ELine {
    Other, ///< of any height
    Text,
    Bar,
};

/// Measures what is drawn while it lives, from the start of a line on.
class [[nodiscard]] ExtentMeasure {
public:
    ExtentMeasure();
    ~ExtentMeasure();
    ExtentMeasure(const ExtentMeasure&) = delete;
    ExtentMeasure& operator=(const ExtentMeasure&) = delete;

    Extent extent() const;

private:
    ImGuiWindow& m_window;
    ImVec2 m_start;
    float m_reach;        ///< to the right, of what was drawn before
    short m_layersBefore; ///< of ImGui's navigation that had something to move to
};

/// What a tree remembers of its lines, so that those out of view cost next to nothing: each node's extent
/// when it was last drawn, and the extents of whole blocks of siblings. A change that the tree or a sample
/// notes forgets the extents that it is part of, from the node up to the root, and no others.
///
/// An extent holds in one font, style and ImGui window. A few such looks are kept, so that hosts which draw
/// the panel in two contexts, or twice a frame, don't throw them away each time.
class TreeLines {
public:
    static constexpr std::size_t kBlock = 64; ///< siblings

    /// Takes the look of the present window, and forgets what has changed since the last draw in it.
    /// Null for a tree that is shown whole. Gives what keeps which nodes are open: for a filter something of
    /// its own, so that what the user does meanwhile goes with it.
    ImGuiStorage* begin(Tree& tree, Render& render, const Filter* filter);

    /// Opens or closes what the user sees next, and what is seen when a filter goes. Before `begin`.
    void setOpen(ImGuiID node, bool open);

    // What the filter leaves, until the next `begin`.
    bool shows(unsigned node) const { return !m_filter || m_filter->shows(node); }
    bool showsBelow(unsigned node) const { return !m_filter || m_filter->leads(node); }
    bool isFiltered() const { return m_filter; }
    bool opensAtFirst(unsigned node) const { return m_filter && !m_filter->matches(node); }

    /// Moves on past the node and all that shows below it if it lies out of view.
    bool skip(unsigned node);
    /// Moves on past the blocks from `position` on that lie out of view; gives the position behind them.
    std::size_t skipBlocks(unsigned parent, std::size_t position);

    /// True for a line that was never drawn and is out of view, once many others were measured in this frame:
    /// then it moves on by the height that the others of its kind have. Only with a filter, which may bring
    /// tens of thousands of them into one frame; how far they reach to the right is known some frames later.
    bool skipUnmeasured(ELine line);

    void keep(unsigned node, const Extent& extent, ELine line);
    void keepBlock(unsigned parent, std::size_t position, const Extent& extent);
    /// Remembers which node shows the counter in a slot.
    void keepCounter(unsigned slot, unsigned node);
    /// `INVALID_ID` if it was never drawn, or is gone.
    unsigned counterNode(const Tree& tree, unsigned slot) const;

private:
    /// What extents depend on besides the texts.
    struct Metrics {
        bool operator==(const Metrics& other) const;

        ImGuiStorage* openNodes;
        const ImFont* font;
        float fontSize, indent;
        ImVec2 windowPadding, framePadding, itemSpacing, innerSpacing;
    };

    struct Look {
        Metrics metrics{};
        std::size_t openNodes = 0;       ///< a sum over the states of ImGui's tree nodes
        std::uint64_t filterVersion = 0; ///< of what was shown; 0 is the whole tree
        ChangeLog::Position nodesRead = 0;
        ChangeLog::Position countersRead = 0;
        std::array<float, 3> heights{}; ///< of lines, by `ELine`; 0 where it isn't known
        std::vector<Extent> nodes;
        std::unordered_map<unsigned, std::vector<Extent>> blocks; ///< by parent; only of long lists
    };

    /// Which nodes are open while a filter is on, in the place of what ImGui keeps for a window.
    struct FilteredNodes {
        const ImGuiStorage* usual;
        std::uint64_t edition; ///< of the filter
        std::unique_ptr<ImGuiStorage> states;
    };

    static Metrics presentMetrics();

    void useLook(const Metrics& metrics);
    ImGuiStorage* useStates();
    FilteredNodes& filteredNodes(const ImGuiStorage* usual);
    void noteOpenNodes(const ImGuiStorage& states);
    void noteView();
    void forgetChanges(const Tree& tree, const Render& render);
    void forget(const Tree& tree, unsigned node);
    void forgetBranches();
    static bool isEmpty(const Extent& extent);
    bool isHidden(const Extent& extent, float offset) const;
    void moveOn(const Extent& extent) const;

    std::vector<Look> m_looks; ///< the one in use first
    std::vector<FilteredNodes> m_filteredNodes;
    std::vector<unsigned> m_counterNodes; ///< by slot
    const Filter* m_filter = nullptr;     ///< null where everything is shown
    ImGuiWindow* m_window = nullptr;      ///< while the tree is drawn
    float m_viewTop = 0.0f;
    float m_viewBottom = 0.0f;
    std::size_t m_measured = 0; ///< lines out of view, by the present draw
    bool m_skipsLeaves = false;
    bool m_skipsBranches = false;
};

} // namespace statistics
