// The same comparison in each form.
#include "report.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <limits>
#include <sstream>
#include <string>

namespace {

using compare::EMark;
using compare::Reading;
using compare::Row;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kSlower = 17.1 - 16.667;

Reading number(double value)
{
    return {compare::EKind::Number, {3, value, 0.25, value, value}, {}, 0};
}

Reading text(const std::string& value)
{
    return {compare::EKind::Text, {}, value, 1};
}

compare::Comparison example()
{
    compare::Comparison comparison;
    comparison.baseSnapshots = comparison.nowSnapshots = 3;
    comparison.rows = {
        {"Frame/Stages/Simulation", number(16.667), number(17.1), kSlower, 2.598, 0.01234, {}, EMark::Worse},
        {"Größe, \"|\"", text("a,b\x1b"), {}, {}, {}, {}, {}, EMark::Removed},
        {"Count", number(4294967295), number(4294967295), 0, 0, {}, statistics::Limit{0, 1}, EMark::Same},
        {"Odd\xff", number(1), number(kInfinity), kInfinity, kInfinity, 0.5, {}, EMark::Noise},
    };
    for (const Row& row : comparison.rows)
        ++comparison.counts[static_cast<std::size_t>(row.mark)];
    comparison.outside = 1;
    return comparison;
}

template<typename... Rest>
std::string printed(void (*print)(std::ostream&, const compare::Comparison&, Rest...),
                    const std::decay_t<Rest>&... rest)
{
    std::ostringstream out;
    print(out, example(), rest...);
    return out.str();
}

std::string linesOf(const std::string& text, std::size_t count)
{
    std::size_t end = 0;
    while (count-- > 0)
        end = text.find('\n', end) + 1;
    return text.substr(0, end);
}

TEST(TextReport, fitsTheWidthByShorteningPathsAlone)
{
    const std::string wide = printed(compare::printText, compare::Look{0, false, true});
    EXPECT_EQ(
        linesOf(wide, 5),
        "path                           base  spread         new  spread  change  percent       p  mark\n"
        "Frame/Stages/Simulation      16.667    0.25        17.1    0.25  +0.433   +2.60%  0.0123  worse\n"
        "Größe, \"|\"                a,b? (+1)       -           -       -       -        -       -  "
        "removed\n"
        "Count                    4294967295    0.25  4294967295    0.25       0    0.00%       -  same, "
        "outside\n"
        "Odd\xff                              1    0.25         inf    0.25    +inf    +inf%  0.5000  "
        "noise\n");
    EXPECT_NE(wide.find("\nworse             1\n"), std::string::npos);
    EXPECT_NE(wide.find("\noutside           1\n"), std::string::npos);

    const std::string narrow = printed(compare::printText, compare::Look{90, false, false});
    EXPECT_NE(narrow.find("\nFrame/St…imulation "), std::string::npos) << narrow;
    for (std::istringstream lines(narrow); !lines.eof();) {
        std::string line;
        std::getline(lines, line);
        EXPECT_LE(line.size(), 90u + 2) << line; // the sign for what is left out has three bytes
    }
    EXPECT_NE(printed(compare::printText, compare::Look{10, false, false}).find("4294967295"),
              std::string::npos);
}

TEST(TextReport, coloursWholeLines)
{
    const std::string text = printed(compare::printText, compare::Look{0, true, false});
    EXPECT_NE(text.find("\n\033[31mFrame/"), std::string::npos);
    EXPECT_NE(text.find("worse\033[0m\n"), std::string::npos);
}

TEST(MarkdownReport, escapesWhatMarkdownWouldRead)
{
    const std::string text = printed(compare::printMarkdown, compare::Look{20, true, false});
    EXPECT_EQ(linesOf(text, 4),
              "| path | base | spread | new | spread | change | percent | mark |\n"
              "|---|--:|--:|--:|--:|--:|--:|---|\n"
              "| Frame/Stages/Simulation | 16.667 | 0.25 | 17.1 | 0.25 | +0.433 | +2.60% | worse |\n"
              "| Größe, \"\\|\" | a,b? (+1) | - | - | - | - | - | removed |\n");
    EXPECT_NE(text.find("| removed | 1 |\n"), std::string::npos);
}

TEST(CsvReport, quotesAndKeepsAllDigits)
{
    EXPECT_EQ(
        printed(compare::printCsv),
        "path,base,base spread,base count,new,new spread,new count,change,percent,p,mark,outside\r\n"
        "Frame/Stages/Simulation,16.667,0.25,3,17.1,0.25,3,0.43299999999999983,2.598,0.01234,worse,no\r\n"
        "\"Größe, \"\"|\"\"\",\"a,b\x1b\",,,,,,,,,removed,no\r\n"
        "Count,4294967295,0.25,3,4294967295,0.25,3,0,0,,same,yes\r\n"
        "Odd\xff,1,0.25,3,inf,0.25,3,inf,inf,0.5,noise,no\r\n");
}

TEST(JsonReport, isWholeJsonWithAllDigits)
{
    const nlohmann::json report = nlohmann::json::parse(printed(compare::printJson, 0.05));
    EXPECT_EQ(report["counts"]["worse"], 1);
    EXPECT_EQ(report["counts"]["outside"], 1);
    EXPECT_EQ(report["rows"][0]["change"].get<double>(), kSlower);
    EXPECT_EQ(report["rows"][0]["base"]["spread"], 0.25);
    EXPECT_EQ(report["rows"][1]["base"]["value"], "a,b\x1b");
    EXPECT_TRUE(report["rows"][1]["new"].is_null());
    EXPECT_EQ(report["rows"][2]["limit"]["max"], 1.0);
    EXPECT_EQ(report["rows"][3]["change"], "inf");
    EXPECT_EQ(report["rows"][3]["path"], "Odd\xef\xbf\xbd");
}

TEST(Selection, leavesOutAndOrders)
{
    const auto order = [](compare::Selection selection) {
        compare::Comparison comparison = example();
        select(comparison, selection);
        std::string initials;
        for (const Row& row : comparison.rows)
            initials += row.path[0];
        return initials;
    };
    EXPECT_EQ(order({}), "FGCO");
    EXPECT_EQ(order({true, compare::ESort::None}), "FGC");
    EXPECT_EQ(order({false, compare::ESort::Path}), "CFGO");
    EXPECT_EQ(order({false, compare::ESort::Change}), "GOFC");
    EXPECT_EQ(order({false, compare::ESort::Probability}), "FOGC");
}

} // namespace
