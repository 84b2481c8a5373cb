// The past of counters on the panel: marks in the bar, the tooltip with its plot, the menu that copies.
#include "support/counter_panel.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <string>
#include <vector>

namespace {

using Strings = std::vector<std::string>;

class HistoryPanel : public test::CounterPanel {
protected:
    static constexpr float kPlotWidth = 300;
    static constexpr float kPlotHeight = 90;
    static constexpr ImU32 kOutside = IM_COL32(245, 48, 48, 255);

    void give(const std::vector<CounterValue>& values)
    {
        for (const CounterValue& next : values) {
            value = next;
            sample();
        }
        ui.frames(2);
    }

    Counter counter(const std::string& format = "")
    {
        return Counter([this] { return value; }, format);
    }

    /// What the tooltip says, line by line.
    Strings pointAt(std::string_view text)
    {
        ui.moveTo(text);
        ui.frames(2);
        Strings lines = ui.read().lines(" ");
        for (const test::Text& shown : ui.read().texts)
            if (shown.window.rfind("##Tooltip", 0) != 0)
                lines[shown.line].clear();
        lines.erase(std::remove(lines.begin(), lines.end(), ""), lines.end());
        return lines;
    }

    test::Rect plot()
    {
        for (const test::Rect& rect : ui.read().rects)
            if (rect.size().x == kPlotWidth && rect.size().y == kPlotHeight)
                return rect;
        ADD_FAILURE() << "no plot";
        return {};
    }

    /// Of all that is filled in a colour inside the plot.
    test::Rect bounds(ImU32 wanted)
    {
        const test::Rect area = plot();
        test::Rect all{area.max, area.min, wanted};
        for (const test::Rect& rect : ui.read().rectsOf(wanted)) {
            if (!area.contains(rect.center()))
                continue;
            all.min = {std::min(all.min.x, rect.min.x), std::min(all.min.y, rect.min.y)};
            all.max = {std::max(all.max.x, rect.max.x), std::max(all.max.y, rect.max.y)};
        }
        return all;
    }

