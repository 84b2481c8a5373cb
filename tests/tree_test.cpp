// The hierarchy without a panel: ids, searches, removal, walks over a tree that changes.
#include "support/reports.h"

#include "name_order.h"
#include "tree.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <random>

namespace {

using namespace statistics;
using Ids = std::vector<unsigned>;
using Names = std::vector<std::string>;

/// A tree of labels.
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
    void remove(const Ids& ids)
    {
        for (const unsigned id : ids)
            tree.removeItem(id, render);
    }
    template<typename Act>
    Names walk(const Act& act)
    {
        Names visited;
        tree.forEachNode([&](unsigned id) {
            visited.push_back(render.itemName(tree.item(id)));
            act(visited.back());
        });
        return visited;
    }
    Names names()
    {
        return walk([](const std::string&) {});
    }
};

TEST(Tree, startsWithItsRootAndGrowsBy100Slots)
{
    Forest forest;
    EXPECT_EQ(forest.tree.item(0), INVALID_ID);
    EXPECT_EQ(forest.names(), Names{});
    for (unsigned id = 1; id <= 100; ++id) {
        EXPECT_EQ(forest.tree.m_nodes.size(), 100u);
        EXPECT_EQ(forest.tree.nextId(), id);
        EXPECT_EQ(forest.add("x", id - 1), id); // each below the one before
        EXPECT_EQ(forest.tree.m_nodes[id].depth, id);
    }
    EXPECT_EQ(forest.tree.m_nodes.size(), 200u);
}

TEST(Tree, sortsChildrenWhichAreFoundAndRemovedAsBefore)
{
    Forest forest;
    for (const char* name : {"A", "B", "C"})
        forest.add(name);
    forest.tree.changes().open();
    ChangeLog::Position read = 0;
    forest.tree.changes().readFrom(read, [](unsigned) {});
    forest.tree.sortChildren(0, [](unsigned left, unsigned right) { return left > right; });
    Ids changed;
    EXPECT_TRUE(forest.tree.changes().readFrom(read, [&](unsigned id) { changed.push_back(id); }));
    EXPECT_EQ(changed, Ids{0});
    forest.remove({1});
    EXPECT_EQ(forest.names(), (Names{"C", "B"}));
}

TEST(ChangeLog, tellsAReaderWhoComesTooLateAndNoOther)
{
    ChangeLog log;
    log.open();
    ChangeLog::Position read = 0;
    for (const unsigned count : {16384u, 16385u}) {
        for (unsigned id = 0; id < count; ++id)
            log.note(id);
        unsigned seen = 0;
        EXPECT_EQ(log.readFrom(read, [&](unsigned) { ++seen; }), count == 16384) << count;
        EXPECT_EQ(seen, count == 16384 ? count : 0u);
    }
    log.noteAll();
    EXPECT_FALSE(log.readFrom(read, [](unsigned) {}));
}

TEST(NameOrder, takesNumbersByTheirValueAndZerosInFrontLast)
{
    const Names ascending = {"", "run-09", "run-9", "run-9a", "run-010", "run-10", "run-b", "runs"};
    for (std::size_t a = 0; a < ascending.size(); ++a)
        for (std::size_t b = 0; b < ascending.size(); ++b)
            EXPECT_EQ(isNameBefore(ascending[a], ascending[b]), a < b) << ascending[a] << ascending[b];
}

