#include "groups.h"

#include "name_order.h"

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
      snapshotsLabel(render.createLabel("Snapshots"))
{
    diffNode = addItem(tree, diffLabel, 0);
    snapshotsNode = addItem(tree, snapshotsLabel, diffNode);
}

Tree SnapshotGroup::bareTree() const
{
    // As in the constructor: the nodes come out under the same ids.
    Tree bare;
    addItem(bare, snapshotsLabel, addItem(bare, diffLabel, 0));
    return bare;
}

void SnapshotGroup::reset(Render& render, Tree bare)
{
    // By nodes and not by child lists, which no longer hold what was cleared. Straight from the pools: no
    // functor of a host runs in a check box, so none can stand on what goes here.
    for (auto node = tree.m_nodes.begin(); node != tree.m_nodes.end(); node = tree.m_nodes.next(node)) {
        const unsigned item = tree.m_nodes[node].item;
        if (render.itemType(item) == ItemType::Checkbox)
            render.checkboxes.erase(itemSlot(item));
        else if (render.itemType(item) == ItemType::Label && item != diffLabel && item != snapshotsLabel)
            render.labels.erase(itemSlot(item));
    }
    tree = std::move(bare);
    controlNode = INVALID_ID;
    diffTableNode = INVALID_ID;
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
                                std::function<void(bool)> onChange, Render& render, const std::string& note)
{
    unsigned folderNode = tree.findChild(snapshotsNode, folder, render);
    if (folderNode == INVALID_ID)
        folderNode = addItem(tree, render.createLabel(folder), snapshotsNode);
    if (folderNode == INVALID_ID || tree.findChild(folderNode, name, render) != INVALID_ID)
        return;
    const unsigned box = render.createCheckbox(name, std::move(onChange));
    if (box == INVALID_ID)
        return;
    render.checkboxes[itemSlot(box)].note = note;
    tree.addChild(box, folderNode);
}

void SnapshotGroup::sort(bool byName, const Render& render)
{
    if (snapshotsNode == INVALID_ID)
        return;
    // No node of this tree is freed before the whole tree is: ids rise in the order of adding.
    const auto before = [&](unsigned left, unsigned right) {
        return byName ? isNameBefore(render.itemName(tree.item(left)), render.itemName(tree.item(right)))
                      : left < right;
    };
    tree.sortChildren(snapshotsNode, before);
    for (const unsigned folder : tree.m_nodes[snapshotsNode].children)
        tree.sortChildren(folder, before);
}

void SnapshotGroup::clearSnapshots()
{
    if (snapshotsNode != INVALID_ID)
        tree.clearChildren(snapshotsNode);
}

} // namespace statistics
