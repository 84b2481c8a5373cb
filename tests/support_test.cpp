// The off-screen host and its reader, proved on plain ImGui widgets.
#include "support/offscreen.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using Lines = std::vector<std::string>;

void inWindow(const std::function<void()>& content)
{
    ImGui::SetNextWindowPos(ImVec2(20, 20));
    ImGui::SetNextWindowSize(ImVec2(600, 400));
    ImGui::Begin("Window");
    content();
    ImGui::End();
}

class Support : public testing::Test {
protected:
    void show(const std::function<void()>& content)
    {
        ui.setScene([content] { inWindow(content); });
        ui.frames(2);
    }

    test::Offscreen ui;
};

TEST_F(Support, textsAreReadLineByLineEachColumnForItself)
{
    show([] {
        ImGui::TextUnformatted("100 % of it, \xC3\xA9t\xC3\xA9 %s");
        ImGui::Columns(3, "set");
        for (const char* cell : {"name", "two  words", "3", "a", "b", "c"}) {
            ImGui::TextUnformatted(cell);
            ImGui::NextColumn();
        }
        ImGui::Columns(1);
        ImGui::Button("Button");
        ImGui::SameLine();
        ImGui::TextColored(ImVec4(1, 0, 0, 1), "red");
    });
    EXPECT_EQ(ui.read().lines(), (Lines{"Window", "100 % of it, \xC3\xA9t\xC3\xA9 %s",
                                        "name | two  words | 3", "a | b | c", "Button | red"}));
    EXPECT_EQ(ui.text("red").color, IM_COL32(255, 0, 0, 255));
    EXPECT_EQ(ui.text("red").window, "Window");
}

TEST_F(Support, whatIsClippedIsNotRead)
{
    show([] {
        ImGui::BeginChild("narrow", ImVec2(7 * 5, 200), false, ImGuiWindowFlags_NoScrollbar);
        ImGui::TextUnformatted("12345hidden");
        ImGui::Button("67890hidden", ImVec2(7 * 5, 0));
        ImGui::Dummy(ImVec2(1, 300));
        ImGui::TextUnformatted("below");
        ImGui::EndChild();
    });
    EXPECT_EQ(ui.read().lines(), (Lines{"Window", "12345", "6789"}));
}

TEST_F(Support, aBarIsAsLongAndAsColouredAsItWasDrawn)
{
    show([] {
        ImGui::PushStyleColor(ImGuiCol_PlotHistogram, IM_COL32(0, 200, 0, 255));
        ImGui::ProgressBar(0.25F, ImVec2(200, 20), "");
        ImGui::PopStyleColor();
    });
    const std::vector<test::Rect> bars = ui.read().rectsOf(IM_COL32(0, 200, 0, 255));
    ASSERT_EQ(bars.size(), 1U);
    EXPECT_FLOAT_EQ(bars[0].width(), 50);
    EXPECT_FLOAT_EQ(bars[0].height(), 20);
    EXPECT_EQ(ui.read().rectsAt(bars[0].center()).back().color, bars[0].color);
}

TEST_F(Support, clicksReachButtonsAndADoubleClickIsNotTwoClicks)
{
    int clicks = 0;
    int doubleClicks = 0;
    show([&] {
        clicks += ImGui::Button("Press") ? 1 : 0;
        doubleClicks += ImGui::IsItemHovered() && ImGui::IsMouseDoubleClicked(0) ? 1 : 0;
    });
    ui.click("Press");
    ui.click("Press");
    EXPECT_EQ(clicks, 2);
    EXPECT_EQ(doubleClicks, 0);
    ui.doubleClick("Press");
    EXPECT_EQ(doubleClicks, 1);
    EXPECT_THROW(ui.click("Press", 1), std::runtime_error);
}

TEST_F(Support, popupsTreesAndCheckBoxesAnswerTheMouse)
{
    bool on = false;
    show([&] {
        ImGui::Checkbox("Box", &on);
        if (ImGui::TreeNode("Branch")) {
            ImGui::TextUnformatted("Leaf");
            ImGui::TreePop();
        }
        if (ImGui::BeginPopupContextWindow()) {
            ImGui::MenuItem("Entry");
            ImGui::EndPopup();
        }
    });
    EXPECT_FALSE(ui.ticked("Box"));
    ui.clickBox("Box");
    EXPECT_TRUE(ui.ticked("Box"));
    ui.click("Branch");
    EXPECT_TRUE(ui.read().contains("Leaf"));
    ui.rightClick("Leaf");
    EXPECT_TRUE(ui.read().find("Entry"));
    ui.click("Entry");
    EXPECT_FALSE(ui.read().find("Entry"));
}

TEST_F(Support, whatAThrowingSceneLeavesOpenIsToldAndClosed)
{
    ui.setScene([] {
        ImGui::Begin("Torn");
        ImGui::PushStyleColor(ImGuiCol_Text, IM_COL32_WHITE);
        ImGui::TreePush("level");
        throw std::runtime_error("torn");
    });
    EXPECT_THROW(ui.frame(), std::runtime_error);
    EXPECT_EQ(ui.imbalance(), "windows: 1; style colours: 1; ids in \"Torn\": 1; tree levels in \"Torn\": 1");
    show([] { ImGui::TextUnformatted("whole"); });
    EXPECT_TRUE(ui.balanced()) << ui.imbalance();
    EXPECT_EQ(ui.read().lines(), (Lines{"Window", "whole"}));
}

} // namespace