TEST(Tree, clearedChildrenAreOutOfReachButKeepTheirIds)
{
    Forest forest;
    forest.add("A");
    forest.add("a1", 1);
    EXPECT_EQ(forest.find("a1", 1), 2u);
    Ids seen;
    forest.tree.forEach([&](unsigned item, unsigned parent) { seen.insert(seen.end(), {item, parent}); });
    EXPECT_EQ(seen, (Ids{0x10000, INVALID_ID, 0x10001, 0x10000}));
    forest.tree.clearChildren(1);
    EXPECT_EQ(forest.find("a1", 1), INVALID_ID);
    EXPECT_EQ(forest.names(), Names{"A"});
    EXPECT_EQ(forest.tree.item(2), 0x10001u);
    EXPECT_EQ(forest.add("a1", 1), 3u);
    EXPECT_EQ(forest.find("a1", 1), 3u);
    forest.remove({2});
    EXPECT_EQ(forest.names(), (Names{"A", "a1"}));
    forest.tree.clearChildren(0);
    EXPECT_EQ(forest.tree.sumChildren(1, 0, forest.render), CounterValue());
    forest.tree = Tree();
    EXPECT_EQ(forest.find("A"), INVALID_ID);
    EXPECT_EQ(forest.render.labels[0], "A"); // the items stay
    forest.tree.m_nodes.clear();
    test::Reports reports;
    forest.tree.draw(forest.render);
    EXPECT_EQ(reports.take(), Names{"!m_nodes.empty()"});
}

TEST(Tree, findsEachOfThousandsOfSiblingsWhateverCameAndWent)
{
    Forest forest;
    std::map<std::string, unsigned> expected;
    for (unsigned round = 0; round < 3; ++round)
        for (unsigned i = 0; i < 4000; ++i) {
            const std::string name = std::to_string(round) + std::string(1, '\0') + std::to_string(i);
            EXPECT_EQ(forest.find(name), INVALID_ID);
            expected[name] = forest.add(name);
            if (i % 2 == round % 2) {
                forest.remove({expected.begin()->second});
                EXPECT_EQ(forest.find(expected.begin()->first), INVALID_ID);
                expected.erase(expected.begin());
            }
        }
    for (const auto& [name, id] : expected)
        EXPECT_EQ(forest.find(name), id) << name;
}

TEST(Tree, findsTheFirstOfNamesakesAlsoWhenAnIdWasUsedBefore)
{
    Forest forest;
    forest.add("x");
    forest.add("x");
    EXPECT_EQ(forest.find("x"), 1u);
    forest.remove({1});
    EXPECT_EQ(forest.add("x"), 1u); // behind 2 now
    EXPECT_EQ(forest.find("x"), 2u);
    forest.remove({2});
    EXPECT_EQ(forest.find("x"), 1u);
}

TEST(Tree, aWalkGivesEachNodeThatStaysItsTurnWhateverTheVisitorDoes)
{
    enum EId : unsigned { B = 1, A, C, A1, A2, A3, X, B1 };
    struct Case {
        Ids removed; // at "a2", before it acts
        void (*act)(Forest&);
        Names visited;
    };
    const auto nothing = [](Forest&) {};
    const auto createMany = [](Forest& f) {
        for (const unsigned parent : {A1, A2, A, C})
            f.add("new", parent);
        for (int i = 0; i < 300; ++i) // moves all nodes
            f.add("x1", X);
        f.remove({X});
    };
    const auto clearAll = [](Forest& f) {
        f.tree.clearChildren(0);
        f.add("n", A);
        f.add("o");
    };
    const Case cases[] = {
        {{}, nothing, {"B", "b1", "A", "a1", "a2", "x", "a3", "C"}},
        {{A2}, nothing, {"B", "b1", "A", "a1", "a2", "a3", "C"}},
        {{A1}, nothing, {"B", "b1", "A", "a1", "a2", "x", "a3", "C"}},
        {{A1, A2}, nothing, {"B", "b1", "A", "a1", "a2", "a3", "C"}},
        {{A3, C}, nothing, {"B", "b1", "A", "a1", "a2", "x"}},
        {{X, A3}, nothing, {"B", "b1", "A", "a1", "a2", "C"}},
        {{A}, nothing, {"B", "b1", "A", "a1", "a2", "C"}},
        {{A, B, C}, nothing, {"B", "b1", "A", "a1", "a2"}},
        {{}, [](Forest& f) { f.tree.clearChildren(A); }, {"B", "b1", "A", "a1", "a2", "C"}},
        {{}, clearAll, {"B", "b1", "A", "a1", "a2", "o"}},
        // A new node gets the id that the visitor's own, or its parent's, had.
        {{A2},
         [](Forest& f) { f.add("n1", f.add("n", A)); },
         {"B", "b1", "A", "a1", "a2", "a3", "n", "n1", "C"}},
        {{A}, [](Forest& f) { f.add("n1", f.add("n")); }, {"B", "b1", "A", "a1", "a2", "C", "n", "n1"}},
        {{}, [](Forest& f) { f.tree = Tree(); }, {"B", "b1", "A", "a1", "a2"}},
        {{}, createMany, {"B", "b1", "A", "a1", "a2", "new", "a3", "new", "C", "new"}},
    };
    for (const Case& expected : cases) {
        Forest forest;
        for (const char* name : {"B", "A", "C"})
            forest.add(name);
        for (const char* name : {"a1", "a2", "a3"})
            forest.add(name, A);
        forest.add("x", A2);
        forest.add("b1", B);
        const Names visited = forest.walk([&](const std::string& name) {
            if (name != "a2")
                return;
            forest.remove(expected.removed);
            expected.act(forest);
        });
        EXPECT_EQ(visited, expected.visited) << "case " << &expected - cases;
    }
}

