// Functors of a host that call the library back, or throw, while they are sampled or drawn.
#include "support/panel.h"
#include "support/test_access.h"

#include "stack_tracker.h"

#include <functional>
#include <memory>
#include <stdexcept>

namespace {

using namespace statistics;
using Names = std::vector<std::string>;

class Functors : public test::Panel {
protected:
    /// A counter that logs its samples and then acts.
    void add(
        const std::string& name, unsigned parent = 0, std::function<void()> act = [] {}, float period = 0)
    {
        auto getter = [this, name, act = std::move(act)] {
            sampled += (sampled.empty() ? "" : " ") + name;
            act();
            return CounterValue(name +
                                " was sampled"); // reads its captures although `act` may have removed it
        };
        system().createCounter(name, std::make_unique<Counter>(getter), period, parent);
    }
    static unsigned addBox(const std::string& name, std::function<void(bool)> onChange, unsigned parent = 0)
    {
        const unsigned item = TestAccess::render().createCheckbox(name, std::move(onChange));
        return TestAccess::tree().addChild(item, parent);
    }
    static void remove(const Names& paths)
    {
        for (const std::string& path : paths)
            system().removeItem(system().getItemIndex(path));
    }
    std::string samplesOf(float dt)
    {
        sampled.clear();
        system().update(dt, true);
        return sampled;
    }

    std::string sampled; ///< names, in order
};

TEST_F(Functors, mayNotStartStopUpdateOrDraw)
{
    const System* const before = &system();
    Names scopes;
    const auto tryAll = [&] {
        scopes.push_back(Orv::StackTracker::current() + std::to_string(Orv::StackTracker::depth()));
        System::initialize();
        System::shutdown();
        system().update(0, true);
        system().draw();
    };
    add("counter", 0, tryAll);
    addBox("box", [&](bool) { tryAll(); });
    test::Reports reports;
    EXPECT_EQ(samplesOf(0), "counter");
    system().updateNode(getItemIndex("counter"));
    ui.frames(2);
    ui.clickBox("box");
    EXPECT_EQ(scopes, (Names{"statistics::Render::update1", "statistics::Tree::updateNode1",
                             "statistics::Tree::draw2"}));
    EXPECT_EQ(reports.expressions(), Names(12, "!CallScope::active()"));
    EXPECT_EQ(&system(), before);
    EXPECT_EQ(ui.read().findAll("box").size(), 1u);
}

TEST_F(Functors, mayRemoveAndCreateItemsWhileTheyAreSampled)
{
    struct Case {
        Names removed; // by "actor", which then acts
        std::function<void()> act;
        std::string during, after;
    };
    const auto nothing = [] {};
    const auto addHeir = [this] { add("heir", getItemIndex("group")); };
    const auto addMany = [this] {
        for (int i = 0; i < 300; ++i) // moves all counters
            add(std::to_string(i), getItemIndex("group"));
    };
    const std::string all = "first before actor behind last";
    std::string many = all;
    for (int i = 0; i < 300; ++i)
        many += ' ' + std::to_string(i);
    const Case cases[] = {
        {{"group/actor"}, nothing, all, "first before behind last"},
        {{"group"}, nothing, "first before actor last", "first last"},
        {{"group/before", "group/behind"}, nothing, "first before actor last", "first actor last"},
        {{"group", "first", "last"}, nothing, "first before actor", ""},
        {{"group/actor"}, addHeir, all, "first before heir behind last"}, // which has the actor's slot
        {{}, addMany, many, many},
    };
    for (const Case& expected : cases) {
        add("first");
        const unsigned group = label("group");
        add("before", group);
        add("actor", group, [&] {
            remove(expected.removed);
            expected.act();
        });
        add("behind", group);
        add("last");
        EXPECT_EQ(samplesOf(0), expected.during) << "case " << &expected - cases;
        EXPECT_EQ(samplesOf(0), expected.after) << "case " << &expected - cases;
        System::shutdown();
        System::initialize();
    }
}

TEST_F(Functors, areDestroyedWhenNothingRunsAnyMoreAndMayCallBackThen)
{
    Names destroyed;
    const auto guard = [&](const std::string& name) {
        return std::shared_ptr<void>(nullptr, [&, name](void*) {
            destroyed.push_back(name);
            if (name == "other")
                remove({"heir"});
            label(("in memory of " + name).c_str());
        });
    };
    add("actor", 0, [&, kept = guard("actor")] {
        remove({"actor", "other"});
        EXPECT_EQ(destroyed, Names{});
    });
    add("other", 0, [kept = guard("other")] {});
    add("heir", 0, [kept = guard("heir")] {});
    sample();
    EXPECT_EQ(destroyed, (Names{"actor", "other", "heir"}));
    EXPECT_NE(getItemIndex("in memory of other"), INVALID_ID);
    add("third", 0, [kept = guard("third")] {});
    remove({"third"});
    EXPECT_EQ(destroyed.size(), 4u); // outside functors nothing is deferred
}

TEST_F(Functors, thatThrowReachTheHostAndWaitForTheirPeriodLikeAnyOther)
{
    bool broken = true;
    const auto act = [&] {
        if (broken)
            throw std::runtime_error("broken");
    };
    add("actor", 0, act, 1);
    add(
        "behind", 0, [] {}, 1);
    EXPECT_THROW(sample(), std::runtime_error);
    EXPECT_THROW(system().updateNode(1), std::runtime_error);
    EXPECT_EQ(Orv::StackTracker::depth(), 0u);
    EXPECT_EQ(samplesOf(0), "behind");
    broken = false;
    EXPECT_EQ(samplesOf(1), "actor behind");
}

TEST_F(Functors, thatThrowWhileDrawnLeaveImGuiBalanced)
{
    addBox(
        "box", [](bool) { throw std::runtime_error("broken"); }, label("two", label("one")));
    ui.frames(2);
    ui.click("one");
    ui.click("two");
    EXPECT_THROW(ui.clickBox("box"), std::runtime_error);
    EXPECT_EQ(ui.imbalance(), "");
    EXPECT_EQ(Orv::StackTracker::depth(), 0u);
    ui.frame();
    EXPECT_FALSE(ui.ticked("box")) << "although nothing came of it";
    EXPECT_EQ(ui.read().lines(), (Names{"Statistics", "one", "two", "box"}));
}

TEST_F(Functors, ofABoxGetItsNewStateAndMayRemoveIt)
{
    Names log;
    unsigned box = 0;
    box = addBox("box", [&, name = std::string("box")](bool on) {
        if (!on)
            system().removeItem(box);
        log.push_back(name + (on ? " on" : " off"));
    });
    addBox("without functor", {});
    ui.frames(2);
    ui.clickBox("box");
    EXPECT_TRUE(ui.ticked("box"));
    ui.clickBox("box");
    EXPECT_EQ(log, (Names{"box on", "box off"}));
    ui.clickBox("without functor");
    EXPECT_TRUE(ui.ticked("without functor"));
    EXPECT_EQ(ui.read().lines(), (Names{"Statistics", "without functor"}));
}

} // namespace
