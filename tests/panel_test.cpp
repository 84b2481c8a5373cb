// The panel as its user sees it: order, names, opening and closing, window, scrolling.
#include "support/counter_panel.h"
#include "support/test_access.h"

#include <imgui_internal.h>

#include <cmath>
#include <set>
#include <tuple>

namespace {

using namespace statistics;
using Lines = std::vector<std::string>;

class PanelTest : public test::CounterPanel {
protected:
    static void addPresetAndSnapshots()
    {
        system().createPreset("preset", {});
        ASSERT_TRUE(system().createStatsAnalyzer(testing::TempDir() + "no such root", "run", {}));
    }
    /// Closed lines follow each other at one distance, whatever they show.
    void clickArrow(std::size_t line)
    {
        const ImVec2 panel = ui.window("Statistics").min;
        const ImGuiStyle& style = ImGui::GetStyle();
        const float first = panel.y + ImGui::GetFrameHeight() + style.WindowPadding.y;
        ui.click({panel.x + style.WindowPadding.x + style.IndentSpacing + 7,
                  first + (static_cast<float>(line) + 0.5f) * ImGui::GetTextLineHeightWithSpacing()});
    }
    Lines textsWith(const std::string& part)
    {
        Lines found;
        for (const test::Text& text : ui.read().texts)
            if (text.text.find(part) != std::string::npos)
                found.push_back(text.text);
        return found;
    }
    /// As a host that lays out its windows itself.
    void fixHeight(float height)
    {
        ImGui::GetIO().DisplaySize = ImVec2(1280, height + 100);
        ui.setScene([height] {
            ImGui::SetNextWindowSize(ImVec2(900, height));
            system().draw();
        });
        ui.frames(3);
    }
};

TEST_F(PanelTest, showsPresetsThenItemsThenSnapshotsAsFarAsThereAreAny)
{
    label("leaf", label("A"));
    label("B");
    EXPECT_EQ(show().lines(), (Lines{"Statistics", "A", "B"}));
    addPresetAndSnapshots();
    EXPECT_EQ(show().lines(), (Lines{"Statistics", "Presets", "A", "B", "Diff"}));
    system().clearPresets();
    system().removeStatsAnalyzer();
    system().removeItem(getItemIndex("A/leaf"));
    show();
    ui.click("A"); // a plain line again
    EXPECT_EQ(ui.read().lines(), (Lines{"Statistics", "A", "B"}));
}

TEST_F(PanelTest, showsOddNamesWholeAndOpensEachByItself)
{
    const Lines names = {
        "%", "100 %s %d %n",          "a/b",          "##", "###a", "a##b", "Presets", "Diff", "Statistics",
        "",  std::string(10000, 'x'), "\xFF\xC0 \x80"};
    Lines plain = {"Statistics"};
    plain.insert(plain.end(), names.begin(), names.begin() + 9);
    for (const bool withChildren : {false, true}) {
        for (std::size_t i = 0; i < names.size(); ++i) {
            const unsigned id = system().createLabel(names[i]);
            if (withChildren)
                system().createLabel("child " + std::to_string(i), id);
            if (withChildren && names[i].empty())
                label("hidden", system().createLabel("", id));
        }
        Lines lines = show().lines();
        EXPECT_EQ(textsWith("xxx").size(), 1u);
        lines.resize(plain.size());
        EXPECT_EQ(lines, plain);
    }
    for (std::size_t i = 0; i < names.size(); ++i) {
        clickArrow(i);
        EXPECT_EQ(textsWith("child"), Lines{"child " + std::to_string(i)});
        EXPECT_EQ(textsWith("hidden"), Lines{});
        clickArrow(i);
        EXPECT_EQ(textsWith("child"), Lines{});
    }
}

TEST_F(PanelTest, itemsOfOneNameOpenOneByOne)
{
    const Counter one([] { return CounterValue(1); });
    label("leaf 1", label("x", label("A")));
    label("leaf 2", add("x", one, label("B")));
    label("leaf 3", add("x", one, add("C", one)));
    label("mine 1", label("Presets"));
    label("mine 2", label("Diff"));
    addPresetAndSnapshots();
    show();
    for (const char* parent : {"C", "B", "A"})
        ui.click(parent);
    ui.click("x", 1);
    EXPECT_EQ(textsWith("leaf"), Lines{"leaf 2"});
    ui.click("x", 0);
    EXPECT_EQ(textsWith("leaf"), (Lines{"leaf 1", "leaf 2"}));
    ui.click("Presets", 1);
    ui.click("Diff", 0);
    EXPECT_EQ(textsWith("mine"), (Lines{"mine 1", "mine 2"}));
    for (const char* inside : {"preset", "Snapshots"})
        EXPECT_FALSE(ui.read().contains(inside)) << inside;
    ui.click("Presets", 0);
    ui.click("Diff", 1);
    for (const char* inside : {"preset", "Snapshots"})
        EXPECT_TRUE(ui.read().contains(inside)) << inside;
}

TEST_F(PanelTest, collapsesAndCloses)
{
    label("A");
    show();
    ui.doubleClick("Statistics");
    EXPECT_EQ(ui.read().lines(), Lines{"Statistics"});
    EXPECT_EQ(ui.imbalance(), "");
    ui.doubleClick("Statistics");
    EXPECT_TRUE(system().panelOpen());
    ui.clickClose("Statistics");
    EXPECT_EQ(ui.read().lines(), Lines{});
    EXPECT_FALSE(system().panelOpen());
    for (const bool open : {true, false}) {
        system().setPanelOpen(open);
        ui.frame();
        EXPECT_EQ(ui.read().lines(), open ? (Lines{"Statistics", "A"}) : Lines{});
    }
}

TEST_F(PanelTest, isDrawnInsideAFrameAlone)
{
    test::Reports reports;
    system().draw();
    ImGui::SetCurrentContext(nullptr);
    system().draw();
    EXPECT_EQ(reports.take(), (Lines{"widgets::isInsideFrame()", "ImGui::GetCurrentContext()"}));
}

TEST_F(PanelTest, firstAppearsWideEnoughForATableWithoutBackground)
{
    ui.frames(2);
    const test::Rect panel = ui.window("Statistics");
    EXPECT_GE(panel.size().x, 850 + 2 * 29); // with padding and indent at both sides
    EXPECT_NEAR(panel.size().y, 600, 50);
    EXPECT_EQ(ui.read().rectsAt(panel.center()).size(), 0u);
}

TEST_F(PanelTest, hasTheSizeThatSettingsOrHostGive)
{
    ImGui::LoadIniSettingsFromMemory("[Window][Statistics]\nPos=10,20\nSize=333,222\nCollapsed=0\n");
    ui.frames(2);
    EXPECT_EQ(ui.window("Statistics").size().x, 333);
    fixHeight(444);
    EXPECT_EQ(ui.window("Statistics").size().y, 444);
}

/// Lines of all kinds, some of them open, one wider than the window, one whose value changes its height.
class LongPanel : public PanelTest {
protected:
    using Extent = std::pair<float, float>;
    struct Look {
        std::set<std::tuple<std::string, long, long>> places; // text, x, y in the contents
        Extent extent;
    };

