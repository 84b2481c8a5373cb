#include "groups.h"

#include <utility>

namespace statistics {

namespace {

/// INVALID_ID if the item's pool was full, or if there is no such parent.
unsigned addItem(Tree& tree, unsigned item, unsigned parent)
{
    return item == INVALID_ID || parent == INVALID_ID ? INVALID_ID : tree.addChild(item, parent);
}

} // namespace

PresetGroup::PresetGroup(Render& render) : groupNode(INVALID_ID)
{
    groupNode = addItem(tree, render.createLabel("Presets"), 0);
}

SnapshotGroup::SnapshotGroup(Render& render)
    : diffNode(INVALID_ID),
      snapshotsNode(INVALID_ID),
      controlNode(INVALID_ID),
      diffTableNode(INVALID_ID),
      diffLabel(render.createLabel("Diff")),
      snapshotsLabel(INVALID_ID)
{
    diffNode = addItem(tree, diffLabel, 0);
    snapshotsLabel = render.createLabel("Snapshots");
    snapshotsNode = addItem(tree, snapshotsLabel, diffNode);
}

bool SnapshotGroup::hasControls() const
{
    return controlNode != INVALID_ID && diffTableNode != INVALID_ID;
}

void SnapshotGroup::addControl(unsigned item)
{
    if (controlNode == INVALID_ID)
        controlNode = addItem(tree, item, diffNode);
}

void SnapshotGroup::addDiffTable(unsigned item)
{
    if (diffTableNode == INVALID_ID)
        diffTableNode = addItem(tree, item, diffNode);
}

void SnapshotGroup::addSnapshot(const std::string& name, const std::string& folder,
                                std::function<void(bool)> onChange, Render& render)
{
    unsigned folderNode = tree.findChild(snapshotsNode, folder, render);
    if (folderNode == INVALID_ID)
        folderNode = addItem(tree, render.createLabel(folder), snapshotsNode);
    if (folderNode != INVALID_ID && tree.findChild(folderNode, name, render) == INVALID_ID)
        addItem(tree, render.createCheckbox(name, std::move(onChange)), folderNode);
}

void SnapshotGroup::clearSnapshots()
{
    if (snapshotsNode != INVALID_ID)
        tree.clearChildren(snapshotsNode);
}

} // namespace statistics
