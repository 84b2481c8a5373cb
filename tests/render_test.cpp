// Items handed to operations that their kind doesn't have, and what no host can reach.
#include "support/panel.h"
#include "support/test_access.h"

namespace {

using namespace statistics;

class Items : public test::Panel {
protected:
    static std::vector<std::string> reportsOf(const std::function<void(Render&)>& act)
    {
        test::Reports reports;
        act(TestAccess::render());
        return reports.take();
    }
};

TEST_F(Items, ofKindsWithoutTheOperationAreReportedAndLeftAlone)
{
    const std::vector<std::string> wrongType = {"false && \"Wrong statistics item type\""};
    for (const unsigned item : {0x40000u, 0x50000u, 0x60000u, 0x70000u, 0x80000u})
        EXPECT_EQ(reportsOf([&](Render& render) { render.updateNode(item); }), wrongType) << item;
    for (const unsigned item : {0x60000u, 0x70000u, 0x80000u, INVALID_ID})
        EXPECT_EQ(reportsOf([&](Render& render) { render.removeItem(item); }), wrongType) << item;
    EXPECT_EQ(reportsOf([&](Render& render) { EXPECT_FALSE(render.drawItem(0x80000, 1, false)); }),
              wrongType);
    EXPECT_EQ(reportsOf([](Render& render) {
                  render.updateNode(0x10000); // a label, and the root, have nothing to sample
                  render.updateNode(INVALID_ID);
                  render.forEachCounter({});
              }),
              std::vector<std::string>{});
    EXPECT_EQ(TestAccess::render().itemName(0x80000), "");
    EXPECT_FALSE(TestAccess::render().itemValue(0x10000, 0).valid());
    EXPECT_FALSE(TestAccess::tree().sumChildren(99, 0, TestAccess::render()).valid());
}

TEST_F(Items, withoutWhatTheyNeedAreReportedAndNotMade)
{
    test::Reports reports;
    EXPECT_EQ(system().createCounter("counter", nullptr, 1), INVALID_ID);
    EXPECT_EQ(reports.take(), std::vector<std::string>{"counter"});
    EXPECT_NE(TestAccess::render().createPreset("preset", 0, {}, {}, {}, {}), INVALID_ID);
    EXPECT_EQ(reports.take(), (std::vector<std::string>{"getSelectedFunctor", "selectFunctor"}));
    TestAccess::render().removeItem(0x40000);
    EXPECT_EQ(TestAccess::render().presets.nextIndex(), 0u);
}

} // namespace
