// The value type by its tables: printing, reading as numbers, comparing, adding, weighing.
#include "support/reports.h"

#include <statistics/value.h>

#include <gtest/gtest.h>

#include <array>
#include <cfloat>
#include <climits>
#include <clocale>
#include <cmath>
#include <limits>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace {

using Value = statistics::CounterValue;
using Texts = std::vector<std::string>;

constexpr float kInfinity = std::numeric_limits<float>::infinity();

Value text(const char* content)
{
    return Value(std::string(content));
}

// Text and kind. Exactly one kind is told.
std::string describe(const Value& value)
{
    std::string result = value.toString(nullptr);
    result += value.isInt() ? " int" : "";
    result += value.isUInt() ? " uint" : "";
    result += value.isDecimal() ? " decimal" : "";
    result += value.isString() ? " string" : "";
    result += value.isEmpty() ? " empty" : "";
    return result + (value.valid() ? "" : " invalid");
}

TEST(Value, printsByItsKindOrAsTheFormatAsks)
{
    using Prints = std::vector<std::pair<const char*, std::string>>; // by format
    const std::pair<Value, Prints> cases[] = {
        {-5, {{nullptr, "-5"}, {"%d MB", "-5 MB"}, {"%5d%%|", "   -5%|"}, {"", ""}, {"5%% of", "5% of"}}},
        {INT_MIN, {{nullptr, "-2147483648"}, {"%300d", std::string(289, ' ') + "-2147483648"}}},
        {UINT_MAX, {{nullptr, "4294967295"}, {"%#x", "0xffffffff"}, {"%lld", "4294967295"}}},
        {1.5F, {{nullptr, "1.500"}, {"%g", "1.5"}, {"%Lg", "1.5"}}},
        {-0.0006F, {{nullptr, "-0.001"}}},
        {FLT_MAX, {{nullptr, "340282346638528859811704183484516925440.000"}}},
        {text("12%d"), {{nullptr, "12%d"}, {"%d MB", "12%d"}}},
        {{}, {{nullptr, "---"}, {"%d MB", "---"}}},
        // A format for another kind gets the value converted, as large as it reads it.
        {-1, {{"%u", "4294967295"}, {"%ld", "-1"}, {"%llu", "4294967295"}, {"%zu", "4294967295"}}},
        {UINT_MAX, {{"%d", "-1"}, {"%.0f", "4294967295"}, {"%hhd", "-1"}}},
        {16777217, {{"%.0f", "16777217"}, {"%.1f", "16777217.0"}}},
        {-2.9F, {{"%d MB", "-2 MB"}, {"%u", "4294967294"}, {"%lld", "-2"}}},
        {kInfinity, {{nullptr, "inf"}, {"%d", "2147483647"}}},
    };
    for (const auto& [value, prints] : cases) {
        for (const auto& [format, printed] : prints) {
            EXPECT_EQ(value.toString(format), printed) << (format ? format : "null");
        }
    }
}

TEST(Value, aFormatThatWouldReadMoreThanOneNumberGivesTheDefaultPrint)
{
    const Texts formats = {"%s",   "%p",   "%n",   "%d%n", "%d %d", "%d%s", "%%%s",    "%*d",
                           "%.*f", "%5*d", "%1$d", "%Ld",  "%llf",  "%ls",  "%99999d", "%.99999f",
                           "%lc",  "%m",   "% %",  "%",    "%l",    "%5."};
    for (const std::string& format : formats) {
        EXPECT_EQ(Value(7).toString(format.c_str()), "7") << format;
        EXPECT_EQ(Value(7U).toString(format.c_str()), "7") << format;
        EXPECT_EQ(Value(7.0F).toString(format.c_str()), "7.000") << format;
    }
}

