// The container behind every id: which index comes next, what a slot holds, walks over what changes.
#include "support/reports.h"

#include "free_slot_vector.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace {

using Index = std::uint32_t;
using Indices = std::vector<Index>;
using Shared = std::shared_ptr<int>; // tells by its count how many elements are alive

template<typename T>
Indices walk(const free_slot_vector<T>& slots)
{
    Indices visited;
    for (Index at = slots.begin(); at != slots.end(); at = slots.next(at)) {
        visited.push_back(at);
    }
    return visited;
}

free_slot_vector<Shared> filled(Index count, const Shared& element)
{
    free_slot_vector<Shared> slots;
    for (Index i = 0; i < count; ++i) {
        EXPECT_EQ(slots.emplace(element), i);
    }
    return slots;
}

TEST(FreeSlotVector, growsTo64AndDoublesFromThere)
{
    free_slot_vector<std::string> slots;
    EXPECT_EQ(std::make_pair(slots.size(), slots.nextIndex()), std::make_pair(0U, 0U));
    for (Index i = 0; i < 300; ++i) {
        const Index announced = slots.nextIndex();
        EXPECT_EQ(slots.emplace(std::to_string(i)), i);
        EXPECT_EQ(announced, i);
        EXPECT_EQ(slots.size(), i < 64 ? 64U : i < 128 ? 128U : i < 256 ? 256U : 512U);
    }
    EXPECT_EQ(slots[299], "299"); // moved by each growth
    EXPECT_EQ(slots[0], "0");

    free_slot_vector<std::string> hundred;
    hundred.grow(100);
    for (Index i = 0; i < 100; ++i) {
        hundred.emplace("x");
    }
    EXPECT_EQ(std::make_pair(hundred.size(), hundred.nextIndex()), std::make_pair(100U, 100U));
    EXPECT_EQ(hundred.emplace("grown"), 100U);
    EXPECT_EQ(hundred.size(), 200U);
}

TEST(FreeSlotVector, theSlotFreedLastIsUsedFirst)
{
    const Shared element = std::make_shared<int>(1);
    free_slot_vector<Shared> slots = filled(10, element);
    slots.erase(3);
    slots.erase(7);
    slots.erase(7); // changes nothing: the list gains no loop
    EXPECT_EQ(element.use_count(), 1 + 8);
    EXPECT_EQ(walk(slots), (Indices{0, 1, 2, 4, 5, 6, 8, 9}));
    Indices given;
    for (int i = 0; i < 3; ++i) {
        given.push_back(slots.emplace(element));
    }
    EXPECT_EQ(given, (Indices{7, 3, 10}));
    EXPECT_EQ(slots.size(), 64U);
}

TEST(FreeSlotVector, knowsWhatIsLive)
{
    free_slot_vector<int> slots;
    EXPECT_TRUE(slots.empty());
    for (int i = 0; i < 64; ++i) {
        slots.emplace(i);
    }
    for (Index i = 0; i < 64; ++i) {
        if (i != 5 && i != 60) {
            slots.erase(i);
        }
    }
    test::Reports reports;
    EXPECT_EQ(walk(slots), (Indices{5, 60}));
    EXPECT_TRUE(slots.contains(5));
    EXPECT_FALSE(slots.contains(6) || slots.contains(64) || slots.contains(slots.npos));
    slots.erase(5);
    slots.erase(60);
    EXPECT_TRUE(slots.empty());
    EXPECT_EQ(slots.size(), 64U);
    EXPECT_EQ(reports.texts().size(), 0U);
}