    CounterValue value;
};

TEST_F(HistoryPanel, showsPathNumbersAndSpanInTheCountersOwnFormat)
{
    const unsigned group = system().createLabel("50% ##Group");
    add("Items", counter("%d ##items"), group, 0);
    add("Load", {0, 100, [this] { return value; }, "%.1f%%", "%d%%"}, group, -1);
    keep(10);
    give({1, 2, 5});
    ui.click("50% ##Group");
    EXPECT_EQ(pointAt("5 ##items"), (Strings{"50% ##Group/Items", "3 samples", "lowest 1 ##items",
                                             "mean 3 ##items", "highest 5 ##items", "last 5 ##items"}));
    EXPECT_EQ(pointAt("5.0%"), (Strings{"50% ##Group/Load", "3 samples", "lowest 1.0%", "mean 2.7%",
                                        "highest 5.0%", "last 5.0%", "limits 0% to 100%"}));
    EXPECT_EQ(pointAt("Items"), Strings());
    keep(0);
    EXPECT_EQ(pointAt("5 ##items"), Strings());
}

TEST_F(HistoryPanel, tellsTheTimeThatTheSamplesSpan)
{
    const unsigned id = add("Count", counter(), 0, 0.5f);
    add("Once", Counter([] { return 4; }), 0, INFINITY);
    keep(100);
    value = 3;
    show();
    EXPECT_EQ(pointAt("3").at(1), "1 sample over 0.5");
    for (int times = 0; times < 9; ++times)
        system().updateNode(id);
    EXPECT_EQ(pointAt("4").at(1), "1 sample");
    keep(50);
    EXPECT_EQ(pointAt("3"), (Strings{"Count", "10 samples over 5", "lowest 3", "mean 3.000", "highest 3",
                                     "last 3", "Constant."}));
}

TEST_F(HistoryPanel, saysWhatAPlotCannotShow)
{
    add("Value", counter());
    const std::pair<std::vector<CounterValue>, std::string> cases[] = {
        {{CounterValue(), "text"}, "No past: there has been no number yet."},
        {{2, 2, 2}, "Constant."},
        {{NAN, NAN}, "No finite sample: not a number."},
        {{INFINITY, NAN}, "No finite sample: infinite."},
        {{1, NAN, "gone"}, "Constant. 2 not finite."},
        {{-3, 7u, CounterValue(), "gone", INFINITY}, "3 not finite."},
        {{-FLT_MAX, INFINITY, FLT_MAX}, "1 not finite."},
    };
    for (const auto& [values, note] : cases) {
        keep(0);
        keep(10);
        give(values);
        EXPECT_EQ(pointAt(value.toString(nullptr)).back(), note);
    }
}

/// One sample among so many is higher than the rest, one lower; they may stand on any pixel.
TEST_F(HistoryPanel, showsLowestAndHighestOfManySamplesWhereverTheyStand)
{
    add("Value", counter());
    keep(10000);
    ImGui::GetStyle().AntiAliasedFill = false;
    for (int index = 0; index < 10000; ++index) {
        value = index == 3333 ? 90.0f : index == 7001 ? 10.0f : 50.0f;
        sample();
    }
    ui.frames(2);
    pointAt("50.000");
    const test::Rect shown = bounds(ImGui::GetColorU32(ImGuiCol_PlotLines));
    EXPECT_NEAR(shown.min.x, plot().min.x, 3);
    EXPECT_NEAR(shown.max.x, plot().max.x, 3);
    EXPECT_NEAR(shown.min.y, plot().min.y, 3);
    EXPECT_NEAR(shown.max.y, plot().max.y, 3);
}

TEST_F(HistoryPanel, marksWhatIsOutsideTheLimitsAndNothingOnThem)
{
    add("Value", {0, 10, [this] { return value; }, "%d items", ""});
    keep(10);
    give({0, 10, 10, 0});
    pointAt("0 items");
    const auto reach = [&] { return bounds(kOutside).max.y - bounds(kOutside).min.y; };
    EXPECT_LE(reach(), 0);
    give({20, 5});
    ui.frames(2);
    EXPECT_NEAR(bounds(kOutside).min.y, plot().min.y, 3);
    const ImU32 tint = ImGui::ColorConvertFloat4ToU32({0.96f, 0.19f, 0.19f, 0.15f});
    const auto colorAt = [&](float part) {
        const test::Rect area = plot();
        return ui.read().rectsAt({area.center().x, area.min.y + part * area.size().y}).back().color;
    };
    EXPECT_EQ(colorAt(0.45f), tint);
    EXPECT_EQ(colorAt(0.55f), plot().color);
}

TEST_F(HistoryPanel, showsALoneSampleAsADot)
{
    ImGui::GetStyle().AntiAliasedFill = false;
    add("Value", counter());
    keep(10);
    give({NAN, 5, NAN});
    pointAt("nan");
    const test::Rect dot = bounds(ImGui::GetColorU32(ImGuiCol_PlotLines));
    EXPECT_EQ(dot.size().x, 4);
    EXPECT_EQ(dot.size().y, 4);
}

TEST_F(HistoryPanel, leavesOutALimitThatWouldFlattenTheSamples)
{
    ImGui::GetStyle().AntiAliasedFill = false;
    const float all = kPlotHeight - 4;
    const struct {
        float min, max;
        float height; // of the samples, which reach from 40 to 60
        std::string limits;
    } cases[] = {
        {-FLT_MAX, FLT_MAX, all, "limits none to none"},
        {0, 100, all / 5, "limits 0.000 to 100.000"},
        {-1e6f, 1e6f, all, "limits -1000000.000 to 1000000.000"},
        {-1e6f, -1e5f, all, "limits -1000000.000 to -100000.000"}, // all of them outside
    };
    keep(10);
    for (const auto& [min, max, height, limits] : cases) {
        const unsigned id = add("Value", limited(min, max, [this] { return value; }));
        give({40.0f, 60.0f, 40.0f, 41.0f});
        EXPECT_EQ(pointAt("41.000").back(), limits);
        const ImU32 drawn = max < 0 ? kOutside : ImGui::GetColorU32(ImGuiCol_PlotLines);
        EXPECT_NEAR(bounds(drawn).size().y, height, 2) << limits;
        EXPECT_NEAR(bounds(drawn).max.x, plot().max.x, 3) << limits;
        system().removeItem(id);
    }
}

TEST_F(HistoryPanel, marksLowestAndHighestInTheBar)
{
    const unsigned id = add("Value", limited(0.0f, 100.0f, [this] { return value; }));
    const auto marks = [&] {
        const test::Text lower = ui.text("0.000");
        std::vector<float> places;
        for (const test::Rect& rect : ui.read().rectsOf(ImGui::GetColorU32(ImGuiCol_Text, 0.6f)))
            places.push_back(
                std::round((rect.min.x - lower.max.x - ImGui::GetStyle().ItemSpacing.x) / 2.75f));
        return places;
    };
    give({20.0f, 80.0f, 50.0f});
    EXPECT_EQ(marks(), std::vector<float>());
    keep(3);
    give({20.0f, 80.0f, 50.0f});
    EXPECT_EQ(marks(), (std::vector<float>{20, 80}));
    system().removeItem(id);
    add("Next", limited(0.0f, 100.0f, [this] { return value; }));
    give({50.0f, 500.0f, INFINITY});
    EXPECT_EQ(marks(), (std::vector<float>{50, 100}));
    keep(2); // and with the next sample as many as have been
    give({NAN});
    EXPECT_EQ(marks(), std::vector<float>());
}

TEST_F(HistoryPanel, copiesPathValueAndHistory)
{
    const unsigned group = system().createLabel("Group");
    add("Value", counter("%.1f ms"), group, 0.5f);
    add("Text", Counter([] { return CounterValue("word"); }), group);
    keep(3);
    for (const float next : {1.0f, 2.25f, NAN}) {
        value = next;
        system().updateNode(system().getItemIndex("Group/Value"));
    }
    value = 4;
    show();
    ui.click("Group");
    const auto copy = [&](std::string_view counterText, std::string_view entry) {
        ui.rightClick(counterText);
        ui.click(entry);
        return ui.clipboard();
    };
    EXPECT_EQ(copy("4.0 ms", "Copy path"), "Group/Value");
    EXPECT_EQ(copy("4.0 ms", "Copy value"), "4.0 ms");
    EXPECT_EQ(copy("4.0 ms", "Copy history"), "-1\t2.25\n-0.5\tnan\n0\t4\n");
    ui.rightClick("word");
    EXPECT_FALSE(ui.read().contains("Copy history"));
}

TEST_F(HistoryPanel, menuCopiesNothingOfACounterThatHasGone)
{
    const unsigned id = add("Value", counter());
    keep(3);
    give({7});
    ui.rightClick("7");
    system().removeItem(id);
    add("Other", Counter([] { return 8; }));
    ui.frames(2);
    EXPECT_FALSE(ui.read().contains("Copy value"));
    ui.click("Copy path");
    EXPECT_EQ(ui.clipboard(), "Value");
}

} // namespace
