// The life of the one System, its labels and paths, and when what is sampled.
#include "support/panel.h"
#include "support/test_access.h"

#include <cfloat>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

namespace {

using namespace statistics;
using Ids = std::vector<unsigned>;
using Names = std::vector<std::string>;

/// Acts when the last copy goes, as the captures of a host's functor do.
std::shared_ptr<void> atEnd(std::function<void()> act)
{
    return {nullptr, [act = std::move(act)](void*) { act(); }};
}

unsigned addCounter(
    const std::string& name, const Counter::Getter& getter = [] { return 1; }, float period = 0,
    unsigned parent = 0)
{
    return System::instance()->createCounter(name, std::make_unique<Counter>(getter), period, parent);
}

TEST(SystemLife, startsAnewAsOftenAsTheHostLikesAndReportsWhatIsOnceTooMany)
{
    test::Reports reports;
    for (int turn = 0; turn < 2; ++turn) {
        EXPECT_EQ(System::instance(), nullptr);
        System::initialize();
        EXPECT_EQ(getItemIndex("A"), INVALID_ID);
        EXPECT_EQ(label("A"), 1u);
        EXPECT_EQ(TestAccess::render().labels[3], "A"); // behind "Presets", "Diff" and "Snapshots"
        bool gone = false;
        addCounter("B", [guard = atEnd([&] { gone = !System::instance() && label("C") == INVALID_ID; })] {
            return 1;
        });
        System::shutdown();
        EXPECT_TRUE(gone);
    }
    EXPECT_EQ(reports.take(), Names{});
    System::shutdown();
    EXPECT_EQ(reports.take(), Names{"System::Data::s_system != nullptr"});
    unsigned found = 0;
    System::initialize();
    addCounter("old", [guard = atEnd([&] { found = getItemIndex("old"); })] { return 1; });
    System::initialize();
    EXPECT_EQ(found, INVALID_ID); // the old one's functors see the new one, which is empty
    System::shutdown();
    EXPECT_EQ(reports.take(), Names{"System::Data::s_system == nullptr"});
}

TEST(SystemLifeDeathTest, atProcessExitItGoesAsInAShutdown)
{
    const auto leaveItUp = [] {
        System::initialize();
        addCounter("A", [guard = atEnd([] { std::fputs(System::instance() ? "up" : "down", stderr); })] {
            return 1;
        });
        std::exit(0); // NOLINT(concurrency-mt-unsafe)
    };
    // A process begun anew: a fork's exit would remove the folders that this one's statics keep.
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_EXIT(leaveItUp(), testing::ExitedWithCode(0), "^down$");
}

TEST(SystemLife, withoutAnInstanceTheFreeFunctionsDoNothing)
{
    test::Reports reports;
    EXPECT_EQ((Ids{label("A"), getItemIndex("A"), childrenCounter("A", 0, 0, 0, ""), table("A", 0, 0, {})}),
              Ids(4, INVALID_ID));
    EXPECT_EQ(getTableCell(1, 0, 0), "");
    setKeyColumn(1, 0);
    addRowAction(1, "action", {});
    setDefaultAction(1, {});
    addClipboardAction(1);
    EXPECT_EQ(reports.take(), Names{});
}

class SystemItems : public test::Panel {};

TEST_F(SystemItems, areFoundByNameOrMadeWhateverTheirKind)
{
    const unsigned a = label("A");
    const unsigned b = addCounter("B");
    bool dropped = false;
    EXPECT_EQ(addCounter("A", [guard = atEnd([&] { dropped = true; })] { return 1; }), a);
    EXPECT_TRUE(dropped);
    EXPECT_EQ((Ids{label("A"), label("B"), table("B", 0, 0, {}), label("A", a)}), (Ids{a, b, b, 3}));
    EXPECT_EQ(TestAccess::render().labels.nextIndex(), 5u);
    EXPECT_EQ((Ids{label(nullptr), getItemIndex(nullptr)}), (Ids{INVALID_ID, INVALID_ID}));
}

TEST_F(SystemItems, areReachedByTheirPaths)
{
    label("b", label("A"));
    label("x/y");
    const std::pair<const char*, unsigned> found[] = {{"A", 1}, {"A/", 1}, {"A/b", 2}, {"A/b/", 2}};
    for (const auto& [path, id] : found)
        EXPECT_EQ(getItemIndex(path), id) << path;
    for (const char* path : {"", "/", "/A", "A//b", "a", "A ", "b", "x", "x/y", "A/b/c"})
        EXPECT_EQ(getItemIndex(path), INVALID_ID) << path;
}

TEST_F(SystemItems, areRemovedWithAllBelowAndTheirIdsUsedAgain)
{
    const unsigned a = label("A");
    label("deep", label("b", a));
    system().removeItem(a);
    system().removeItem(a);
    EXPECT_EQ((Ids{getItemIndex("A"), getItemIndex("A/b")}), (Ids{INVALID_ID, INVALID_ID}));
    EXPECT_EQ(label("new"), a);
    EXPECT_EQ(TestAccess::render().labels.nextIndex(), 4u); // "new" has the slot freed last
    test::Reports reports;
    system().removeItem(0);
    EXPECT_EQ(reports.take(), Names{"false && \"Wrong statistics item type\""});
    EXPECT_EQ(getItemIndex("new"), a);
}

TEST_F(SystemItems, withAParentThatIsNotThereAreReportedAndNotMade)
{
    const unsigned stale = label("gone");
    system().removeItem(stale);
    const std::pair<unsigned, const char*> parents[] = {
        {INVALID_ID, "parentId != INVALID_ID"},
        {stale, "!slot.isFree() && \"Try to access unreferenced slot!\""},
        {100, "idx < size()"}};
    for (const auto& [parent, expression] : parents) {
        test::Reports reports;
        EXPECT_EQ((Ids{label("x", parent),
                       addCounter(
                           "x", [] { return 1; }, 0, parent),
                       childrenCounter("x", 0, parent, 0, ""), table("x", 0, parent, {})}),
                  Ids(4, INVALID_ID));
        EXPECT_EQ(reports.take(), Names(4, expression));
    }
    const Render& render = TestAccess::render();
    EXPECT_EQ((Ids{render.labels.nextIndex(), render.counters.size(), render.tables.size()}), (Ids{3, 0, 0}));
}

TEST_F(SystemItems, of65536LabelsTheNextIsReportedAndAllElseGoesOn)
{
    const unsigned parent = label("parent");
    unsigned last = 0;
    for (unsigned i = 4; i < 65536; ++i)
        last = label(std::to_string(i).c_str(), parent);
    {
        test::Reports reports;
        EXPECT_EQ(label("one too many"), INVALID_ID);
        EXPECT_NE(reports.texts().at(0).find("\r\nNo more than 65536 items"), std::string::npos);
    }
    EXPECT_EQ(label("65535", parent), last);
    EXPECT_NE(addCounter("counter"), INVALID_ID);
    system().removeItem(last);
    EXPECT_EQ(label("one more"), last);
    EXPECT_TRUE(show().contains("counter"));
}

TEST_F(SystemItems, areSampledByTheirPeriods)
{
    constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
    struct Step {
        float dt;
        bool sampled;
        bool enabled = true;
    };
    const std::pair<float, std::vector<Step>> cases[] = {
        {10, {{0, true}, {0, false}, {9.5f, false}, {0.25f, false}, {0.25f, true}, {9, false}, {1, true}}},
        {1, {{0.7f, true}, {0.7f, false}, {0.7f, true}, {0.7f, false}, {0.7f, true}}}, // excess is dropped
        {0, {{0, true}, {0, true}, {1, true}}},
        {-1, {{0, true}, {0, true}}},
        {kNan, {{0, true}, {0, true}}},
        {INFINITY, {{0, true}, {0, false}, {1e30f, false}, {-1, true}, {1, false}}},
        {5, {{1, true}, {-1, true}, {4, false}, {kNan, true}, {4, false}, {-INFINITY, true}, {5, true}}},
        {5, {{9, false, false}, {0, true}, {9, false, false}, {-1, false, false}, {4, false}, {1, true}}}};
    for (const auto& [period, steps] : cases) {
        std::string samples;
        const unsigned rows = table("table", period, 0, [&] { return samples += 't', 0u; });
        const unsigned counter = addCounter(
            "counter", [&] { return samples += 'c', 1; }, period);
        for (std::size_t i = 0; i < steps.size(); ++i) {
            samples.clear();
            system().update(steps[i].dt, steps[i].enabled);
            EXPECT_EQ(samples, steps[i].sampled ? "ct" : "") << "period " << period << ", step " << i;
            samples.clear();
            for (const unsigned id : {counter, rows})
                system().updateNode(id);
            EXPECT_EQ(samples, "ct") << "on demand, which touches no time";
        }
        system().removeItem(counter);
        system().removeItem(rows);
    }
}

TEST_F(SystemItems, ofManyAreSampledEachByItsOwnPeriodAndNoneThatIsGone)
{
    constexpr std::size_t kCount = 150;
    const auto period = [](std::size_t i) { return i < 100 ? 1000.0f : static_cast<float>(i % 7); };
    std::vector<int> samples(kCount);
    Ids ids;
    for (std::size_t i = 0; i < kCount; ++i) {
        const auto getter = [&samples, i] { return ++samples[i]; };
        ids.push_back(addCounter(std::to_string(i), getter, period(i)));
    }
    for (const unsigned gone : {3u, 64u, 120u, 149u})
        system().removeItem(std::exchange(ids[gone], INVALID_ID));
    std::vector<float> timers(kCount, FLT_MAX);
    std::vector<int> expected(kCount);
    for (const float dt : {0.0f, 1.5f, 2.0f, 990.0f, NAN, 3.0f, INFINITY, 6.5f, -1.0f, 0.5f}) {
        for (std::size_t i = 0; i < kCount; ++i) {
            timers[i] += dt;
            if (!(dt >= 0) || timers[i] >= period(i)) {
                timers[i] = 0;
                expected[i] += ids[i] != INVALID_ID;
            }
        }
        system().update(dt, true);
        EXPECT_EQ(samples, expected) << "after " << dt;
    }
}

TEST_F(SystemItems, optionsOutOfRangeAreClamped)
{
    EXPECT_EQ(system().options().background, 0.0f);
    const std::vector<std::pair<float, float>> givenAndKept = {
        {0.5f, 0.5f}, {-1.0f, 0.0f}, {7.0f, 1.0f}, {NAN, 0.0f}};
    for (const auto& [given, kept] : givenAndKept) {
        statistics::Options options;
        options.background = given;
        options.compareTolerance = -given;
        system().setOptions(options);
        EXPECT_EQ(system().options().background, kept) << given;
        EXPECT_GE(system().options().compareTolerance, 0.0f) << given;
    }
}

} // namespace
