// One who has no mouse goes through the panel.
#include "support/files.h"
#include "support/table_panel.h"

namespace {

class Keys : public test::TablePanel {
protected:
    Keys()
    {
        rows.clear();
        for (int row = 0; row < 500; ++row)
            rows.push_back({"row " + std::to_string(1000 + row) + (row % 9 == 4 ? "\nand more" : ""), row});
        statistics::setKeyColumn(id, 0);
        statistics::setDefaultAction(id, [this](std::size_t row) { noted.push_back(row); });
        statistics::addRowAction(id, "Note", [this](std::size_t row) { noted.push_back(1000 + row); });
        statistics::label("leaf", statistics::label("group"));
        system().createPreset("preset", {});
        EXPECT_TRUE(system().createStatsAnalyzer(dir("root"), "run", {}));
        setOption(&statistics::Options::filter, true);
        show();
    }

    test::TempDir dir;
    test::Indices noted;
};

TEST_F(Keys, aloneOpenChooseSortActAndFilter)
{
    ui.walk(ImGuiKey_DownArrow, "Presets");
    ui.pressKey(ImGuiKey_RightArrow);
    ui.walk(ImGuiKey_DownArrow, "preset");
    ui.pressKey(ImGuiKey_Space);
    EXPECT_EQ(system().getActivePreset(), 0u);

    ui.walk(ImGuiKey_DownArrow, "Name");
    ui.walk(ImGuiKey_RightArrow, "Size");
    ui.pressKey(ImGuiKey_Space);
    EXPECT_EQ(table.m_sortColumn, 1u);
    ui.walk(ImGuiKey_DownArrow, "row 1497");
    ui.pressKey(ImGuiKey_Enter);
    EXPECT_EQ(noted, test::Indices{}) << "on a plain panel";
    setOption(&statistics::Options::rowKeys, true);
    ui.pressKey(ImGuiKey_Enter);
    EXPECT_EQ(noted, test::Indices{497});
    ui.pressKey(ImGuiKey_Enter, true);
    ui.walk(ImGuiKey_DownArrow, "Note");
    ui.pressKey(ImGuiKey_Space);
    EXPECT_EQ(noted, (test::Indices{497, 1497}));
    for (int step = 3; step <= 100; ++step)
        ui.pressKey(ImGuiKey_DownArrow);
    ui.moveTo("row 1400");
    for (const auto& [key, row] : {std::pair(ImGuiKey_Space, 100u), std::pair(ImGuiKey_DownArrow, 101u),
                                   std::pair(ImGuiKey_PageDown, 132u)}) {
        ui.wheel(0, -100); // the keyboard stays where it is
        ui.pressKey(key);
        ui.pressKey(ImGuiKey_Space);
        EXPECT_EQ(table.m_selectedRow, row);
    }

    ui.pressKey(ImGuiKey_End);
    ui.walk(ImGuiKey_UpArrow, "group");
    ui.pressKey(ImGuiKey_RightArrow);
    EXPECT_TRUE(ui.read().contains("leaf"));
    ui.pressKey(ImGuiKey_LeftArrow);
    EXPECT_FALSE(ui.read().contains("leaf"));
    ui.pressKey(ImGuiKey_End);
    ui.pressKey(ImGuiKey_RightArrow);
    ui.walk(ImGuiKey_DownArrow, "Clear tree");
    ui.walk(ImGuiKey_RightArrow, "Take snapshot");
    ui.pressKey(ImGuiKey_Space);
    EXPECT_TRUE(dir.has("root/run"));

    ui.pressKey(ImGuiKey_Home);
    ui.walk(ImGuiKey_UpArrow, "words of a path, -word without it");
    ui.pressKey(ImGuiKey_Enter);
    ImGui::GetIO().AddInputCharactersUTF8("group");
    ui.frames(3);
    EXPECT_EQ(system().filter(), "group");
    ui.pressKey(ImGuiKey_Escape);
    EXPECT_EQ(system().filter(), "");
}

} // namespace