TEST(Value, theDefaultPrintHasAPointInEveryLocale)
{
    const char* found = nullptr;
    for (const char* name : {"de_DE.UTF-8", "fr_FR.UTF-8", "ru_RU.UTF-8", "de_DE", "German"}) {
        found = found ? found : std::setlocale(LC_ALL, name);
    }
    if (!found) {
        GTEST_SKIP() << "no locale with a decimal comma is installed";
    }
    EXPECT_EQ(Value(1234.5F).toString("%.1f"), "1234,5"); // the host's own format follows the host's locale
    EXPECT_EQ(Value(1234.5F).toString(nullptr), "1234.500");
    EXPECT_EQ(Value(1234.5F), text("1234.500"));
    std::setlocale(LC_ALL, "C");
}

TEST(Value, readsAsANumberOfAnyKindAndSaturates)
{
    const std::tuple<Value, int, unsigned, float> cases[] = {
        {-1, -1, UINT_MAX, -1.0F},
        {UINT_MAX, -1, UINT_MAX, 4294967296.0F},
        {2.9F, 2, 2U, 2.9F},
        {-1.5F, -1, UINT_MAX, -1.5F},
        {2147483648.0F, INT_MAX, 2147483648U, 2147483648.0F},
        {-3e9F, INT_MIN, 1294967296U, -3e9F},
        {FLT_MAX, INT_MAX, UINT_MAX, FLT_MAX},
        {-kInfinity, INT_MIN, 0U, -kInfinity},
        {text("12"), 0, 0U, 0.0F},
        {Value(), 0, 0U, 0.0F},
    };
    for (const auto& [value, asInt, asUInt, asFloat] : cases) {
        EXPECT_EQ(value.toInt(), asInt) << describe(value);
        EXPECT_EQ(value.toUInt(), asUInt) << describe(value);
        EXPECT_EQ(value.toFloat(), asFloat) << describe(value);
    }
    EXPECT_EQ(Value(NAN).toInt(), 0);
    EXPECT_EQ(Value(NAN).toUInt(), 0U);
}

TEST(Value, comparesByTheRulesOfTheLeftSide)
{
    using Pairs = std::vector<std::pair<Value, Value>>;
    const std::pair<std::string, Pairs> cases[] = {
        // by all of ==, <, > that hold
        {"<", {{1, 2}, {-1, 0U}, {0U, -1}, {-1, {}}, {text("ab"), text("abc")}}},
        {">", {{UINT_MAX, 1U}, {2.5F, 2}, {3.5F, 3}, {text("9"), 10}, {text("\xFF"), text("a")}}},
        {">", {{text("a"), {}}, {Value(std::string("a\0b", 3)), text("a")}}},
        {"==", {{-1, UINT_MAX}, {text("12"), 12}, {text("1.500"), 1.5F}, {{}, {}}}},
        {"==>", {{12, text("12")}, {16777217, 16777216.0F}}},
        {"", {{3, 3.5F}, {INT_MAX, FLT_MAX}, {NAN, NAN}, {text("---"), {}}, {0U, {}}, {{}, 0}}},
    };
    for (const auto& [expected, pairs] : cases) {
        for (const auto& [left, right] : pairs) {
            std::string relation = left == right ? "==" : "";
            relation += left < right ? "<" : "";
            relation += left > right ? ">" : "";
            EXPECT_EQ(relation, expected) << describe(left) << " and " << describe(right);
            EXPECT_NE(left == right, left != right);
        }
    }
}

