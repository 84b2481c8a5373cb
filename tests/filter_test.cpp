// Finding items by words of their paths, and the panel that shows what was found.
#include "support/panel.h"
#include "support/test_access.h"

#include <imgui_internal.h>

#include <memory>

namespace {

using namespace statistics;
using Lines = std::vector<std::string>;

class Filtering : public test::Panel {
protected:
    Filtering()
    {
        for (const char* path :
             {"Disk/read", "Disk/write", "Net/eth0/Read errors", "Net/eth0/packets", "CPU"})
            add(path);
        const unsigned rows = system().createTable(
            "rows", [] { return std::size_t{1}; }, 0, getItemIndex("Net"));
        system().getTable(rows)->addColumn(
            "column", [](std::size_t) { return CounterValue("cell"); }, 0.5f);
    }

    /// The last name is a counter's.
    static void add(std::string_view path)
    {
        unsigned parent = 0;
        for (std::size_t end; (end = path.find('/')) != std::string_view::npos; path.remove_prefix(end + 1))
            parent = label(std::string(path.substr(0, end)).c_str(), parent);
        system().createCounter(std::string(path), std::make_unique<Counter>([] { return 1; }), 0, parent);
    }
    /// Paths of what is found.
    static Lines found(const std::string& words)
    {
        system().setFilter(words);
        Filter& filter = TestAccess::data().filter;
        filter.refresh(TestAccess::tree(), TestAccess::render());
        Lines paths;
        TestAccess::tree().forEachNode([&](unsigned id) {
            if (!filter.isOn() || filter.matches(id))
                paths.push_back(system().path(id));
        });
        return paths;
    }
    /// Captions on the panel without values, an opened level after the other.
    Lines shown()
    {
        Lines names;
        const test::Frame& frame = show();
        for (const test::Text& text : frame.texts)
            if (names.empty() || frame.textsOnLineOf(text)[0].text == text.text)
                names.push_back(text.text);
        names.erase(names.begin()); // the title
        return names;
    }
    Lines shownWith(const std::string& words)
    {
        system().setFilter(words);
        return shown();
    }
    void type(const std::string& text)
    {
        ImGui::GetIO().AddInputCharactersUTF8(text.c_str());
        ui.frame();
    }
};

TEST_F(Filtering, findsWhatHasAllWordsInItsPathAndNoneAfterAMinus)
{
    const std::pair<const char*, Lines> cases[] = {
        {"read", {"Disk/read", "Net/eth0/Read errors"}},
        {" ERRORS\tnet \n", {"Net/eth0/Read errors"}},
        {"k/r", {"Disk/read"}},
        {"disk", {"Disk", "Disk/read", "Disk/write"}},
        {"disk -READ", {"Disk", "Disk/write"}},
        {"-net -disk", {"CPU"}},
        {"read disk write", {}},
        {"eth0 eth0 th h0/", {"Net/eth0/Read errors", "Net/eth0/packets"}},
    };
    for (const auto& [words, paths] : cases)
        EXPECT_EQ(found(words), paths) << words;
}

TEST_F(Filtering, takesAnyBytes)
{
    add("odd/AZ\xC3\x84\xFF");
    const Lines all = found("");
    const Lines odd = {"odd/AZ\xC3\x84\xFF"};
    const std::string endless(10000, 'r');
    const std::pair<std::string, Lines> cases[] = {
        {" ", all},    {"-", all},           {" - -\t-", all},   {"\xFF", odd},
        {"\x84", odd}, {"az\xC3\x84", odd},  {"\xC3\xA4", {}}, // no case but that of ASCII
        {endless, {}}, {'-' + endless, all}, {{"CPU\0", 4}, {}},
    };
    setOption(&Options::filter, true); // the field shows each of them
    show();
    for (const auto& [words, paths] : cases) {
        EXPECT_EQ(found(words), paths) << words.substr(0, 20);
        EXPECT_EQ(system().filter(), words);
        ui.frames(2);
        EXPECT_EQ(ui.imbalance(), "") << words.substr(0, 20);
    }
}

TEST_F(Filtering, showsWhatLeadsToAMatchOpenedAndLeavesTheRest)
{
    show();
    for (const char* node : {"Disk", "Net", "Net"})
        ui.click(node);
    const Lines before = shown();
    EXPECT_EQ(before, (Lines{"Disk", "read", "write", "Net", "CPU"}));
    EXPECT_EQ(shownWith("errors"), (Lines{"Net", "eth0", "Read errors"}));
    EXPECT_EQ(shownWith("net"), Lines{"Net"});
    ui.click("Net"); // its own children are the user's to open
    EXPECT_EQ(shown(), (Lines{"Net", "eth0", "column", "cell"}));
    EXPECT_EQ(shownWith("rows"), (Lines{"Net", "column", "cell"}));
    ui.click("Net");
    EXPECT_EQ(shown(), Lines{"Net"});
    ImGui::GetStyle().ItemSpacing.y += 2;
    EXPECT_EQ(shown(), Lines{"Net"}); // in each look
    EXPECT_EQ(shownWith("disk -read"), (Lines{"Disk", "write"}));
    EXPECT_EQ(shownWith("disk -read -write"), Lines{"Disk"}); // a line without an arrow
    ui.click("Disk");
    EXPECT_EQ(shownWith("nothing of that name"), Lines{});
    EXPECT_EQ(shownWith(""), before);
}

TEST_F(Filtering, showsAtOnceWhatAHostOpensMeanwhileAndKeepsItOpen)
{
    EXPECT_EQ(shownWith("net"), Lines{"Net"});
    system().openNode(getItemIndex("Net/eth0"), true);
    EXPECT_EQ(shown(), (Lines{"Net", "eth0", "Read errors", "packets", "column", "cell"}));
    system().openNode(getItemIndex("Net/eth0"), false);
    EXPECT_EQ(shown(), (Lines{"Net", "eth0", "column", "cell"}));
    EXPECT_EQ(shownWith(""), (Lines{"Disk", "Net", "eth0", "column", "cell", "CPU"}));
}

TEST_F(Filtering, followsItemsThatComeAndGo)
{
    EXPECT_EQ(shownWith("temp"), Lines{});
    add("GPU/temp");
    add("Net/eth0/temp");
    EXPECT_EQ(shown(), (Lines{"Net", "eth0", "temp", "GPU", "temp"}));
    system().removeItem(getItemIndex("Net/eth0/temp"));
    EXPECT_EQ(shown(), (Lines{"GPU", "temp"}));
    system().removeItem(getItemIndex("GPU/temp"));
    add("GPU/load"); // with the id of what matched
    EXPECT_EQ(shown(), Lines{});
}

TEST_F(Filtering, leavesPresetsAndSnapshotsAsTheyAre)
{
    system().createPreset("preset", {});
    ASSERT_TRUE(system().createStatsAnalyzer(testing::TempDir() + "no such root", "run", {}));
    EXPECT_EQ(shownWith("cpu"), (Lines{"Presets", "CPU", "Diff"}));
    ui.click("Diff");
    EXPECT_EQ(shownWith("").back(), "Clear tree"); // open as the user left it
}

TEST_F(Filtering, remembersNoLineThatIsLeftOut)
{
    for (int i = 0; i < 500; ++i)
        add("long/" + std::string(i % 7 ? "" : "taller\n") + "line " + std::to_string(i));
    const auto height = [&](const std::string& words) {
        system().setFilter(words);
        show();
        return ImGui::FindWindowByName("Statistics")->ContentSize.y;
    };
    const Lines texts = {"line 4", "line", "long -1", "", "line -taller", "line 49"};
    std::vector<float> remembered;
    for (const std::string& words : texts)
        remembered.push_back(height(words));
    for (std::size_t i = 0; i < texts.size(); ++i) {
        TestAccess::tree().changes().noteAll(); // so that each line is drawn
        EXPECT_EQ(height(texts[i]), remembered[i]) << texts[i];
    }
}

TEST_F(Filtering, measuresThousandsOfLinesFrameByFrame)
{
    for (int i = 0; i < 10000; ++i)
        add("long/" + std::string(i % 7 ? "" : "taller\n") + "line " +
            (i == 9900 ? std::string(300, 'w') : std::to_string(i)));
    show(); // at first ImGui sees to every line
    shownWith("line");
    const ImGuiWindow& window = *ImGui::FindWindowByName("Statistics");
    EXPECT_LT(window.ContentSize.x, 2100.0f); // not all of them at once
    const float height = window.ContentSize.y;
    ui.frames(10);
    const ImVec2 settled = window.ContentSize;
    EXPECT_EQ(settled.y, height);
    EXPECT_GT(settled.x, 2100.0f); // the widest line is one of the last
}

template<typename Reader>
void setClipboard(const Reader& reader)
{
#if IMGUI_VERSION_NUM >= 19110
    ImGui::GetPlatformIO().Platform_GetClipboardTextFn = reader;
#else
    ImGui::GetIO().GetClipboardTextFn = reader;
#endif
}

TEST_F(Filtering, isTypedOnTopOfThePanelAndClearedByButtonOrEscape)
{
    setOption(&Options::filter, true);
    show();
    const Lines before = ui.read().lines();
    const auto begin = [&] { ui.click({ui.text("Clear").min.x - 60, ui.text("Clear").center().y}); };
    begin();
    type("READ");
    EXPECT_TRUE(ui.read().contains("2 matches")) << "in the same frame";
    EXPECT_EQ(shown().size(), 6u);
    type(" Disk");
    EXPECT_EQ(ui.read().lines()[1], "READ Disk | Clear | 1 match");
    system().setFilter("the host's");
    show();
    type("lost");
    EXPECT_EQ(ui.read().lines()[1], "the host's | Clear | no match");
    system().setFilter("\xFF\xFE"); // no characters
    show();
    begin();
    type("cpu");
    EXPECT_EQ(system().filter(), "\uFFFD\uFFFDcpu");
    for (int times = 0; times < 5; ++times)
        ui.pressKey(ImGuiKey_Backspace);
    type("cpu");
    EXPECT_EQ(system().filter(), "cpu");
    ui.click("Clear");
    EXPECT_EQ(ui.read().lines(), before);
    begin();
    ui.pressKey(ImGuiKey_Z, false, true);
    EXPECT_EQ(system().filter(), "") << "there is nothing to take back";
    setClipboard([](auto*) -> const char* { return "cpu\xF4\0beyond"; });
    ui.pressKey(ImGuiKey_V, false, true);
    EXPECT_EQ(system().filter(), "cpu\uFFFD");
    ui.click("Clear");
    begin();
    type("cpu");
    ui.pressKey(ImGuiKey_Escape);
    EXPECT_EQ(system().filter(), "");
    EXPECT_EQ(ui.read().lines(), before);
    system().setFilter("cpu");
    setOption(&Options::history, 1);
    show();
    ui.rightClick("1");
    EXPECT_TRUE(ui.read().contains("Copy path"));
    ui.pressKey(ImGuiKey_Escape); // closes the menu
    EXPECT_FALSE(ui.read().contains("Copy path"));
    EXPECT_EQ(system().filter(), "cpu");
    ui.moveTo(ImVec2(1, 1));
    ui.pressKey(ImGuiKey_Escape); // the panel is in focus, not the field
    EXPECT_EQ(ui.read().lines(), before);
}

} // namespace
