// Check boxes whose captions ImGui would cut, beside those whose it wouldn't.
#include "support/panel.h"
#include "support/test_access.h"

#include <gtest/gtest.h>

namespace {

using statistics::TestAccess;

class CheckBoxes : public test::Panel {
protected:
    /// The slot of the new box.
    static unsigned add(const std::string& caption)
    {
        const unsigned item = TestAccess::render().createCheckbox(caption, {});
        TestAccess::tree().addChild(item, 0);
        return statistics::itemSlot(item);
    }
    static bool value(unsigned slot) { return TestAccess::render().checkboxes[slot].value; }

    /// An "x" for each place, from left to right, where a click turns the box.
    std::string reach(unsigned slot, ImVec2 from)
    {
        std::string turned;
        for (float x = 0; x < 60; x += 3) {
            const bool before = value(slot);
            ui.click(ImVec2(from.x + x, from.y));
            turned += value(slot) != before ? 'x' : '.';
        }
        return turned;
    }
};

TEST_F(CheckBoxes, reactToTheReleaseOverBoxGapAndCaptionWhateverTheCaption)
{
    for (const std::string& odd : {std::string("a##b"), std::string("###b"), std::string("a\0_b", 4)}) {
        TestAccess::tree().clearChildren(0);
        const unsigned plain = add("a__b"); // as wide
        const unsigned other = add(odd);
        show();
        const ImVec2 caption = ui.text("a__b").center();
        const ImVec2 start(ui.text("a__b").min.x - ImGui::GetFrameHeight() - 8, caption.y);
        const float below = ImGui::GetFrameHeightWithSpacing();
        const std::string reached = reach(plain, start);
        EXPECT_EQ(reached, "..xxxxxxxxxxxxxxxxx.");
        EXPECT_EQ(reach(other, ImVec2(start.x, start.y + below)), reached);
        const bool before = value(other);
        ui.moveTo(ImVec2(caption.x, caption.y + below));
        ui.press();
        EXPECT_EQ(value(other), before);
        ui.moveTo(ImVec2(caption.x, caption.y + 200));
        ui.release();
        EXPECT_EQ(value(other), before);
    }
}

TEST_F(CheckBoxes, withoutACaptionOrWithSeveralLinesTakeTheSpaceThatTheyShow)
{
    const unsigned empty = add("");
    const unsigned tall = add("two##\nlines");
    statistics::label("below");
    show();
    const test::Text caption = ui.text("two##");
    EXPECT_GE(ui.text("below").min.y, ui.text("lines").max.y);
    ui.click("lines");
    ui.click(ImVec2(caption.min.x - 10, caption.min.y - 15));
    EXPECT_TRUE(value(tall));
    EXPECT_TRUE(value(empty));
}

} // namespace
