// What the demo writes for other programs and reads from them, where the running demo rarely shows it.
#include "csv.h"
#include "proc_text.h"
#include "texts/preset_file.h"
#include "texts/shown_text.h"

#include <statistics/diff_table.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

namespace {

using statistics::CounterValue;

TEST(ComparisonAsCsv, quotesWhatASpreadsheetWouldSplit)
{
    statistics::DiffTable comparison;
    comparison.m_columns = {{"a,b.csv", 0}, {R"(say "hi")", 1}};
    comparison.m_rows = {
        {"Plain/Path", {CounterValue(0.1f), CounterValue(16777216.0f)}, true},
        {"two\nlines", {CounterValue(-3), CounterValue()}, false},
        {"Text", {CounterValue(std::string(R"(x,"y")")), CounterValue(4000000000u)}, true},
    };
    EXPECT_EQ(demo::toCsv(comparison), "Caption,\"a,b.csv\",\"say \"\"hi\"\"\",Changed\r\n"
                                       "Plain/Path,0.1,16777216,yes\r\n"
                                       "\"two\nlines\",-3,,no\r\n"
                                       "Text,\"x,\"\"y\"\"\",4000000000,yes\r\n");
}

TEST(PresetFile, givesBackWhatWasSaved)
{
    const statistics::LimitMap limits = {{"a.b", {0.1f, 33.3f}}, {R"("odd" \ key)", {-1e30f, 1e30f}}};
    const std::string text = texts::printPreset("My limits", limits);
    EXPECT_NE(text.find("\"min\": 0.1\n"), std::string::npos) << text;

    const texts::PresetText preset = texts::parsePreset(text);
    EXPECT_EQ(preset.problem, "");
    EXPECT_EQ(preset.name, "My limits");
    ASSERT_EQ(preset.limits.size(), limits.size());
    for (const auto& [key, limit] : limits) {
        EXPECT_EQ(preset.limits.at(key).min, limit.min) << key;
        EXPECT_EQ(preset.limits.at(key).max, limit.max) << key;
    }
}

TEST(PresetFile, tellsWhatIsWrongWithIt)
{
    const struct {
        const char* text;
        const char* problem;
    } cases[] = {
        {"", "is damaged in line 1"},
        {"{\"limits\":\n {\"a\": {\"min\": 1,\n \"max\": }}}", "is damaged in line 3"},
        {"[1, 2]", "holds no preset"},
        {"{}", "has no limits"},
        {R"({"limits": 3})", "has no limits"},
        {R"({"limits": {"a": 3}})", "has 'a', which has no min and max"},
        {R"({"limits": {"a": {"min": 1}}})", "has 'a', which has no min and max"},
        {R"({"limits": {"a": {"min": "1", "max": 2}}})", "has 'a', which has no min and max"},
        {R"({"limits": {"a\n": {"min": 3, "max": 2}}})", "has 'a?', which has a min above its max"},
        {R"({"limits": {"a": {"min": 0, "max": 1e39}}})", "has 'a', which has a number that is out of range"},
        {R"({"limits": {"a": {"min": 0, "max": 1e999}}})", "has a number that is out of range"},
    };
    for (const auto& [text, problem] : cases)
        EXPECT_EQ(texts::parsePreset(text).problem, problem) << text;
}

TEST(PresetFile, isRefusedWhenItIsNestedTooDeep)
{
    constexpr std::size_t kDepth = 100000; // enough for the stack to overflow where each level takes some
    const std::string deep = std::string(kDepth, '[') + std::string(kDepth, ']');
    EXPECT_EQ(texts::parsePreset(deep).problem, "is nested too deep");
    EXPECT_EQ(texts::parsePreset(R"({"limits": {}, "note": )" + deep + "}").problem, "is nested too deep");
    EXPECT_EQ(texts::parsePreset(R"({"limits": {}, "note": "\"[[[[[[[[[[[[[[[[[["})").problem, "");
}

TEST(PresetFile, keepsWhatTheProgramDoesNotKnow)
{
    const std::string old = R"({"name": "Mine", "note": ["a", {"b": 1}],
                                "limits": {"a": {"min": 0, "max": 1, "why": "c"}, "z": {"min": 5, "max": 6}}})";
    const std::string text = texts::printPreset("mine", {{"a", {2, 3}}}, old);
    for (const char* kept :
         {R"("name": "Mine")", R"("note")", R"("why": "c")", R"("max": 6)", R"("min": 2.0)"})
        EXPECT_NE(text.find(kept), std::string::npos) << kept << " in " << text;
    EXPECT_EQ(texts::parsePreset(text).problem, "");
}

TEST(ShownText, isOneLineOfBoundedLength)
{
    EXPECT_EQ(texts::visible("a\tb\nc\x7f\xc2\x85 \xc3\xa4"), "a?b?c?? \xc3\xa4");
    EXPECT_EQ(texts::bounded("abc", 3), "abc");
    EXPECT_EQ(texts::bounded("abcd", 3), "abc... (4 characters)");
    EXPECT_EQ(texts::bounded("ab\xc3\xa4", 3), "ab... (4 characters)"); // no half of a character
}

TEST(TaskStat, isReadWhateverTheNameUnlessTheTaskEndedMeanwhile)
{
    const std::string numbers = " S 1 1 1 0 -1 0 0 0 0 0 150 50 0 0 20 -5 7 0 100 4096000 250 0";
    const auto stat = demo::parseTaskStat("42 (a) b (c)" + numbers);
    ASSERT_TRUE(stat);
    EXPECT_EQ(stat->name, "a) b (c");
    EXPECT_EQ(stat->state, 'S');
    EXPECT_EQ(stat->nice, -5);
    EXPECT_EQ(stat->threads, 7);
    EXPECT_GT(stat->processorSeconds, 0);
    EXPECT_GT(stat->residentMiB, 0);
    for (const char* text : {"", "42 (name", "42 (name)", "42 (name) S 1 1"})
        EXPECT_FALSE(demo::parseTaskStat(text)) << text;
}

} // namespace