    LongPanel()
    {
        label((std::string(200, ' ') + "end").c_str());
        add("tall", Counter([this] { return CounterValue(tall ? "a\nb\nc" : "first"); }));
        label("two\nlines");
        for (int i = 0; i < 70; ++i) {
            const std::string number = std::to_string(i);
            const unsigned group = label(("group " + number).c_str());
            label(("leaf " + number).c_str(), group);
            label(("deep " + number).c_str(), label(("sub " + number).c_str(), group));
            const auto value = [i] { return CounterValue(i); };
            add("plain " + number, Counter(value), group);
            add("limited " + number, {0, 60, value, "%d in a bar", ""}, group);
            for (const char* name : {"box ", "odd ## box "})
                TestAccess::tree().addChild(TestAccess::render().createCheckbox(name + number, {}), group);
        }
        const unsigned rows =
            statistics::table("rows", 0, getItemIndex("group 0"), [this] { return tall ? 25 : 20; });
        system().getTable(rows)->addColumn(
            "column", [](auto row) { return CounterValue("cell " + std::to_string(row)); }, 0.5f);
        sample();
        fixHeight(5000); // all of it
        for (int i = 0; i < 60; i += 3)
            for (const char* name : {"group ", "sub "})
                ui.click(name + std::to_string(i));
    }

