// What hosts turn on beyond the plain panel: how it looks, and that nothing of it stays when it goes.
#include "support/counter_panel.h"
#include "support/draw_data.h"
#include "support/files.h"
#include "support/table_panel.h"
#include "support/test_access.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

using namespace statistics;
using Lines = std::vector<std::string>;

constexpr ImU32 kHigh = IM_COL32(245, 48, 48, 255);
const std::string kHead = "sep=\t\nCaption\tValue\n";

class Looks : public test::CounterPanel {
protected:
    template<typename Value>
    static void turnOn(Value Options::*option, Value value)
    {
        Options options = system().options();
        options.*option = value;
        system().setOptions(options);
    }
    Lines linesBelow(const std::string& caption)
    {
        const Lines lines = ui.read().lines();
        return {std::find(lines.begin(), lines.end(), caption) + 1, lines.end()};
    }
    void openSnapshots(const std::string& folder)
    {
        ASSERT_TRUE(system().createStatsAnalyzer(dir("root"), "run", {}));
        show();
        for (const std::string& text : {std::string("Diff"), std::string("Snapshots"), folder})
            ui.click(text);
    }

    test::TempDir dir;
};

TEST_F(Looks, aHostOpensAndClosesWhatTheUserDoes)
{
    const unsigned a = label("A");
    const unsigned deep = label("deep", a);
    label("leaf", deep);
    label("in B", label("B"));
    system().openNode(deep, true);
    system().openNode(getItemIndex("B"), true);
    system().openNode(getItemIndex("B"), false);
    EXPECT_EQ(show().lines(), (Lines{"Statistics", "A", "deep", "leaf", "B"})); // from the first frame on
    ui.click("deep");
    EXPECT_EQ(ui.read().lines(), (Lines{"Statistics", "A", "deep", "B"}));
    system().openNode(a, false);
    system().openNode(deep, true);
    system().openNode(a, false);
    EXPECT_EQ(show().lines(), (Lines{"Statistics", "A", "B"}));
    ui.click("A");
    EXPECT_EQ(ui.read().lines(), (Lines{"Statistics", "A", "deep", "leaf", "B"}));
}

TEST_F(Looks, whatIsAskedOfANodeThatIsGoneOpensNoOther)
{
    for (const unsigned id : {0u, 77u, 4000u, INVALID_ID})
        system().openNode(id, true);
    const unsigned gone = label("gone");
    system().openNode(gone, true);
    system().removeItem(gone);
    system().openNode(gone, true);
    ASSERT_EQ(label("next"), gone);
    label("leaf", gone);
    EXPECT_EQ(show().lines(), (Lines{"Statistics", "next"}));
    // A hidden panel takes it when it is seen again.
    system().setPanelOpen(false);
    system().openNode(gone, true);
    show();
    system().setPanelOpen(true);
    EXPECT_EQ(show().lines(), (Lines{"Statistics", "next", "leaf"}));
}

TEST_F(Looks, theLimitThatTheLastSampleCrossedStandsOut)
{
    CounterValue value = 5u;
    add("Limited", limited(10u, 20u, [&] { return value; }));
    const auto shownHigh = [&] {
        Lines texts;
        for (const char* limit : {"10", "20"})
            if (ui.text(limit).color == kHigh)
                texts.emplace_back(limit);
        return texts;
    };
    show();
    EXPECT_EQ(shownHigh(), Lines{});
    turnOn(&Options::markOutside, true);
    const std::pair<unsigned, Lines> cases[] = {{5, {"10"}}, {10, {}}, {20, {}}, {21, {"20"}}};
    for (const auto& [sampled, marked] : cases) {
        value = sampled;
        show();
        value = 15u; // nothing is read to draw
        ui.frame();
        EXPECT_EQ(shownHigh(), marked) << sampled;
    }
    turnOn(&Options::markOutside, false);
    ui.frame();
    EXPECT_EQ(shownHigh(), Lines{});
}

class SortArrows : public test::TablePanel {
protected:
    // The arrows on a header: their bounds.
    std::vector<test::Rect> arrows(const std::string& header)
    {
        const test::Rect button = ui.read().rectsAt(ui.text(header).center()).back();
        std::vector<test::Rect> found;
        for (const test::Rect& mark : ui.read().marks)
            if (button.contains(mark.min) && button.contains(mark.max))
                found.push_back(mark);
        return found;
    }
};

TEST_F(SortArrows, standBesideTheCaptionOfTheColumnThatIsSorted)
{
    system().getTable(id)->addColumn(
        "Much longer than wide", [](auto) { return CounterValue(); }, 0.1f);
    show();
    EXPECT_EQ(arrows("Name").size(), 0u);
    Options options;
    options.sortArrows = true;
    system().setOptions(options);
    ui.frame();
    ASSERT_EQ(arrows("Name").size(), 1u);
    EXPECT_GT(arrows("Name")[0].min.x, ui.text("Name").max.x);
    EXPECT_EQ(arrows("Size").size(), 0u);
    ui.click("Size");
    EXPECT_EQ(arrows("Name").size(), 0u);
    EXPECT_EQ(arrows("Size").size(), 1u);
    EXPECT_EQ(lines()[1], "beta | 3 B | ---");
    ui.click("Size");
    EXPECT_EQ(arrows("Size").size(), 1u);
    EXPECT_EQ(lines()[1], "gamma | 1 B | ---");
    table.sort(2, true);
    show();
    const test::Text* cut = ui.read().findContaining("Much");
    ASSERT_TRUE(cut);
    ASSERT_EQ(arrows(cut->text).size(), 1u);
    EXPECT_GE(arrows(cut->text)[0].min.x, cut->max.x - 4); // the last letter is cut
}

