// What all tests of the panel rely on beside the frames that they read: that what a host leaves open is told.
#include "offscreen/host.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

TEST(Support, whatAThrowingSceneLeavesOpenIsToldAndClosed)
{
    offscreen::Host ui;
    ui.setScene([] {
        ImGui::Begin("Torn");
        ImGui::PushStyleColor(ImGuiCol_Text, IM_COL32_WHITE);
        ImGui::TreePush("level");
        throw std::runtime_error("torn");
    });
    EXPECT_THROW(ui.frame(), std::runtime_error);
    EXPECT_EQ(ui.imbalance(), "ids in Torn: 1; style colours: 1; tree levels in Torn: 1; windows: 1");
    ui.setScene([] {});
    ui.frame();
    EXPECT_EQ(ui.imbalance(), "");
}

} // namespace