    static const ImGuiWindow& window() { return *ImGui::FindWindowByName("Statistics"); }
    static Extent extent() { return {window().ContentSize.x, window().ContentSize.y}; }

    Look look()
    {
        Look seen = {{}, extent()};
        for (const test::Text& text : ui.read().texts)
            seen.places.emplace(text.text, std::lround(text.min.x),
                                std::lround(text.center().y - window().DC.CursorStartPos.y));
        return seen;
    }
    /// In the part that the window shows now, but for lines that its borders cut.
    void expectSameAs(const Look& whole)
    {
        const auto inView = [](const Look& seen) {
            Lines texts;
            for (const auto& [text, x, y] : seen.places) {
                const float onScreen = static_cast<float>(y) + window().DC.CursorStartPos.y;
                if (onScreen > window().InnerClipRect.Min.y + 12 &&
                    onScreen < window().InnerClipRect.Max.y - 12)
                    texts.push_back(text + " at " + std::to_string(x) + ", " + std::to_string(y));
            }
            return texts;
        };
        EXPECT_GT(inView(whole).size(), 5u);
        EXPECT_EQ(inView(look()), inView(whole)) << "scrolled to " << window().Scroll.y;
        EXPECT_EQ(extent(), whole.extent);
    }

    bool tall = false;
};

TEST_F(LongPanel, scrollsAndAnswersClicksAsIfEachLineWereDrawn)
{
    const Look whole = look();
    fixHeight(300);
    ui.moveTo(ui.window("Statistics").center());
    for (const float direction : {-1.0f, 1.0f})
        for (float last = -1; last != window().Scroll.y; ui.wheel(0, direction)) {
            expectSameAs(whole);
            last = window().Scroll.y;
        }
    ui.wheel(0, -1000);
    ui.click("group 58");
    EXPECT_EQ(ui.text("leaf 58").line, ui.text("group 58").line + 1);
}

TEST_F(LongPanel, followsLinesTextsLimitsFontAndStyleOutOfView)
{
    std::string text = "short";
    add("grows", Counter([&] { return CounterValue(text); }));
    add("limits", {0, 1, [] { return 0; }, "", "%.60f\n\n"});
    TestAccess::tree().addChild(TestAccess::render().createCheckbox(std::string(50, 'b'), {}), 0);
    system().createPreset("far", {{"", {0, 1e30f}}});
    sample();
    ImGuiStyle& style = ImGui::GetStyle();
    const std::function<void()> changes[] = {
        [&] { system().removeItem(1); },   // the widest
        [&] { system().choosePreset(0); }, // while nothing else is as wide
        [&] { system().removeItem(getItemIndex("group 57/plain 57")); },
        [&] { system().removeItem(getItemIndex("group 69")); },
        [&] { label("three\nnew\nlines", getItemIndex("group 57")); }, // with the id of a lower one
        [&] { system().openNode(getItemIndex("group 57"), false); },
        [&] { text = std::string(300, 'w'); },
        [&] { text = std::string(250, 'i'); },
        [&] { tall = true; },
        [&] { style.IndentSpacing += 29; },
        [&] { tall = false; },
        [&] { style.IndentSpacing -= 29; }, // a look that is known, but for what has changed meanwhile
        [&] { style.ItemInnerSpacing.x = 2000; },
        [&] { style.ItemSpacing.y = 9; },
        [&] { style.FramePadding.y = 7; },
        [&] { ImGui::GetIO().FontGlobalScale = 2; }};
    for (const std::function<void()>& change : changes) {
        fixHeight(300);
        ui.moveTo(ui.window("Statistics").center());
        ui.wheel(0, -10); // the first lines and the last ones are out of view
        change();
        sample();
        ui.frames(3);
        const Extent skipped = extent();
        fixHeight(9000);
        EXPECT_EQ(skipped, extent()) << "change " << &change - changes;
    }
}

TEST_F(LongPanel, isLoggedWholeAndLooksAsBefore)
{
    const Look whole = look();
    fixHeight(300);
    ui.setScene([] {
        ImGui::LogToClipboard();
        system().draw();
        ImGui::LogFinish();
    });
    ui.frame();
    for (const char* text : {"end", "cell 19", "deep 57", "plain 59", "57 in a bar"})
        EXPECT_NE(ui.clipboard().find(text), std::string::npos) << text;
    fixHeight(300);
    expectSameAs(whole);
}

/// A host's own window, without anything of the library, shows where each key leads.
TEST_F(PanelTest, movesByTheKeyboardAsAPlainWindowDoes)
{
    constexpr int kLines = 210;
    constexpr int kGroup = 40; // every so many lines one can be opened
    for (int i = 0; i < kLines; ++i) {
        const unsigned id = label(("line " + std::to_string(i)).c_str());
        if (i % kGroup == 10)
            label("leaf", id);
    }
    const ImGuiKey keys[] = {ImGuiKey_DownArrow, ImGuiKey_DownArrow, ImGuiKey_UpArrow,
                             ImGuiKey_PageDown,  ImGuiKey_PageDown,  ImGuiKey_End,
                             ImGuiKey_PageUp,    ImGuiKey_Space,     ImGuiKey_Home};
    const auto plain = [] {
        ImGui::Begin("Plain");
        ImGui::TreePush("all");
        for (int i = 0; i < kLines; ++i) {
            const std::string text = "line " + std::to_string(i);
            if (i % kGroup != 10)
                ImGui::TextUnformatted(text.c_str());
            else if (ImGui::TreeNode(text.c_str())) {
                ImGui::TextUnformatted("leaf");
                ImGui::TreePop();
            }
        }
        ImGui::TreePop();
        ImGui::End();
    };
    const auto places = [&](const char* name, const std::function<void()>& draw) {
        ui.setScene([draw] {
            ImGui::SetNextWindowPos(ImVec2(0, 0));
            ImGui::SetNextWindowSize(ImVec2(400, 300));
            draw();
        });
        ui.frames(3);
        ui.click("line 10");
        ui.click("line 10");
        std::vector<std::tuple<long, long, int>> seen; // focused line, scrolling, layers of navigation
        for (std::size_t step = 0; step < 2 * std::size(keys); ++step) {
            ui.wheel(0, step < std::size(keys) ? 0 : -1000); // to where nothing can be opened
            ui.pressKey(keys[step % std::size(keys)]);
            ui.frames(3);
            const ImGuiWindow& window = *ImGui::FindWindowByName(name);
            seen.emplace_back(std::lround(window.NavRectRel[0].Min.y), std::lround(window.Scroll.y),
                              window.DC.NavLayersActiveMask);
        }
        return seen;
    };
    const auto expected = places("Plain", plain);
    EXPECT_EQ(places("Statistics", [] { system().draw(); }), expected);
    EXPECT_NE(expected[0], expected[1]);
}

TEST_F(PanelTest, findsAGroupThatWasMadeAnewAsTheUserLeftIt)
{
    const auto build = [](const Lines& names) {
        for (const std::string& name : names)
            label(("in " + name).c_str(), label(name.c_str()));
    };
    build({"X", "Y"});
    show();
    ui.click("X");
    for (const Lines& order : {Lines{"X", "Y"}, Lines{"Y", "X"}, Lines{"new", "Y", "X"}}) {
        while (!TestAccess::tree().m_nodes[0].children.empty())
            system().removeItem(TestAccess::tree().m_nodes[0].children[0]);
        build(order);
        show();
        EXPECT_EQ(textsWith("in "), Lines{"in X"});
    }
}

/// One window drawn twice a frame by a host of two looks: each keeps what it knows.
TEST_F(LongPanel, keepsItsPlaceInEachOfTwoLooks)
{
    fixHeight(300);
    ui.setScene([] {
        for (const float spacing : {4.0f, 11.0f}) {
            ImGui::PushStyleVar(ImGuiStyleVar_ItemSpacing, ImVec2(8, spacing));
            ImGui::SetNextWindowSize(ImVec2(900, 300));
            system().draw();
            ImGui::PopStyleVar();
        }
    });
    ui.frames(3);
    const float both = window().ContentSize.y;
    ui.moveTo(ui.window("Statistics").center());
    ui.wheel(0, -1000);
    EXPECT_EQ(window().ContentSize.y, both);
    ui.wheel(0, 1000);
    EXPECT_EQ(window().ContentSize.y, both);
}

} // namespace
