// The container behind every id: which index comes next, what a slot holds, walks over what changes.
#include "support/reports.h"

#include "free_slot_vector.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <utility>

namespace {

using Index = std::uint32_t;
using Indices = std::vector<Index>;
using Shared = std::shared_ptr<int>; // tells by its count how many elements are alive

free_slot_vector<Shared> filled(Index count, const Shared& element)
{
    free_slot_vector<Shared> slots;
    for (Index i = 0; i < count; ++i)
        EXPECT_EQ(slots.emplace(element), i);
    return slots;
}

TEST(FreeSlotVector, growsFrom64OrWhatItHasByDoubling)
{
    for (const Index start : {0u, 100u}) {
        free_slot_vector<std::string> slots;
        if (start)
            slots.grow(start);
        Index size = start;
        for (Index i = 0; i < 300; ++i) {
            size = i < size ? size : std::max(64u, size * 2);
            EXPECT_EQ(slots.nextIndex(), i);
            EXPECT_EQ(slots.emplace(std::to_string(i)), i);
            EXPECT_EQ(slots.size(), size);
        }
        EXPECT_EQ(slots[99], "99"); // moved by growth
    }
}

/// Erases another slot when it goes.
struct Chained {
    Chained(free_slot_vector<Chained>* owner, Index other) : slots(owner), next(other) {}
    Chained(Chained&& moved) noexcept : slots(std::exchange(moved.slots, nullptr)), next(moved.next) {}
    Chained& operator=(Chained&&) = delete;
    ~Chained()
    {
        if (slots && next)
            slots->erase(next);
    }
    free_slot_vector<Chained>* slots;
    Index next; // 0 for none
};

TEST(FreeSlotVector, whatADestructorErasesIsFreeBeforeItsOwnSlot)
{
    free_slot_vector<Chained> slots;
    for (const Index next : {0u, 2u, 0u})
        slots.emplace(&slots, next);
    slots.erase(1);
    for (const Index expected : {1u, 2u, 3u})
        EXPECT_EQ(slots.emplace(&slots, 0u), expected);
}

TEST(FreeSlotVector, whatIsNotThereIsReportedAndMemoryOutsideIsNotTouched)
{
    using Slots = free_slot_vector<std::string>;
    const char* const range = "idx < size()";
    const char* const unreferenced = "!slot.isFree() && \"Try to access unreferenced slot!\"";
    struct Case {
        void (*act)(Slots&);
        const char* report;
        bool throws;
    };
    const auto growByNothing = [](Slots& s) {
        s.clear();
        s.grow(0);
    };
    const Case cases[] = {{[](Slots& s) { s[64].clear(); }, range, true},
                          {[](Slots& s) { s[Slots::npos].clear(); }, range, true},
                          {[](Slots& s) { s[1].clear(); }, unreferenced, true},
                          {[](Slots& s) { static_cast<void>(std::as_const(s)[2]); }, unreferenced, true},
                          {[](Slots& s) { s.erase(64); }, range, false},
                          {[](Slots& s) { s.grow(1); }, "firstFree_ >= size()", false},
                          {growByNothing, "extraSize > 0", false}};
    for (const Case& expected : cases) {
        test::Reports reports;
        Slots slots;
        slots.emplace("kept");
        slots.erase(slots.emplace("erased"));
        std::string thrown;
        try {
            expected.act(slots);
        } catch (const std::bad_variant_access& error) {
            thrown = error.what();
        }
        EXPECT_EQ(thrown, expected.throws ? "bad variant access" : "");
        EXPECT_EQ(reports.expressions(), std::vector<std::string>{expected.report});
        EXPECT_NO_THROW(slots.emplace("goes on"));
    }
}

/// Throws for negative values. The small one is of the kind that a variant likes to build aside and copy in.
struct Small {
    explicit Small(int v) : value(v)
    {
        if (v < 0)
            throw std::invalid_argument("negative");
    }
    int value;
};
struct Large : Small {
    using Small::Small;
    std::string text = "large";
};

template<typename T>
class FreeSlotVectorOf : public testing::Test {
};
using ThrowingTypes = testing::Types<Small, Large>;
TYPED_TEST_SUITE(FreeSlotVectorOf, ThrowingTypes);

TYPED_TEST(FreeSlotVectorOf, aThrowingConstructorLeavesASlotThatIsNeitherFreeNorLive)
{
    test::Reports reports;
    free_slot_vector<TypeParam> slots;
    slots.emplace(10);
    EXPECT_THROW(slots.emplace(-1), std::invalid_argument);
    EXPECT_EQ(slots.nextIndex(), 2u);
    while (slots.size() < 128) // until growth moves all slots
        slots.emplace(12);
    EXPECT_TRUE(slots.contains(1));
    EXPECT_EQ(slots.next(0), 1u);
    EXPECT_EQ(slots[2].value, 12);
    EXPECT_THROW(slots[1], std::bad_variant_access);
    slots.erase(1);
    EXPECT_EQ(slots.emplace(11), 1u);
    EXPECT_EQ(slots[1].value, 11);
    EXPECT_EQ(reports.texts().size(), 0u);
}

TEST(FreeSlotVector, aWalkVisitsWhatIsAppendedAndSkipsWhatIsErasedAhead)
{
    free_slot_vector<int> slots;
    EXPECT_TRUE(slots.empty());
    for (int i = 0; i < 64; ++i)
        slots.emplace(i);
    Indices visited;
    for (Index at = slots.begin(); at != slots.end(); at = slots.next(at)) {
        visited.push_back(at);
        for (Index gone = 1; at == 1 && gone < 63; ++gone)
            slots.erase(gone); // itself among them
        for (int i = 0; at == 63 && i < 63; ++i)
            slots.emplace(i); // 62 behind the walk, the last one ahead
    }
    EXPECT_EQ(visited, (Indices{0, 1, 63, 64}));
    EXPECT_TRUE(slots.contains(64));
    for (const Index none : {65u, 128u, slots.npos})
        EXPECT_FALSE(slots.contains(none)) << none;
    for (Index i = 0; i < 65; ++i)
        slots.erase(i);
    EXPECT_TRUE(slots.empty());
    EXPECT_EQ(slots.size(), 128u);
}

TEST(FreeSlotVector, clearAndMoveTakeAllElementsAndLeaveNone)
{
    const Shared element = std::make_shared<int>(1);
    free_slot_vector<Shared> source = filled(70, element);
    source.erase(7);
    source.erase(4);
    source.erase(4); // changes nothing: the list gains no loop
    free_slot_vector<Shared> target = filled(3, element);
    target = std::move(source);
    EXPECT_EQ(element.use_count(), 1 + 68);
    for (const Index expected : {4u, 7u, 70u})
        EXPECT_EQ(target.emplace(element), expected); // the one freed last comes first
    source = free_slot_vector<Shared>(std::move(target));
    // NOLINTBEGIN(bugprone-use-after-move,clang-analyzer-cplusplus.Move): it promises to be empty
    EXPECT_EQ(target.emplace(element), 0u);
    target.clear();
    // NOLINTEND(bugprone-use-after-move,clang-analyzer-cplusplus.Move)
    EXPECT_EQ(element.use_count(), 1 + 71);
    source.clear();
    EXPECT_EQ(element.use_count(), 1);
    EXPECT_EQ(source.size(), 0u);
    EXPECT_EQ(source.nextIndex(), 0u);
    EXPECT_EQ(source.emplace(element), 0u);
    EXPECT_EQ(source.size(), 64u);
}

} // namespace
