// Which mark a path gets, from the bytes of its snapshots on.
#include "arguments.h"
#include "limit_file.h"
#include "run.h"

#include "support/files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

using compare::EDirection;
using compare::Judgement;
using compare::Row;

/// What one path held in the snapshots of a side, in their order; "" for a snapshot that hasn't the path.
using Values = std::vector<std::string>;

class Compared {
public:
    explicit Compared(const std::vector<std::string>& options = {})
    {
        std::vector<const char*> texts = {"statistics-compare", "base", "new"};
        for (const std::string& option : options)
            texts.push_back(option.c_str());
        int status = 0;
        m_judgement =
            compare::parseArguments(static_cast<int>(texts.size()), texts.data(), status).value().judgement;
    }

    Judgement& judgement() { return m_judgement; }

    Row row(const Values& base, const Values& now, const std::string& path = "Path")
    {
        compare::Paths paths;
        compare::Samples sides[2];
        fill(paths, sides[0], base, path);
        fill(paths, sides[1], now, path);
        m_comparison = judge(paths, sides[0], sides[1], m_judgement);
        return m_comparison.rows.at(0);
    }
    std::string mark(const Values& base, const Values& now, const std::string& path = "Path")
    {
        return markName(row(base, now, path).mark);
    }
    std::size_t untested() const { return m_comparison.untested; }

private:
    static void fill(compare::Paths& paths, compare::Samples& side, const Values& values,
                     const std::string& path)
    {
        for (const std::string& value : values) {
            paths.beginFile();
            side.beginSnapshot();
            if (!value.empty())
                side.add(paths.numberOf(path), value);
        }
    }

    Judgement m_judgement;
    compare::Comparison m_comparison;
};

TEST(Marks, comparesNumbersAsNumbersAndTextsAsTexts)
{
    const struct {
        const char* base;
        const char* now;
        const char* mark;
    } cases[] = {
        {"7", "7.000", "same"},        {"4294967295", "4294967296", "changed"},
        {"0.000", "-0.000", "same"},   {"nan", "-nan", "same"},
        {"inf", "inf", "same"},        {"inf", "-inf", "changed"},
        {"nan", "5", "changed"},       {"north", "south", "changed"},
        {"north", "north", "same"},    {"12 apples", "12 pears", "changed"},
        {"7", "seven", "changed"},     {"---", "---", "same"},
        {"0", "---", "changed"},       {"---", "0", "changed"},
        {"1e999", "1e998", "changed"}, {"0x10", "16", "changed"},
    };
    for (const auto& [base, now, mark] : cases)
        EXPECT_EQ(Compared().mark({base}, {now}), mark) << base << " and " << now;
    EXPECT_EQ(Compared().mark({"5"}, {""}), "removed");
    EXPECT_EQ(Compared().mark({""}, {"---"}), "added");
}

TEST(Marks, takesARunByItsMedianAndItsTextsTogether)
{
    Compared compared;
    const Row row = compared.row({"1", "---", "5", "", "3"}, {"3", "2", "4"});
    EXPECT_EQ(row.mark, compare::EMark::Same);
    EXPECT_EQ(row.base->numbers.count, 3u);
    EXPECT_EQ(row.base->numbers.spread, 2);
    EXPECT_EQ(compared.row(Values(100, "1"), {"1"}).base->numbers.count, 100u);
    EXPECT_EQ(compared.row({"-100"}, {"-110"}).percent, -10);
    EXPECT_EQ(compared.mark({"idle", "busy", "idle"}, {"busy", "idle"}), "same");
    EXPECT_EQ(compared.mark({"idle", "busy"}, {"busy", "lost", "idle"}), "changed");
    EXPECT_EQ(compared.mark({"idle", "1"}, {"idle", "2"}), "changed");
    EXPECT_EQ(compared.mark({"idle", "1"}, {"1.0", "idle", "idle"}), "same");
}

TEST(Marks, tellsNoiseFromChangeByEnoughValues)
{
    const Values base = {"10", "12", "11", "13"};
    const Values far = {"20", "22", "21", "23"};
    Compared compared;
    EXPECT_EQ(compared.mark(base, {"11", "13", "12", "14"}), "noise");
    EXPECT_EQ(compared.mark(base, far), "changed");
    EXPECT_EQ(compared.untested(), 0u);
    EXPECT_EQ(compared.mark({"10", "12", "11", "13", "9"}, {"11", "13", "12"}), "changed");
    EXPECT_EQ(compared.untested(), 1u);
    // Four and four can't be clearer than 0.029: nothing would ever be a change.
    Compared strict({"--alpha", "0.01"});
    EXPECT_EQ(strict.mark(base, far), "changed");
    EXPECT_EQ(strict.untested(), 1u);
}