TEST(FreeSlotVector, whatIsNotThereIsReportedAndMemoryOutsideIsNotTouched)
{
    using Slots = free_slot_vector<std::string>;
    const std::string range = "idx < size()";
    const std::string unreferenced = "!slot.isFree() && \"Try to access unreferenced slot!\"";
    struct Case {
        const char* name;
        std::function<void(Slots&)> act;
        std::vector<std::string> reports;
        bool throws;
    };
    const Case cases[] = {
        {"read out of range", [](Slots& s) { s[64].clear(); }, {range}, true},
        {"read of the end of a walk", [](Slots& s) { s[Slots::npos].clear(); }, {range}, true},
        {"read of an erased element", [](Slots& s) { s[1].clear(); }, {unreferenced}, true},
        {"read of a slot never used", [](Slots& s) { std::as_const(s)[2].size(); }, {unreferenced}, true},
        {"erase out of range", [](Slots& s) { s.erase(64); }, {range}, false},
        {"growth with free slots", [](Slots& s) { s.grow(1); }, {"firstFree_ >= size()"}, false},
        {"growth by nothing", [](Slots& s) { s.clear(), s.grow(0); }, {"extraSize > 0"}, false},
    };
    for (const Case& expected : cases) {
        test::Reports reports;
        Slots slots;
        slots.emplace("kept");
        slots.erase(slots.emplace("erased"));
        bool thrown = false;
        try {
            expected.act(slots);
        } catch (const std::bad_variant_access& error) {
            thrown = true;
            EXPECT_STREQ(error.what(), "bad variant access");
        }
        EXPECT_EQ(thrown, expected.throws) << expected.name;
        EXPECT_EQ(reports.expressions(), expected.reports) << expected.name;
        EXPECT_NO_THROW(slots.emplace("goes on")) << expected.name;
    }
}

// Throws for negative values. The small one is of the kind that a variant likes to build aside and copy in.
struct Small {
    explicit Small(int v) : value(v >= 0 ? v : throw std::invalid_argument("negative")) {}
    int value;
};
struct Large {
    explicit Large(int v) : value(v), text(v >= 0 ? "large" : throw std::invalid_argument("negative")) {}
    int value;
    std::string text;
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
    EXPECT_EQ(slots.nextIndex(), 2U);
    for (int value = 12; slots.size() < 128; ++value) {
        slots.emplace(value); // until growth moves all slots
    }
    EXPECT_TRUE(slots.contains(1));
    EXPECT_EQ(slots.next(0), 1U);
    EXPECT_EQ(slots[2].value, 12);
    EXPECT_THROW(slots[1], std::bad_variant_access);
    EXPECT_EQ(reports.texts().size(), 0U);
    slots.erase(1);
    EXPECT_FALSE(slots.contains(1));
    EXPECT_EQ(slots.emplace(11), 1U);
    EXPECT_EQ(slots[1].value, 11);
}

TEST(FreeSlotVector, aWalkVisitsWhatIsAppendedAndSkipsWhatIsErasedAhead)
{
    free_slot_vector<int> slots;
    for (int i = 0; i < 64; ++i) {
        slots.emplace(i);
    }
    Indices visited;
    for (Index at = slots.begin(); at != slots.end(); at = slots.next(at)) {
        visited.push_back(at);
        if (at == 1) {
            for (Index gone = 1; gone < 63; ++gone) {
                slots.erase(gone); // itself among them
            }
        } else if (at == 63) {
            for (int i = 0; i < 63; ++i) {
                slots.emplace(i); // 62 behind the walk, the last one ahead
            }
        }
    }
    EXPECT_EQ(visited, (Indices{0, 1, 63, 64}));
}

TEST(FreeSlotVector, clearAndDestructionDestroyWhatIsLive)
{
    const Shared element = std::make_shared<int>(1);
    {
        free_slot_vector<Shared> slots = filled(70, element);
        slots.erase(9);
        slots.clear();
        EXPECT_EQ(element.use_count(), 1);
        EXPECT_EQ(std::make_pair(slots.size(), slots.nextIndex()), std::make_pair(0U, 0U));
        EXPECT_EQ(slots.emplace(element), 0U);
        EXPECT_EQ(slots.size(), 64U);
    }
    EXPECT_EQ(element.use_count(), 1);
}

TEST(FreeSlotVector, aMoveCarriesTheFreeListAndLeavesAnEmptyContainer)
{
    const Shared element = std::make_shared<int>(1);
    free_slot_vector<Shared> source = filled(10, element);
    source.erase(4);
    free_slot_vector<Shared> target = filled(3, element);
    target = std::move(source);
    EXPECT_EQ(element.use_count(), 1 + 9);
    EXPECT_EQ(target.emplace(element), 4U);
    EXPECT_EQ(target.emplace(element), 10U);
    // NOLINTBEGIN(bugprone-use-after-move,clang-analyzer-cplusplus.Move): it promises to be empty
    EXPECT_EQ(source.size(), 0U);
    EXPECT_EQ(source.emplace(element), 0U);
    // NOLINTEND(bugprone-use-after-move,clang-analyzer-cplusplus.Move)
    const free_slot_vector<Shared> made(std::move(target));
    EXPECT_EQ(walk(made).size(), 11U);
}

} // namespace
