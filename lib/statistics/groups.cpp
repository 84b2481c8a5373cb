#include "groups.h"

#include "name_order.h"
#include "rollback.h"

#include <utility>

namespace statistics {

namespace {

/// INVALID_ID if the item's pool was full, or if there is no such parent.
unsigned addItem(Tree& tree, unsigned item, unsigned parent)
{
    return item == INVALID_ID || parent == INVALID_ID ? INVALID_ID : tree.addChild(item, parent);
}

/// The same; an item that finds no place is freed again.
unsigned addNewItem(Tree& tree, Render& render, unsigned item, unsigned parent)
{
    Rollback making([&] {
        if (item != INVALID_ID)
            render.removeItem(item);
    });
    const unsigned node = addItem(tree, item, parent);
    if (node != INVALID_ID)
        making.done();
    return node;
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

unsigned SnapshotGroup::addSnapshot(const std::string& name, const std::string& folder,
                                    std::function<void(bool)> onChange, Render& render)
{
    const unsigned known = tree.findChild(snapshotsNode, folder, render);
    const unsigned folderNode =
        known != INVALID_ID ? known : addNewItem(tree, render, render.createLabel(folder), snapshotsNode);
    if (folderNode == INVALID_ID || tree.findChild(folderNode, name, render) != INVALID_ID)
        return INVALID_ID;
    Rollback adding([&] {
        if (known == INVALID_ID)
            tree.removeItem(folderNode, render);
    });
    const unsigned box =
        addNewItem(tree, render, render.createCheckbox(name, std::move(onChange)), folderNode);
    if (box == INVALID_ID)
        return INVALID_ID;
    adding.done();
    return known == INVALID_ID ? folderNode : box;
}

std::string* SnapshotGroup::findNote(const std::string& name, const std::string& folder, Render& render)
{
    const unsigned box = tree.findChild(tree.findChild(snapshotsNode, folder, render), name, render);
    return box != INVALID_ID ? &render.checkboxes[itemSlot(tree.item(box))].note : nullptr;
}

void SnapshotGroup::sort(bool byName, const Render& render)
{
    if (snapshotsNode == INVALID_ID)
        return;
    // No node of this tree but the last ones is freed before the whole tree is: ids rise in the order of
    // adding.
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