TEST(Tree, losesThousandsOfSiblingsInAnyOrder)
{
    constexpr unsigned kCount = 2000;
    std::mt19937 random(1);
    for (const int order : {0, 1, 2}) {
        Forest forest;
        Ids left;
        Ids together; // removed at once, so that gaps are closed meanwhile
        for (unsigned i = 0; i < kCount; ++i)
            left.push_back(forest.add(std::to_string(i)));
        while (!left.empty()) {
            const std::size_t last = left.size() - 1;
            const std::size_t at = order == 0 ? 0 : order == 1 ? last : random() % left.size();
            const unsigned gone = left[at];
            left.erase(left.begin() + static_cast<std::ptrdiff_t>(at));
            if (left.size() % 97 > 40) {
                forest.remove({gone});
                continue;
            }
            together.push_back(gone);
            if (left.size() % 97 != 0)
                continue;
            // While a walk stands somewhere among them: the others still have their turn, once.
            std::size_t turns = 0;
            const auto visited = forest.walk([&](const std::string&) {
                if (turns++ == left.size() / 2)
                    forest.remove(std::exchange(together, {}));
            });
            ASSERT_GE(visited.size(), left.size());
            Ids listed;
            forest.tree.forEachNode([&](unsigned id) { listed.push_back(id); });
            ASSERT_EQ(listed, left);
            ChildList& children = forest.tree.m_nodes[0].children;
            ASSERT_EQ(children.gaps(), children.size() - left.size()) << "or each removal moves all others";
            ASSERT_LE(children.size(), 2 * left.size());
        }
        EXPECT_TRUE(forest.tree.m_nodes[0].children.empty());
    }
}

TEST(Tree, isWalkedSummedAndRemovedAtAnyDepth)
{
    constexpr unsigned kDepth = 65000;
    Forest forest;
    const auto sum = [&](unsigned id) { return ChildrenSum{&forest.tree, &forest.render, id, 0}; };
    unsigned id = 0;
    for (unsigned depth = 0; depth < kDepth; ++depth)
        id = forest.tree.addChild(
            forest.render.createCounter("n", std::make_unique<Counter>(sum(forest.tree.nextId())), 0), id);
    for (const int value : {3, 4})
        forest.tree.addChild(
            forest.render.createCounter("leaf", std::make_unique<Counter>([value] { return value; }), 0), id);
    EXPECT_EQ(forest.tree.sumChildren(0, 0, forest.render), CounterValue(7));
    std::size_t count = 0;
    forest.tree.forEachNode([&](unsigned) { ++count; });
    EXPECT_EQ(count, kDepth + 2);
    forest.remove({1});
    EXPECT_EQ(forest.names(), Names{});
    EXPECT_EQ(forest.tree.nextId(), 1u);
}

} // namespace
