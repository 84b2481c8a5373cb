// Presets: whose limits hold when, and the rows by which a user picks, loads and saves them.
#include "support/counter_panel.h"
#include "support/test_access.h"

#include <functional>
#include <stdexcept>
#include <utility>
#include <variant>

namespace {

using statistics::LimitMap;
using Params = statistics::PresetSaveLoadParams;
using Texts = std::vector<std::string>;

class Presets : public test::CounterPanel {
protected:
    static CounterValue value() { return 45; }
    static Counter keyed(const char* key) { return {value, "", "", key}; }

    static void addPreset(const char* name, float max, Params params)
    {
        system().createPreset(name, {{"key", {0, max}}}, std::make_unique<Params>(std::move(params)));
    }
};

TEST_F(Presets, giveLimitsWhenChosenAndToCountersCreatedAfterwards)
{
    add("Fixed", limited(5, 90, value));
    add("Early", keyed("fps"));
    system().createPreset("A", {{"fps", {30, 60}}});
    system().createPreset("B", {{"", {1, 99}}});
    EXPECT_EQ(show().lines(), (Texts{"Statistics", "Presets", "Fixed | 5 | 45 | 90", "Early | 0 | 45 | 0"}));

    system().choosePreset(0);
    add("Late fixed", limited(5, 90, value));
    add("Late", keyed("fps"));
    add("Unknown", keyed("other"));
    EXPECT_EQ(show().lines(),
              (Texts{"Statistics", "Presets", "Fixed | 0.000 | 45 | 0.000", "Early | 30.000 | 45 | 60.000",
                     "Late fixed | 5 | 45 | 90", "Late | 30.000 | 45 | 60.000", "Unknown | 0 | 45 | 0"}));
    system().choosePreset(1);
    system().clearPresets();
    add("After", keyed("fps"));
    EXPECT_EQ(show().lines(),
              (Texts{"Statistics", "Fixed | 1.000 | 45 | 99.000", "Early | 0.000 | 45 | 0.000",
                     "Late fixed | 1.000 | 45 | 99.000", "Late | 0.000 | 45 | 0.000",
                     "Unknown | 0.000 | 45 | 0.000", "After | 0 | 45 | 0"}));
    addPreset("C", 10, {"ready", {}, [](LimitMap&, Params&) { return "saved"; }, {}});
    show();
    ui.click("Presets");
    ui.click("Save"); // the preset chosen last doesn't exist
    EXPECT_EQ(line("C"), "C | ready | Save");
    system().createPreset("D", {{"fps", {40, 80}}}); // has the index of the preset chosen last
    add("Last", keyed("fps"));
    EXPECT_EQ(line("After"), "After | 0 | 45 | 0");
    EXPECT_EQ(line("Last"), "Last | 40.000 | 45 | 80.000");
    EXPECT_FALSE(ui.ticked("C"));
    EXPECT_TRUE(ui.ticked("D"));
}

TEST_F(Presets, areRadioButtonsWhoseRowsEachLoadTheirOwnAndSaveTheActiveLimits)
{
    Texts log;
    const auto functor = [&](const std::string& what) {
        return [&log, what](LimitMap& limits, Params& params) {
            log.push_back(params.text + " " + what + " " +
                          std::to_string(static_cast<int>(limits["key"].max++)));
            return params.text;
        };
    };
    add("Counter", keyed("key"));
    addPreset("Same", 10, {"first", functor("load"), functor("save"), functor("save as")});
    addPreset("Same", 20, {"second", functor("load"), functor("save"), functor("save as")});
    addPreset("Partly", 30, {"third", {}, [](LimitMap&, Params&) { return "saved"; }, {}});
    system().createPreset("Bare", {});
    show();
    ui.click("Presets");
    EXPECT_EQ(show().lines(), (Texts{"Statistics", "Presets", "Same | first | Load | Save | Save As",
                                     "Same | second | Load | Save | Save As", "Partly | third | Save", "Bare",
                                     "Counter | 0 | 45 | 0"}));
    const auto ticks = [&] {
        return std::vector<bool>{ui.ticked("Same"), ui.ticked("Same", 1), ui.ticked("Bare")};
    };
    ui.click("Save", 1);
    ui.click("Save As");
    EXPECT_EQ(log, Texts{}); // there is no active preset to save
    EXPECT_EQ(ticks(), std::vector<bool>({false, false, false}));
    const auto redBars = [&] { return ui.read().rectsOf(IM_COL32(245, 48, 48, 255)).size(); };
    EXPECT_EQ(redBars(), 1u); // 45 between 0 and 0
    ui.clickBox("Same", 1);
    EXPECT_EQ(ticks(), std::vector<bool>({false, true, false}));
    EXPECT_EQ(ui.read().lines().back(), "Counter | 0.000 | 45 | 20.000"); // at once, but the bar
    EXPECT_EQ(redBars(), 1u);                                             // waits for the next sample
    show();

    const LimitMap& lent = system().getPreset(0).accessPresetFunctor(0);
    for (const char* button : {"Load", "Save", "Save As"}) {
        ui.click(button, 0);
        ui.click(button, 1);
    }
    ui.click("Save", 2);
    EXPECT_EQ(log, (Texts{"first load 10", "second load 20", "first save 21", "second save 22",
                          "first save as 23", "second save as 24"}));
    EXPECT_EQ(line("Partly"), "Partly | saved | Save");
    EXPECT_EQ(lent.at("key").max, 11);
    EXPECT_EQ(line("Counter"), "Counter | 0.000 | 45 | 20.000");
    ui.clickBox("Same", 1); // stays ticked and applies what was loaded
    EXPECT_EQ(ticks(), std::vector<bool>({false, true, false}));
    EXPECT_EQ(line("Counter"), "Counter | 0.000 | 45 | 25.000");

    for (const auto& [button, tip] :
         {std::pair("Load", "Load preset"), std::pair("Save", "Save active preset"),
          std::pair("Save As", "Save active preset as")}) {
        ui.moveTo(button, 1);
        EXPECT_NE(ui.read().find(tip), nullptr) << tip;
    }
}

TEST_F(Presets, surviveFunctorsThatCallBack)
{
    using Act = void (*)(LimitMap&, Params&);
    const std::pair<Act, Texts> cases[] = {
        {[](LimitMap& limits, Params&) {
             limits = LimitMap{{"key", {5, 6}}};
             system().choosePreset(0);
         },
         {"Statistics", "Presets", "Preset | done | Load", "Counter | 5.000 | 45 | 6.000"}},
        {[](LimitMap& limits, Params&) {
             system().createPreset("Other", {});
             limits["key"] = {1, 3};
             system().choosePreset(0);
         },
         {"Statistics", "Presets", "Preset | done | Load", "Other", "Counter | 1.000 | 45 | 3.000"}},
        {[](LimitMap& limits, Params& params) {
             system().clearPresets();
             limits["key"].max = 4;
             params.text = "gone";
         },
         {"Statistics", "Counter | 0 | 45 | 0"}},
        {[](LimitMap& limits, Params&) {
             system().clearPresets();
             system().createPreset("New", limits);
         },
         {"Statistics", "Presets", "New", "Counter | 0 | 45 | 0"}}, // and the group stays open
        {[](LimitMap&, Params&) { system().getPreset(0).params = nullptr; },
         {"Statistics", "Presets", "Preset", "Counter | 0 | 45 | 0"}},
        {[](LimitMap&, Params&) { throw std::runtime_error("unreadable"); },
         {"Statistics", "Presets", "Preset | ready | Load", "Counter | 0 | 45 | 0"}},
    };
    int caught = 0;
    ui.setScene([&] {
        EXPECT_EQ(ui.imbalance(), ""); // of the frame before
        try {
            system().draw();
        } catch (const std::runtime_error&) {
            ++caught;
        }
    });
    show();
    for (const auto& [act, expected] : cases) {
        statistics::System::shutdown();
        statistics::System::initialize();
        add("Counter", keyed("key"));
        const auto load = [act = act, done = std::make_shared<std::string>("done")](auto& limits,
                                                                                    auto& params) {
            act(limits, params);
            return *done; // a functor that was dropped lives on until it returns
        };
        addPreset("Preset", 100, {"ready", load, {}, {}});
        if (!show().contains("Load"))
            ui.click("Presets");
        ui.click("Load");
        ui.moveTo(ImVec2(0, 0));
        EXPECT_EQ(show().lines(), expected);
    }
    EXPECT_EQ(caught, 1);
}

TEST_F(Presets, runNothingOfARowThatTheFunctorsBeforeHaveReplaced)
{
    int ran = 0;
    int asked = 0; // in this frame: for the box, then for "Save" which preset and which limits
    const auto save = [&](LimitMap&, Params&) { return std::to_string(++ran); };
    const std::function<void()> replacements[] = {
        [] {
            system().clearPresets();
            system().createPreset("Bare", {});
        },
        [&] {
            system().clearPresets();
            addPreset("Other", 1, {"other", {}, save, {}});
        },
        [] { system().getPreset(0).params->saveFunctor = nullptr; },
        [] { system().getPreset(0).params = nullptr; },
    };
    ui.setScene([&] {
        asked = 0;
        system().draw();
    });
    for (std::size_t turn = 0; turn < 2 * std::size(replacements); ++turn) {
        system().clearPresets();
        addPreset("Preset", 10, {"ready", {}, save, {}});
        if (!show().contains("Save"))
            ui.click("Presets");
        int replaced = 0;
        const auto ask = [&] {
            if (++asked != (turn % 2 ? 2 : 3))
                return;
            ++replaced;
            replacements[turn / 2]();
        };
        statistics::ItemPreset& row = system().getPreset(0);
        row.getSelectedFunctor = [&] {
            ask();
            return std::size_t{0};
        };
        row.accessPresetFunctor = [&, access = row.accessPresetFunctor](std::size_t index) -> LimitMap& {
            LimitMap& limits = access(index);
            ask();
            return limits;
        };
        ui.click("Save");
        EXPECT_EQ(replaced, 1) << turn;
        EXPECT_EQ(ran, 0) << turn;
    }
}

TEST_F(Presets, reportWhatIsOutOfRangeOrMissing)
{
    add("Counter", keyed("key"));
    addPreset("Preset", 10, {"ready", {}, {}, {}});
    system().choosePreset(0);
    test::Reports reports;
    system().choosePreset(1);
    EXPECT_EQ(reports.take(), Texts{"index < limitPresets.size()"});
    EXPECT_EQ(line("Counter"), "Counter | 0.000 | 45 | 10.000");
    ui.click("Presets");
    EXPECT_TRUE(ui.ticked("Preset"));
    EXPECT_EQ(system().getPreset(0).name, "Preset");
    EXPECT_THROW(system().getPreset(1000), std::bad_variant_access);
    EXPECT_EQ(reports.take(), Texts{"idx < size()"});
    system().getPreset(0).accessPresetFunctor = nullptr;
    ui.frame();
    EXPECT_EQ(reports.take(), Texts{"item.accessPresetFunctor"});
    EXPECT_EQ(ui.read().lines()[2], "Preset");
}

} // namespace
