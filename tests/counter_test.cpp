// Counters: how often they read the host's value, what their line shows, how the bar is coloured.
#include "support/counter_panel.h"
#include "support/test_access.h"

#include <algorithm>
#include <cmath>
#include <list>

namespace {

class Counters : public test::CounterPanel {
protected:
    /// The width of all that is filled in one colour.
    float width(ImVec4 color, float alpha = 1)
    {
        color.w = alpha;
        float sum = 0;
        for (const test::Rect& rect : ui.read().rectsOf(ImGui::ColorConvertFloat4ToU32(color)))
            sum += rect.size().x;
        return sum;
    }

    static float height(const test::Text& text) { return text.max.y - text.min.y; }

    static constexpr float kBarWidth = 275;
};

TEST_F(Counters, areReadOnceASampleTwiceWithLimitsAndNeverToBeDrawn)
{
    int plain = 0;
    int twice = 0;
    add("Plain", Counter([&] { return ++plain; }));
    add("Limited", limited(0, 10, [&] { return ++twice; }), 0, 5);
    EXPECT_EQ(line("Limited"), "Limited | 0 | 1 | 10"); // the text is of the first reading,
    ui.frames(3);
    EXPECT_NEAR(width({0.5025f, 0.65f, 0.035f, 1}), 0.2f * kBarWidth, 0.01f); // the bar of the second
    EXPECT_EQ(std::make_pair(plain, twice), std::make_pair(1, 2));
}

TEST_F(Counters, showEveryTextWholeInOneColumnAtAnyDepth)
{
    const unsigned group = system().createLabel("Group");
    add("##cap %s", {0, 100, [] { return 50; }, "%d%% ##of", "%d%%"}, group);
    add("Plain", Counter([] { return 7; }, "%d%%##"));
    show();
    ui.click("Group");
    EXPECT_EQ(line("Plain"), "Plain | 7%##");
    EXPECT_EQ(line("##cap %s"), "##cap %s | 0% | 50% ##of | 100%");
    const float column = ui.window("Statistics").min.x + 215;
    EXPECT_NEAR(ui.text("7%##").min.x, column, 1);
    EXPECT_NEAR(ui.text("0%").min.x, column, 1);
    const test::Text& value = ui.text("50% ##of");
    const test::Rect bar = ui.read().rectsAt(value.center()).back();
    EXPECT_EQ(bar.size().x, kBarWidth);
    EXPECT_GT(value.min.x, bar.center().x); // behind the filled half
}

/// Captions grow by a letter each, so that some end just before the value column, and some behind it.
TEST_F(Counters, neverPrintOneTextOverAnother)
{
    ImGui::GetIO().DisplaySize.x = 2600;
    unsigned group = 0;
    for (std::size_t length = 22; length < 40; ++length)
        group = add(std::string(length, 'c'), Counter([] { return std::string("value"); }));
    add(std::string(40, 'c'), limited(0, 1, [] { return 1; }), group);
    for (const float scale : {1.0f, 1.5f, 2.0f}) {
        ui.setFontScale(scale);
        show();
        const float column = ui.window("Statistics").min.x + std::floor(215 * height(ui.text("value")) / 13);
        for (const test::Text& value : ui.read().findAll("value")) {
            const test::Text caption = ui.read().textsOnLineOf(value)[0];
            if (caption.max.x > column)
                EXPECT_NEAR(value.min.x, caption.max.x + ImGui::GetStyle().ItemSpacing.x, 1);
            else
                EXPECT_EQ(value.min.x, column);
        }
        EXPECT_EQ(ui.read().findAll("value").size(), 18u);
    }
    ui.click(std::string(39, 'c'));
    const std::vector<test::Text> texts = ui.read().textsOnLineOf(ui.text(std::string(40, 'c')));
    EXPECT_GT(texts.at(1).min.x, texts[0].max.x);
}

TEST_F(Counters, showALongValueFromTheBeginningOfTheirBarAndNotBeyondIt)
{
    std::string value = std::string(100, 'v');
    add("Long", limited(std::string("min"), std::string("max"), [&] { return value; }));
    test::Reports reports;
    show();
    const test::Text& shown = *ui.read().findContaining("vvv");
    EXPECT_LT(shown.text.size(), 42u);
    EXPECT_NEAR(shown.min.x, ui.text("min").max.x + ImGui::GetStyle().ItemSpacing.x, 1);
    EXPECT_GT(ui.text("max").min.x, shown.max.x - 7);
    value = "vvv";
    show();
    EXPECT_NEAR(ui.text("vvv").min.x, ui.text("min").max.x + 2 * ImGui::GetStyle().ItemSpacing.x, 1);
}

TEST_F(Counters, colourTheirBarByTheWeight)
{
    const ImVec4 low(0.35f, 0.65f, 0, 1);
    const ImVec4 high(0.96f, 0.19f, 0.19f, 1);
    const std::pair<float, ImVec4> cases[] = {
        {0.0f, low},
        {0.5f, {0.73125f, 0.65f, 0.0875f, 1}},
        {0.8f, {0.96f, 0.65f, 0.14f, 1}},
        {0.9f, {0.96f, 0.42f, 0.165f, 1}},
        {1.0f, high},
        {INFINITY, high},
        {-0.2f, {0.1975f, 0.65f, 0, 1}},
        {-INFINITY, low},
        {NAN, low},
    };
    float weight = 0;
    add("Counter", limited(0.0f, 1.0f, [&] { return weight; }));
    ui.frames(2);
    EXPECT_EQ(ui.read().lines()[1], "Counter | 0.000 | 1.000"); // nothing was sampled yet
    EXPECT_EQ(width(low, 0.25f), kBarWidth);
    for (const auto& [value, color] : cases) {
        weight = value;
        show();
        EXPECT_EQ(width(color, 0.25f), kBarWidth) << weight;
        EXPECT_NEAR(width(color), weight > 0 ? std::min(weight, 1.0f) * kBarWidth : 0, 0.01f) << weight;
    }
}

TEST_F(Counters, mayGetTheirLimitsLateAndLoseThem)
{
    auto late = std::make_unique<Counter>([] { return 5; });
    Counter& counter = *late;
    const unsigned id = system().createCounter("Late", std::move(late), 0, 0);
    EXPECT_EQ(line("Late"), "Late | 5");
    counter.setLimits(1, 9);
    counter.hasLimits = true;
    EXPECT_EQ(line("Late"), "Late | 1 | 5 | 9");
    counter.hasLimits = false;
    EXPECT_EQ(line("Late"), "Late | 5");
    system().removeItem(id);
    EXPECT_TRUE(statistics::TestAccess::render().printedLimits.empty());
}

TEST_F(Counters, mayRemoveThemselvesWhileTheyAreReadAndAreNotReadAgain)
{
    int readings = 0;
    unsigned second = 0;
    const auto leaveLate = [&] {
        if (++readings == 2)
            system().removeItem(second);
        return 5;
    };
    second = add("Thread", limited(0, 10, leaveLate));
    sample();
    EXPECT_EQ(readings, 2);
    for (const int value : {-5, 5, 20}) {
        int calls = 0;
        unsigned id = 0;
        const auto leave = [&, owned = std::make_shared<int>(value)] {
            ++calls;
            system().removeItem(id);
            return *owned;
        };
        id = add("Thread", limited(0, 10, leave));
        sample();
        EXPECT_EQ(calls, 1) << value;
        id = add("Thread", limited(0, 10, leave));
        EXPECT_EQ(system().collectWarnings(), std::list<std::string>{}) << value;
        EXPECT_EQ(calls, 2) << value;
        EXPECT_EQ(system().getItemIndex("Thread"), statistics::INVALID_ID);
    }
}

} // namespace