TEST(Marks, toleratesByTheLastPatternThatFits)
{
    Compared compared({"--tolerance", "0.5", "--tolerance=Frame/*=10%", "--tolerance", "*/Any=inf"});
    EXPECT_EQ(compared.mark({"2"}, {"2.5"}), "within tolerance");
    EXPECT_EQ(compared.untested(), 0u);
    EXPECT_EQ(compared.mark({"2"}, {"2.501"}), "changed");
    EXPECT_EQ(compared.mark({"-100"}, {"-110"}, "Frame/Time"), "within tolerance");
    EXPECT_EQ(compared.mark({"0"}, {"0.1"}, "Frame/Time"), "changed");
    EXPECT_EQ(compared.mark({"0.7"}, {"0.77"}, "Frame/Time"),
              "within tolerance"); // 0.07 and a bit, as doubles
    EXPECT_EQ(compared.mark({"1"}, {"inf"}, "Frame/Time"), "changed");
    EXPECT_EQ(compared.mark({"1"}, {"nan"}, "Frame/Any"), "within tolerance");
    EXPECT_EQ(compared.mark({"north"}, {"south"}, "Frame/Any"), "within tolerance");
    EXPECT_EQ(compared.mark({"north"}, {""}, "Frame/Any"), "removed");
}

TEST(Marks, knowsWhichWayIsWorse)
{
    Compared compared(
        {"--lower-is-better", "*", "--higher-is-better", "Frame/R?te", "--lower-is-better", R"(a\*)"});
    EXPECT_EQ(compared.mark({"5"}, {"6"}, "Frame/Time"), "worse");
    EXPECT_EQ(compared.mark({"5"}, {"-inf"}, "Frame/Time"), "better");
    EXPECT_EQ(compared.mark({"5"}, {"6"}, "Frame/Rate"), "better");
    EXPECT_EQ(compared.mark({"5"}, {"nan"}, "Frame/Rate"), "changed");
    EXPECT_EQ(compared.mark({"5"}, {"six"}, "Frame/Rate"), "changed");
}

TEST(Patterns, fitWholePaths)
{
    using compare::matches;
    for (const char* pattern : {"*", "a/*/c", "a/b/c", "a/?/c", "*c", "a*b*c", "**a/b/c*", R"(\a/b\/c)"})
        EXPECT_TRUE(matches(pattern, "a/b/c")) << pattern;
    for (const char* pattern : {"", "a/b", "b/c", "a/?c", "A/b/c", "a/b/c?", R"(a/\*)", R"(a/b/c\)", "*b"})
        EXPECT_FALSE(matches(pattern, "a/b/c")) << pattern;
    EXPECT_TRUE(matches(R"(a\*b)", "a*b"));
    EXPECT_TRUE(matches("", ""));
    EXPECT_FALSE(matches(std::string(2000, '*') + "b", std::string(100000, 'a')));
}

TEST(Limits, judgeTheNewSide)
{
    const test::TempDir dir;
    dir.write("preset.json", R"({"name": "x", "limits": {"Frame/*": {"min": 0, "max": 33.3},
                                                         "work.size": {"min": 5, "max": 6}}})");
    Compared compared;
    ASSERT_EQ(readLimits(dir("preset.json"), {{"work.size", "Work/Size"}}, compared.judgement().limits), "");
    EXPECT_FALSE(compared.row({"50"}, {"33.3"}, "Frame/Time").limit);
    EXPECT_TRUE(compared.row({"1"}, {"33.301"}, "Frame/Time").limit);
    EXPECT_TRUE(compared.row({"4"}, {"4"}, "Work/Size").limit);
    EXPECT_FALSE(compared.row({"4"}, {"5"}, "Work/Size").limit);
    EXPECT_TRUE(compared.row({""}, {"7"}, "Work/Size").limit);
    EXPECT_FALSE(compared.row({"4"}, {"---"}, "Work/Size").limit);

    dir.write("damaged.json", "{\"limits\":\n{");
    EXPECT_NE(readLimits(dir("damaged.json"), {}, compared.judgement().limits), "");
    EXPECT_NE(readLimits(dir("missing.json"), {}, compared.judgement().limits), "");
    dir.write("long.json", std::string((1 << 20) + 1, ' '));
    EXPECT_EQ(readLimits(dir("long.json"), {}, compared.judgement().limits), "is longer than 1 MiB");
    EXPECT_NE(readLimits(dir(""), {}, compared.judgement().limits), "");
}

TEST(Samples, takeABadSnapshotBack)
{
    const test::TempDir dir;
    const std::string head = "sep=\t\nCaption\tValue\n";
    dir.write("2.csv", head + "c\t1\na\t5\na\tlast\nb\ty\nb\t9");
    dir.write("4.csv", head);
    dir.write("1.csv", head + "a\t1\nb\tx\n");
    dir.write("3.csv", head + "b\tx\nb\t2\na\t3\n");
    compare::Paths paths;
    compare::Samples side;
    compare::Progress progress(4);
    std::vector<compare::Problem> problems;
    const std::vector<std::string> files = compare::snapshotsOf(dir(""), problems);
    EXPECT_TRUE(std::is_sorted(files.begin(), files.end()));
    for (const std::string& file : files)
        readSnapshot(file, paths, side, progress, problems);
    ASSERT_EQ(problems.size(), 2u);
    EXPECT_NE(problems[0].what.find("line 7"), std::string::npos) << problems[0].what;
    EXPECT_EQ(problems[1].what, "empty: it ends with line 2");
    EXPECT_EQ(side.snapshots(), 2u);
    EXPECT_EQ(side.find(paths.numberOf("a"))->numbers, (std::vector<double>{1, 3}));
    EXPECT_EQ(side.find(paths.numberOf("b"))->numbers, (std::vector<double>{2})); // the later of two
    EXPECT_EQ(side.find(paths.numberOf("b"))->texts.size(), 1U);
    EXPECT_EQ(side.find(paths.numberOf("c")), nullptr);
}

} // namespace