TEST(Value, addsWhatFitsAndReportsTheRest)
{
    const Texts kNothing;
    const Texts kUnfit = {"canCast(m_type, other.m_type)"};
    const std::tuple<Value, Value, std::string, Texts> cases[] = {
        {Value(), text("x"), "x string", kNothing},
        {Value(), Value(), "--- empty invalid", kNothing},
        {1, Value(), "1 int", kNothing},
        {text("x"), Value(), "x string", kNothing},
        {1, 2U, "3 int", kNothing},
        {2U, 3, "5 uint", kNothing},
        {INT_MAX, 1, "-2147483648 int", kNothing},
        {0U, -1, "4294967295 uint", kNothing},
        {1.5F, 2.0F, "3.500 decimal", kNothing},
        {1, 2.0F, "1 int", kUnfit},
        {1.0F, 2U, "1.000 decimal", kUnfit},
        {text("a"), 1, "a string", kUnfit},
        {1U, text("1"), "1 uint", kUnfit},
        {text("a"), text("b"), "a string", {"false"}},
    };
    test::Reports reports;
    for (const auto& [value, added, expected, reported] : cases) {
        Value sum = value;
        EXPECT_EQ(describe(sum += added), expected);
        EXPECT_EQ(reports.take(), reported) << describe(value) << " += " << describe(added);
    }
}

TEST(Value, weighsItsWayBetweenTwoLimits)
{
    using ValueMinMax = std::vector<std::array<Value, 3>>;
    const std::pair<float, ValueMinMax> cases[] = {
        {0.5F, {{75, 50, 100}, {7, 2.9F, 12.9F}, {7.5F, 5, 10U}, {20U, 10.5F, 30.0F}}},
        {0.5F, {{Value(), -5, 5}, {Value(), -1.0F, 1.0F}, {1 << 30, 0, kInfinity}}},
        {1.5F, {{150.0F, 0.0F, 100.0F}, {15U, 0, 10U}}},
        {-0.1F, {{-10.0F, 0.0F, 100.0F}, {-10, 0, 100}}},
        {4294967291.0F / 10, {{5U, 10U, 20U}}}, // unsigned differences wrap around, and so do signed ones
        {2147483648.0F, {{0, INT_MIN, INT_MAX}}},
        {kInfinity, {{5, 0, 0}, {5U, 0U, 0U}}},
        {-kInfinity, {{-5, 0, 0}, {-5.0F, 0.0F, 0.0F}}},
    };
    for (const auto& [weight, values] : cases) {
        for (const auto& [value, min, max] : values) {
            EXPECT_FLOAT_EQ(Value(value).weight(min, max), weight)
                << describe(value) << " from " << describe(min);
        }
    }
    EXPECT_TRUE(std::isnan(Value(0U).weight(0U, 0U)));
}

TEST(Value, limitsThatAreNoNumbersAreReportedAndWeighLessThanNothing)
{
    const std::string kWeigh = "Cannot weight CounterValue";
    const std::string kCast = "Cannot cast CounterValue to ";
    const std::tuple<Value, Value, Value, Texts> cases[] = {
        {5, text("0"), 10, {kCast + "int", kWeigh}},
        {5U, text("0"), text("9"), {kCast + "uint", kCast + "uint", kWeigh}},
        {5.0F, text("0"), 10, {kCast + "float", kWeigh}},
        {5, Value(), 10, {kWeigh}},
        {text("5"), 0, 10, {kWeigh}},
    };
    for (const auto& [value, min, max, messages] : cases) {
        test::Reports reports;
        EXPECT_EQ(Value(value).weight(min, max), -1.0F);
        ASSERT_EQ(reports.texts().size(), messages.size()) << describe(value);
        for (std::size_t i = 0; i < messages.size(); ++i) {
            const std::string whole =
                messages[i] + ". Incorrect underlying type (expected int, uint or float).\r\n";
            EXPECT_NE(reports.texts()[i].find("\r\n" + whole), std::string::npos) << reports.texts()[i];
        }
    }
}

TEST(Value, aMovedFromValueKeepsNumberAndKindButNoText)
{
    for (const Value& value : {Value(7U), Value(1.5F), text("longer than any buffer for short texts")}) {
        Value first = value;
        Value second = std::move(first);
        Value third;
        third = std::move(second);
        EXPECT_EQ(describe(third), describe(value));
        for (const Value* source : {&first, &second}) {
            EXPECT_EQ(describe(*source), value.isString() ? " string" : describe(value));
        }
    }
}

} // namespace