TEST_F(Looks, snapshotsStandByNameWhileTheHostWantsIt)
{
    for (const char* folder : {"run-10", "run-9", "run-09"})
        dir.write(std::string("root/") + folder + "/x.csv", kHead);
    for (const char* file : {"f290.csv", "f023.csv", "f1000.csv", "e.csv"})
        dir.write(std::string("root/run-9/") + file, kHead);
    openSnapshots("run-9");
    const Lines asFound = ui.read().lines();
    const Lines byName = {"run-09", "run-9", "e.csv", "f023.csv", "f290.csv", "f1000.csv", "x.csv", "run-10"};
    for (int round = 0; round < 2; ++round) {
        turnOn(&Options::sortSnapshots, true);
        ui.frames(2);
        Lines lines = linesBelow("Snapshots");
        lines.resize(byName.size());
        EXPECT_EQ(lines, byName);
        turnOn(&Options::sortSnapshots, false);
        ui.frames(2);
        EXPECT_EQ(ui.read().lines(), asFound);
    }
    turnOn(&Options::sortSnapshots, true);
    ui.frames(2);
    const auto& records = TestAccess::data().statsAnalyzer->snapshots;
    const auto first = std::find_if(records.begin(), records.end(),
                                    [](const auto& record) { return record.name == "e.csv"; });
    ui.clickBox("e.csv"); // boxes act on their own record
    EXPECT_EQ(TestAccess::data().statsAnalyzer->diffTable.m_columns.at(0).snapshot, first->index);
    system().setOptions({});
    ui.click("Take snapshot"); // "run" comes last, and first by name
    turnOn(&Options::sortSnapshots, true);
    ui.frames(2);
    EXPECT_EQ(linesBelow("Snapshots")[0], "run");
}

TEST_F(Looks, theComparisonFlagsWhatDiffersByMoreThanTheTolerance)
{
    dir.write("root/old/a.csv", kHead + "same\t100\nnear\t100\nfar\t100\nnan\tnan\n");
    dir.write("root/old/b.csv", kHead + "same\t100\nnear\t-104\nnear\t104\nfar\t106\nnan\tnan\n");
    turnOn(&Options::compareTolerance, 0.05f);
    openSnapshots("old");
    ui.clickBox("a.csv");
    ui.clickBox("b.csv");
    const auto flagged = [&] {
        ui.frame();
        Lines texts;
        for (const char* caption : {"same", "near", "far", "nan"})
            if (ui.text(caption).color == IM_COL32(255, 153, 0, 255))
                texts.emplace_back(caption);
        return texts;
    };
    EXPECT_EQ(flagged(), Lines{"far"});
    turnOn(&Options::compareTolerance, 0.2f);
    EXPECT_EQ(flagged(), Lines{});
    for (const float none : {0.0f, -1.0f, std::numeric_limits<float>::quiet_NaN()}) {
        turnOn(&Options::compareTolerance, 1.0f);
        turnOn(&Options::compareTolerance, none);
        EXPECT_EQ(flagged(), (Lines{"near", "far", "nan"}));
    }
}

// A panel with something of each kind, all of it open.
class WholePanel : public Looks {
protected:
    WholePanel()
    {
        for (const char* file : {"b.csv", "e.csv", "d.csv", "g.csv", "f.csv", "c.csv"})
            dir.write(std::string("root/old/") + file, kHead + "x\t1\n");
        dir.write("root/old/a.csv", kHead + "x\t1.01\n");
        system().createPreset("preset", {});
        const unsigned group = label("group");
        add("plain", Counter([] { return 7; }), group);
        for (const int value : {-1, 5, 11})
            add("limited " + std::to_string(value), limited(0, 10, [value] { return value; }), group);
        const unsigned rows = statistics::table("rows", 0, group, [] { return 3; });
        system().getTable(rows)->addColumn(
            "column", [](std::size_t row) { return static_cast<int>(row); }, 0.5f);
        openSnapshots("old");
        for (const char* text : {"Presets", "group", "column", "a.csv", "b.csv"})
            ui.click(text);
        ui.moveTo("limited 5");
    }
    std::string drawn()
    {
        show();
        ui.frames(3);
        return test::drawData();
    }
};

TEST_F(WholePanel, isThePlainOneAgainToTheByteWhenAllIsTurnedOff)
{
    const std::string plain = drawn();
    Options all;
    all.history = 100;
    all.filter = all.markOutside = all.sortArrows = all.sortSnapshots = true;
    all.background = 1;
    all.compareTolerance = 0.1f;
    const auto changesWith = [&](auto option) {
        Options options;
        options.*option = all.*option;
        system().setOptions(options);
        return drawn() != plain;
    };
    EXPECT_TRUE(changesWith(&Options::background));
    EXPECT_TRUE(changesWith(&Options::markOutside));
    EXPECT_TRUE(changesWith(&Options::sortArrows));
#ifndef _WIN32 // which lists files by name
    EXPECT_TRUE(changesWith(&Options::sortSnapshots));
#endif
    EXPECT_TRUE(changesWith(&Options::compareTolerance));
    system().setOptions(all);
    drawn();
    system().setOptions({});
    EXPECT_TRUE(drawn() == plain);
}

} // namespace
