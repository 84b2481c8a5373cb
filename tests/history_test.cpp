// The past of counters as code reads it: which samples are kept, for how long, and for which counter.
#include "support/counter_panel.h"
#include "support/test_access.h"

#include <cmath>
#include <cstddef>
#include <deque>
#include <limits>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace {

using statistics::CounterHistory;
using Samples = std::vector<float>;

class History : public test::CounterPanel {
protected:
    static Samples past(unsigned id) { return system().history(id).samples; }

    unsigned addCount(const std::string& name)
    {
        return add(name, Counter([this] { return ++count; }));
    }

    int count = 0;
};

TEST_F(History, keepsTheNewestSamplesOldestFirstWhateverItsSizeBecomes)
{
    const unsigned id = add("Count", Counter([this] { return ++count; }), 0, 5);
    sample();
    EXPECT_EQ(past(id), Samples()); // nothing was turned on
    keep(4);
    EXPECT_EQ(past(id), Samples());
    system().update(5, true);
    system().update(1, true); // isn't due
    system().updateNode(id);
    EXPECT_EQ(past(id), (Samples{2, 3}));
    EXPECT_EQ(system().history(id).period, 5);
    for (int times = 0; times < 4; ++times)
        system().updateNode(id);
    EXPECT_EQ(past(id), (Samples{4, 5, 6, 7}));
    keep(6);
    system().updateNode(id);
    EXPECT_EQ(past(id), (Samples{4, 5, 6, 7, 8}));
    keep(2);
    EXPECT_EQ(past(id), (Samples{7, 8}));
    system().updateNode(id);
    EXPECT_EQ(past(id), (Samples{8, 9}));
    keep(0);
    keep(2);
    EXPECT_EQ(past(id), Samples());
}

TEST_F(History, isOfTheCounterThatStandsThereNow)
{
    keep(3);
    const unsigned label = system().createLabel("Label");
    const unsigned first = addCount("First");
    sample();
    EXPECT_EQ(past(label), Samples());
    EXPECT_EQ(past(statistics::INVALID_ID), Samples());
    system().removeItem(first);
    EXPECT_EQ(past(first), Samples());
    const unsigned second = addCount("Second");
    EXPECT_EQ(second, first);
    EXPECT_EQ(past(second), Samples());
    bool leaves = false;
    unsigned self = add("Leaving", Counter([&] {
                            if (leaves) {
                                system().removeItem(self);
                                leaves = false;
                                self = addCount("Successor");
                            }
                            return 99;
                        }));
    sample();
    EXPECT_EQ(past(self), Samples{99});
    leaves = true;
    system().updateNode(self);
    EXPECT_EQ(past(self), Samples());
}

TEST_F(History, thatIsEndlessEndsAtItsBoundAndGoesOnForEver)
{
    const unsigned id = addCount("Count");
    for (const std::size_t samples : {std::size_t{1000000000}, std::numeric_limits<std::size_t>::max()}) {
        keep(samples);
        EXPECT_EQ(system().options().history, 100000u);
        sample();
    }
    EXPECT_EQ(past(id), (Samples{1, 2}));
    keep(1);
    statistics::PastRanges ranges;
    for (int lap = 0; lap < 65535; ++lap) {
        sample();
        ASSERT_EQ(ranges.range(0, statistics::TestAccess::render().history.past(0)).lowest, count);
    }
    EXPECT_EQ(past(id), Samples{65537});
}

/// More than stand in one block.
TEST_F(History, keepsThousandsApart)
{
    keep(2);
    std::vector<unsigned> ids;
    while (ids.size() < 5000)
        ids.push_back(addCount(std::to_string(ids.size())));
    for (int times = 0; times < 3; ++times)
        sample();
    for (std::size_t index = 0; index < ids.size(); ++index) {
        const auto second = static_cast<float>(ids.size() + index + 1);
        ASSERT_EQ(past(ids[index]), (Samples{second, second + 5000})) << index;
    }
}

/// Counters of three periods come and go while the size changes, against one list for each.
TEST_F(History, keepsEveryCountersOwnSamples)
{
    std::mt19937 random(7);
    const auto below = [&](unsigned end) { return static_cast<unsigned>(random() % end); };
    std::map<unsigned, std::deque<float>> expected;
    std::size_t kept = 0;
    for (int step = 0; step < 3000; ++step) {
        if (below(4) == 0) {
            const std::string name = std::to_string(below(70));
            const unsigned id = system().getItemIndex(name);
            if (id == statistics::INVALID_ID)
                expected[addCount(name)];
            else if (below(3) == 0) {
                system().removeItem(id);
                expected.erase(id);
            }
        }
        if (below(40) == 0)
            keep(kept = below(9));
        for (auto& [id, samples] : expected) {
            if (below(3) == 0) {
                system().updateNode(id);
                samples.push_back(static_cast<float>(count));
            }
            while (samples.size() > kept)
                samples.pop_front();
            ASSERT_EQ(past(id), Samples(samples.begin(), samples.end())) << step;
        }
    }
}

TEST(PastRanges, areThoseOfThePastsHoweverManySamplesCameBetweenTwoLooks)
{
    std::mt19937 random(5); // NOLINT: each run the same
    const auto below = [&](unsigned end) { return static_cast<unsigned>(random() % end); };
    for (const std::size_t capacity : {1u, 3u, 127u, 128u, 129u, 300u}) {
        statistics::History history(capacity);
        statistics::PastRanges ranges;
        for (int look = 0; look < 300; ++look) {
            const unsigned slot = below(2);
            history.makeRoom(slot);
            if (below(20) == 0) {
                history.forget(slot);
                ranges.forget(slot);
            }
            for (unsigned times = below(10) ? below(4) : below(700); times > 0; --times)
                history.add(slot, below(9) ? static_cast<float>(below(10000)) : NAN);
            statistics::PastRange expected;
            for (const float sample : history.past(slot).samples())
                expected.add(sample);
            const statistics::PastRange& seen = ranges.range(slot, history.past(slot));
            ASSERT_EQ(seen.lowest, expected.lowest) << capacity << " samples, look " << look;
            ASSERT_EQ(seen.highest, expected.highest) << capacity << " samples, look " << look;
            ranges.endDraw();
        }
    }
}

} // namespace
