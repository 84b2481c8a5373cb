#pragma once

#include "render.h"
#include "tree.h"

#include <functional>
#include <string>

namespace statistics {

/// The tree on top of the panel, in which the presets are shown.
struct PresetGroup {
    explicit PresetGroup(Render& render);

    unsigned groupNode; ///< the label "Presets"
    Tree tree;
};

/// The tree at the bottom of the panel: the snapshots' check boxes by folder, the buttons, the comparison.
/// Apart from the main tree, so that a snapshot never holds its own controls.
///
/// "Snapshots" comes before the buttons among the children of "Diff": what a button adds or clears below it
/// lies behind the walk that draws the button.
struct SnapshotGroup {
    explicit SnapshotGroup(Render& render);

    /// True while the snapshot controls are in place.
    bool hasControls() const;
    void addControl(unsigned item);
    void addDiffTable(unsigned item);
    /// Adds a check box for a record, under a label for its folder. One that exists stays as it is.
    /// Gives back the node by whose removal all that was added goes again, INVALID_ID if nothing was; lack of
    /// memory adds nothing.
    unsigned addSnapshot(const std::string& name, const std::string& folder,
                         std::function<void(bool)> onChange, Render& render);
    /// What the user reads who points at a check box; empty: nothing. Null if there is no such box.
    std::string* findNote(const std::string& name, const std::string& folder, Render& render);
    /// Puts folders and check boxes in the order of their names, or in that in which they were added.
    void sort(bool byName, const Render& render);
    /// The check boxes stay in their pool, reached by nothing, until the group is reset.
    void clearSnapshots();
    /// The tree without controls and snapshots.
    Tree bareTree() const;
    /// Goes back to the `bare` tree and frees every item but the two labels, which the user may have opened.
    /// Needs no memory, so it can't fail.
    void reset(Render& render, Tree bare);
    /// Inside an ImGui frame; runs host functors.
    void draw(Render& render);

    unsigned diffNode;
    unsigned snapshotsNode;
    unsigned controlNode;
    unsigned diffTableNode;
    unsigned diffLabel;
    unsigned snapshotsLabel;
    Tree tree;
};

} // namespace statistics
