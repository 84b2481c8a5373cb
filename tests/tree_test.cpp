// The hierarchy without a panel: ids, searches, removal, walks over a tree that changes.
#include "support/reports.h"

#include "tree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace statistics;
using Ids = std::vector<unsigned>;
using Names = std::vector<std::string>;

// A tree of labels, named by their paths' last parts.
struct Forest {
    Render render;
    Tree tree;

    unsigned add(const std::string& name, unsigned parent = 0)
    {
        return tree.addChild(render.createLabel(name), parent);
    }
    unsigned find(const std::string& name, unsigned parent = 0)
    {
        return tree.findChild(parent, name, render);
    }
    void remove(unsigned id) { tree.removeItem(id, render); }
    std::string name(unsigned id) { return render.itemName(tree.item(id)); }

    Names walk(const std::function<void(const std::string&)>& act = [](const std::string&) {})
    {
        Names visited;
        tree.forEachNode([&](unsigned id) {
            visited.push_back(name(id));
            act(visited.back());
        });
        return visited;
    }
};

TEST(Tree, startsWithItsRootAndGrowsBy100Slots)
{
    Forest forest;
    EXPECT_EQ(forest.tree.m_nodes.size(), 100U);
    EXPECT_EQ(forest.tree.m_nodes[0].parent, INVALID_ID);
    EXPECT_EQ(forest.tree.item(0), INVALID_ID);
    EXPECT_EQ(forest.walk(), Names{});
    for (unsigned id = 1; id <= 100; ++id) {
        EXPECT_EQ(forest.tree.nextId(), id);
        EXPECT_EQ(forest.add(std::to_string(id), id - 1), id); // each below the one before
        EXPECT_EQ(forest.tree.m_nodes[id].depth, id);
    }
    EXPECT_EQ(forest.tree.m_nodes.size(), 200U);
}

TEST(Tree, removalGivesIdsBackLastFirstAndKeepsTheOrderOfSiblings)
{
    Forest forest;
    for (const char* name : {"A", "B", "C"}) { // 1, 2, 3
        forest.add(name);
    }
    forest.add("b1", 2); // 4
    forest.add("b2", 2); // 5
    forest.remove(2);
    forest.remove(2);
    EXPECT_EQ(forest.walk(), (Names{"A", "C"}));
    EXPECT_EQ((Ids{forest.add("D"), forest.add("E"), forest.add("F")}), (Ids{2, 5, 4}));
    EXPECT_EQ(forest.walk(), (Names{"A", "C", "D", "E", "F"}));
    EXPECT_EQ(forest.render.labels.nextIndex(), 5U); // five labels live in five slots
}

TEST(Tree, reportsParentsThatDoNotExistAndTheRemovalOfTheRoot)
{
    Forest forest;
    forest.add("A");
    forest.remove(forest.add("gone"));
    test::Reports reports;
    EXPECT_EQ((Ids{forest.add("x", INVALID_ID), forest.add("x", 2), forest.add("x", 100)}),
              (Ids{INVALID_ID, INVALID_ID, INVALID_ID}));
    forest.remove(0);
    EXPECT_EQ(reports.take(),
              (Names{"parentId != INVALID_ID", "!slot.isFree() && \"Try to access unreferenced slot!\"",
                     "idx < size()", "false && \"Wrong statistics item type\""}));
    for (const unsigned stale : {2U, 100U, INVALID_ID}) {
        EXPECT_EQ(forest.find("A", stale), INVALID_ID);
        forest.remove(stale);
        forest.tree.updateNode(stale, forest.render);
    }
    EXPECT_EQ(reports.take(), Names{});
    EXPECT_EQ(forest.walk(), Names{"A"});
}

TEST(Tree, forEachTellsItemAndParentsItemParentsFirst)
{
    Forest forest;
    forest.add("A");
    forest.add("B");
    forest.add("C", 2);
    std::vector<std::pair<unsigned, unsigned>> seen;
    forest.tree.forEach([&](unsigned item, unsigned parent) { seen.emplace_back(item, parent); });
    EXPECT_EQ(seen, (std::vector<std::pair<unsigned, unsigned>>{
                        {0x10000, INVALID_ID}, {0x10001, INVALID_ID}, {0x10002, 0x10001}}));
}

