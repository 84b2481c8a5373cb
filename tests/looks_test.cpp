// What hosts turn on beyond the plain panel: how it looks, and that nothing of it stays when it goes.
#include "support/counter_panel.h"
#include "support/draw_data.h"
#include "support/files.h"
#include "support/table_panel.h"
#include "support/test_access.h"

#include <algorithm>

namespace {

using namespace statistics;
using Lines = std::vector<std::string>;

constexpr ImU32 kHigh = IM_COL32(245, 48, 48, 255);
const std::string kHead = "sep=\t\nCaption\tValue\n";

class Looks : public test::CounterPanel {
protected:
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
        for (const test::Text& text : ui.read().texts)
            if (text.color == kHigh)
                texts.push_back(text.text);
        return texts;
    };
    show();
    EXPECT_EQ(shownHigh(), Lines{});
    setOption(&Options::markOutside, true);
    const std::pair<unsigned, Lines> cases[] = {{5, {"10"}}, {10, {}}, {20, {}}, {21, {"20"}}};
    for (const auto& [sampled, marked] : cases) {
        value = sampled;
        show();
        value = 15u; // nothing is read to draw
        ui.frame();
        EXPECT_EQ(shownHigh(), marked) << sampled;
    }
    setOption(&Options::markOutside, false);
    ui.frame();
    EXPECT_EQ(shownHigh(), Lines{});
}

class SortArrows : public test::TablePanel {
protected:
    /// The arrows on a header: their bounds.
    std::vector<test::Rect> arrows(const std::string& header)
    {
        const test::Rect button = ui.read().rectsAt(ui.text(header).center()).back();
        std::vector<test::Rect> found;
        for (const test::Rect& mark : ui.read().marks)
            if (button.contains(mark.min) && button.contains(mark.max))
                found.push_back(mark);
        return found;
    }
    /// The headers that have one, which is wider above where it points down.
    Lines pointed()
    {
        Lines headers;
        for (const std::string header : {"Name", "Size"})
            for (const test::Rect& arrow : arrows(header))
                headers.push_back(header + (arrow.middle.y < arrow.center().y ? " down" : " up"));
        return headers;
    }
};

TEST_F(SortArrows, standOnTheHeaderOfTheColumnThatIsSorted)
{
    show();
    EXPECT_EQ(pointed(), Lines{});
    setOption(&Options::sortArrows, true);
    show();
    EXPECT_EQ(pointed(), Lines{"Name up"});
    for (const auto& [arrow, first] :
         {std::pair("Size down", "beta | 3 B"), std::pair("Size up", "gamma | 1 B")}) {
        ui.click("Size");
        EXPECT_EQ(pointed(), Lines{arrow});
        EXPECT_EQ(lines()[1], first);
    }
}

TEST_F(SortArrows, standBehindTheCaptionAndCutALongOne)
{
    table.addColumn(
        "Much longer than wide", [](auto) { return CounterValue(); }, 0.1f);
    table.m_header[0].widthFraction = 60 / 850.0f; // just enough for both
    table.m_header[1].widthFraction = 20 / 850.0f; // not even for an arrow
    setOption(&Options::sortArrows, true);
    show();
    EXPECT_GT(arrows("Name").at(0).min.x, ui.text("Name").max.x);
    table.sort(2, true);
    show();
    const test::Text* cut = ui.read().findContaining("Much");
    ASSERT_TRUE(cut);
    EXPECT_GE(arrows(cut->text).at(0).min.x, cut->max.x - 4); // the last letter is cut
    const std::size_t marks = ui.read().marks.size();
    table.sort(1, true);
    show();
    EXPECT_EQ(ui.read().marks.size(), marks - 1);
}

class SortedSnapshots : public Looks {
protected:
    SortedSnapshots()
    {
        for (const char* file :
             {"run-10/x", "run-9/x", "run-09/x", "run-9/f290", "run-9/f023", "run-9/f1000"})
            dir.write("root/" + std::string(file) + ".csv", kHead);
        openSnapshots("run-9");
    }
    Lines shownWith(bool sorted)
    {
        setOption(&Options::sortSnapshots, sorted);
        ui.frames(2);
        const Lines lines = ui.read().lines();
        return {std::find(lines.begin(), lines.end(), "Snapshots") + 1, lines.end() - 1}; // but the buttons
    }
};

TEST_F(SortedSnapshots, standByNameWhileTheHostWantsItAndActOnTheirOwnRecords)
{
    const Lines asFound = shownWith(false);
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(shownWith(true),
                  (Lines{"run-09", "run-9", "f023.csv", "f290.csv", "f1000.csv", "x.csv", "run-10"}));
        EXPECT_EQ(shownWith(false), asFound);
    }
    ui.click("Take snapshot"); // "run" comes last, and first by name
    EXPECT_EQ(shownWith(true)[0], "run");
    ui.clickBox("f023.csv");
    const auto& store = *TestAccess::data().statsAnalyzer;
    const std::size_t ticked = store.diffTable.m_columns.at(0).snapshot;
    EXPECT_EQ(store.snapshots.at(ticked).name, "f023.csv");
}

/// A panel with something of each kind, all of it open.
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
    const std::pair<const char*, void (*)()> cases[] = {
        {"background", [] { setOption(&Options::background, 1); }},
        {"markOutside", [] { setOption(&Options::markOutside, true); }},
        {"sortArrows", [] { setOption(&Options::sortArrows, true); }},
#ifndef _WIN32 // which lists files by name
        {"sortSnapshots", [] { setOption(&Options::sortSnapshots, true); }},
#endif
        {"compareTolerance", [] { setOption(&Options::compareTolerance, 0.1f); }},
        {"history", [] { setOption(&Options::history, 100); }},
        {"filter", [] { setOption(&Options::filter, true); }},
    };
    for (const auto& [option, turnOn] : cases) {
        turnOn();
        EXPECT_NE(test::firstDifference(drawn(), plain), "") << option << " changes nothing";
        system().setOptions({});
        EXPECT_EQ(test::firstDifference(drawn(), plain), "") << option << " leaves something";
    }
    for (const auto& [option, turnOn] : cases)
        turnOn();
    drawn();
    system().setOptions({});
    EXPECT_EQ(test::firstDifference(drawn(), plain), "") << "all together leave something";
}

} // namespace
