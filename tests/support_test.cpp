// The off-screen host and its reader, proved on plain ImGui widgets.
#include "offscreen/host.h"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using Lines = std::vector<std::string>;

class Support : public testing::Test {
protected:
    void show(const std::function<void()>& content)
    {
        ui.setScene([this, content] {
            if (open) {
                ImGui::SetNextWindowSize(ImVec2(600, 400));
                ImGui::Begin("Window", &open);
                content();
                ImGui::End();
            }
        });
        ui.frames(2);
    }

    bool open = true;
    offscreen::Host ui;
};

TEST_F(Support, textsAreReadAsFarAsTheyAreSeenEachColumnForItself)
{
    static constexpr const char* kColored = "100 % of it, \xC3\xA9t\xC3\xA9 %s";
    show([] {
        ImGui::TextColored(ImVec4(1, 0, 0, 1), "%s", kColored);
        ImGui::Columns(3, "set");
        ImGui::SetColumnWidth(0, 42); // the gap to the next column is that of two spaces
        for (const char* cell : {"left", "two  words", "3"}) {
            ImGui::TextUnformatted(cell);
            ImGui::NextColumn();
        }
        ImGui::Columns(1);
        ImGui::BeginChild("narrow", ImVec2(38, 200), false, ImGuiWindowFlags_NoScrollbar);
        ImGui::TextUnformatted("12345hidden"); // a glyph is 7 wide: less than half of the sixth is seen
        ImGui::Dummy(ImVec2(1, 300));
        ImGui::TextUnformatted("below");
        ImGui::EndChild();
    });
    EXPECT_EQ(ui.read().lines(), (Lines{"Window", kColored, "left | two  words | 3", "12345"}));
    EXPECT_EQ(ui.text(kColored).color, IM_COL32(255, 0, 0, 255));
}

TEST_F(Support, aBarIsAsLongAndAsColouredAsItWasDrawn)
{
    constexpr ImU32 kGreen = IM_COL32(0, 200, 0, 255);
    show([] {
        ImGui::PushStyleColor(ImGuiCol_PlotHistogram, kGreen);
        ImGui::ProgressBar(0.25f, ImVec2(200, 20), "quarter");
        ImGui::PopStyleColor();
    });
    const std::vector<offscreen::Rect> bars = ui.read().rectsOf(kGreen);
    ASSERT_EQ(bars.size(), 1u);
    EXPECT_NEAR(bars[0].size().x, 50, 0.01);
    EXPECT_NEAR(bars[0].size().y, 20, 0.01);
}

TEST_F(Support, aDoubleClickIsNotTwoClicks)
{
    int clicks = 0;
    int doubleClicks = 0;
    show([&] {
        clicks += ImGui::Button("Press") ? 1 : 0;
        doubleClicks += ImGui::IsItemHovered() && ImGui::IsMouseDoubleClicked(0) ? 1 : 0;
    });
    ui.click("Press");
    ui.click("Press");
    EXPECT_EQ(std::make_pair(clicks, doubleClicks), std::make_pair(2, 0));
    ui.doubleClick("Press");
    EXPECT_EQ(std::make_pair(clicks, doubleClicks), std::make_pair(4, 1));
    EXPECT_THROW(ui.click("Press", 1), std::runtime_error);
}

TEST_F(Support, popupsTreesBoxesAndWindowsAnswerTheMouse)
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
    ui.rightClick("Leaf");
    ui.click("Entry");
    EXPECT_EQ(ui.read().lines(), (Lines{"Window", "Box", "Branch", "Leaf"}));
    ui.clickClose("Window");
    EXPECT_EQ(ui.read().lines(), Lines{});
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
    EXPECT_EQ(ui.imbalance(), "ids in Torn: 1; style colours: 1; tree levels in Torn: 1; windows: 1");
    show([] { ImGui::TextUnformatted("whole"); });
    EXPECT_EQ(ui.imbalance(), "");
    EXPECT_EQ(ui.read().lines(), (Lines{"Window", "whole"}));
}

} // namespace