TEST(Tree, aNameIsEveryByteOfIt)
{
    Forest forest;
    const Names names = {"a", "A", "a ", std::string("a\0b", 3), std::string("a\0c", 3), "", "a/b"};
    for (unsigned i = 0; i < names.size(); ++i) {
        EXPECT_EQ(forest.find(names[i]), INVALID_ID) << names[i];
        EXPECT_EQ(forest.add(names[i]), i + 1);
        EXPECT_EQ(forest.find(names[i]), i + 1) << names[i];
    }
}

TEST(Tree, clearedChildrenAreOutOfReachButKeepTheirIds)
{
    Forest forest;
    forest.add("A");
    forest.add("a1", 1);
    forest.add("a2", 1);
    EXPECT_EQ(forest.find("a1", 1), 2U);
    const unsigned next = forest.tree.nextId();
    forest.tree.clearChildren(1);
    EXPECT_EQ(forest.find("a1", 1), INVALID_ID);
    EXPECT_EQ(forest.walk(), Names{"A"});
    EXPECT_EQ(forest.tree.nextId(), next);
    EXPECT_EQ(forest.name(3), "a2");
    EXPECT_EQ(forest.add("a1", 1), next);
    EXPECT_EQ(forest.find("a1", 1), next);
}

TEST(Tree, findsEachOfThousandsOfSiblingsWhateverCameAndWent)
{
    constexpr unsigned kCount = 5000;
    Forest forest;
    std::map<std::string, unsigned> expected;
    for (unsigned round = 0; round < 3; ++round) {
        for (unsigned i = 0; i < kCount; ++i) {
            const std::string name = std::to_string(round) + "." + std::to_string(i);
            EXPECT_EQ(forest.find(name), INVALID_ID);
            expected[name] = forest.add(name);
        }
        for (unsigned i = round; i < kCount; i += 2) { // last first, as hosts rarely do
            const auto gone = expected.find(std::to_string(round) + "." + std::to_string(i));
            forest.remove(gone->second);
            EXPECT_EQ(forest.find(gone->first), INVALID_ID);
            expected.erase(gone);
        }
    }
    for (const auto& [name, id] : expected) {
        EXPECT_EQ(forest.find(name), id) << name;
    }
}

// The plainest tree that could be right: children by parent, in order.
struct Model {
    struct Node {
        std::string name;
        Ids children;
    };
    std::map<unsigned, Node> nodes{{0, {}}};

    unsigned find(unsigned parent, const std::string& name) const
    {
        const Ids& children = nodes.at(parent).children;
        const auto found = std::find_if(children.begin(), children.end(),
                                        [&](unsigned id) { return nodes.at(id).name == name; });
        return found == children.end() ? INVALID_ID : *found;
    }
    void remove(unsigned id)
    {
        for (auto& [parent, node] : nodes) {
            node.children.erase(std::remove(node.children.begin(), node.children.end(), id),
                                node.children.end());
        }
        const Ids children = nodes.at(id).children;
        for (const unsigned child : children) {
            remove(child);
        }
        nodes.erase(id);
    }
    void walk(unsigned id, Names& names) const
    {
        for (const unsigned child : nodes.at(id).children) {
            names.push_back(nodes.at(child).name);
            walk(child, names);
        }
    }
};

TEST(Tree, agreesWithAPlainModelThroughThousandsOfRandomChanges)
{
    std::mt19937 random(7);
    const auto below = [&random](std::size_t count) { return random() % count; };
    Forest forest;
    Model model;
    const auto anyNode = [&] {
        return std::next(model.nodes.begin(), static_cast<std::ptrdiff_t>(below(model.nodes.size())))->first;
    };
    for (int step = 0; step < 6000; ++step) {
        const unsigned node = below(2) == 0 ? 0 : anyNode();
        const std::string name(1, static_cast<char>('a' + below(3))); // often a sibling's, too
        if (node == 0 || below(100) < 30) {
            const unsigned id = forest.add(name, node);
            ASSERT_TRUE(model.nodes.emplace(id, Model::Node{name, {}}).second) << "an id that is in use";
            model.nodes.at(node).children.push_back(id);
        } else if (below(100) < 90) {
            forest.remove(node);
            model.remove(node);
        }
        const unsigned parent = below(2) == 0 ? 0 : anyNode();
        ASSERT_EQ(forest.find(name, parent), model.find(parent, name)) << "step " << step;
    }
    Names expected;
    model.walk(0, expected);
    EXPECT_EQ(forest.walk(), expected);
}

TEST(Tree, aWalkToleratesWhatItsVisitorDoes)
{
    struct Case {
        const char* name;
        std::function<void(Forest&, const std::function<unsigned(const char*)>& id)> act; // at "a2"
        Names visited;
    };
    using F = Forest;
    using Id = const std::function<unsigned(const char*)>&;
    const Case cases[] = {
        {"nothing", [](F&, Id) {}, {"A", "a1", "a2", "x", "a3", "B", "b1", "C"}},
        {"removes itself", [](F& f, Id id) { f.remove(id("a2")); }, {"A", "a1", "a2", "a3", "B", "b1", "C"}},
        {"removes the one before",
         [](F& f, Id id) { f.remove(id("a1")); },
         {"A", "a1", "a2", "x", "a3", "B", "b1", "C"}},
        {"removes the one behind",
         [](F& f, Id id) { f.remove(id("a3")); },
         {"A", "a1", "a2", "x", "B", "b1", "C"}},
        {"removes itself and the one before",
         [](F& f, Id id) { f.remove(id("a1")), f.remove(id("a2")); },
         {"A", "a1", "a2", "a3", "B", "b1", "C"}},
        {"removes its parent", [](F& f, Id id) { f.remove(id("A")); }, {"A", "a1", "a2", "B", "b1", "C"}},
        {"removes its parent and the one behind that",
         [](F& f, Id id) { f.remove(id("A")), f.remove(id("B")); },
         {"A", "a1", "a2", "C"}},
        {"removes the last", [](F& f, Id id) { f.remove(id("C")); }, {"A", "a1", "a2", "x", "a3", "B", "b1"}},
        {"removes all",
         [](F& f, Id id) { f.remove(id("B")), f.remove(id("C")), f.remove(id("A")); },
         {"A", "a1", "a2"}},
        {"takes its own place anew",
         [](F& f, Id id) {
             const unsigned parent = id("A");
             f.remove(id("a2"));
             f.add("n1", f.add("n", parent)); // n has the id of a2
         },
         {"A", "a1", "a2", "a3", "n", "n1", "B", "b1", "C"}},
        {"takes its parent's place anew",
         [](F& f, Id id) {
             f.remove(id("A"));
             f.add("n1", f.add("n")); // n has the id of A
         },
         {"A", "a1", "a2", "B", "b1", "C", "n", "n1"}},
        {"adds everywhere",
         [](F& f, Id id) {
             for (const char* parent : {"a1", "a2", "A", "C"}) {
                 f.add("new", id(parent));
             }
             for (int i = 0; i < 300; ++i) { // moves all nodes
                 f.add("x1", id("x"));
             }
             f.remove(id("x"));
         },
         {"A", "a1", "a2", "new", "a3", "new", "B", "b1", "C", "new"}},
    };
    for (const Case& expected : cases) {
        Forest forest;
        std::map<std::string, unsigned> ids;
        const std::pair<const char*, const char*> nodes[] = {
            {"A", ""}, {"B", ""}, {"C", ""}, {"a1", "A"}, {"a2", "A"}, {"a3", "A"}, {"x", "a2"}, {"b1", "B"}};
        for (const auto& [name, parent] : nodes) {
            ids[name] = forest.add(name, ids[parent]);
        }
        const Names visited = forest.walk([&](const std::string& name) {
            if (name == "a2") {
                expected.act(forest, [&](const char* wanted) { return ids.at(wanted); });
            }
        });
        EXPECT_EQ(visited, expected.visited) << expected.name;
    }
}

TEST(Tree, moveTakesTheNodesAndTheFreeList)
{
    Forest forest;
    forest.add("A");
    forest.add("B");
    forest.remove(1);
    Tree moved(std::move(forest.tree));
    EXPECT_EQ(moved.findChild(0, "B", forest.render), 2U);
    EXPECT_EQ(moved.nextId(), 1U);
    moved = Tree();
    EXPECT_EQ(moved.findChild(0, "B", forest.render), INVALID_ID);
    EXPECT_EQ(forest.render.labels[1], "B"); // no item is freed with a tree
}

} // namespace
