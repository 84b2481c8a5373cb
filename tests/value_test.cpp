// The value type by its tables: printing, reading as numbers, comparing, adding, weighing.
#include "support/reports.h"

#include <statistics/value.h>

#include <gtest/gtest.h>

#include <array>
#include <cfloat>
#include <climits>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <random>
#include <tuple>
#include <type_traits>

namespace {

using Value = statistics::CounterValue;
using Texts = std::vector<std::string>;

Value text(const char* content)
{
    return Value(std::string(content));
}

std::string describe(const Value& value)
{
    const char* kind = value.isInt()       ? " int"
                       : value.isUInt()    ? " uint"
                       : value.isDecimal() ? " decimal"
                                           : " string";
    return value.toString(nullptr) + (value.valid() ? kind : value.isEmpty() ? " empty" : " invalid");
}

TEST(Value, printsByItsKindOrAsTheFormatAsks)
{
    using Prints = std::vector<std::pair<const char*, std::string>>; // by format
    const std::pair<Value, Prints> cases[] = {
        {-5, {{nullptr, "-5"}, {"%d MB", "-5 MB"}, {"%5d%%|", "   -5%|"}, {"", ""}, {"5%% of", "5% of"}}},
        {INT_MIN, {{nullptr, "-2147483648"}, {"%300d", std::string(289, ' ') + "-2147483648"}}},
        {UINT_MAX, {{nullptr, "4294967295"}, {"%#x", "0xffffffff"}, {"%lld", "4294967295"}}},
        {1.5f, {{nullptr, "1.500"}, {"%g", "1.5"}, {"%Lg", "1.5"}}},
        {FLT_MAX, {{nullptr, "340282346638528859811704183484516925440.000"}}},
        {text("12%d"), {{nullptr, "12%d"}, {"%d MB", "12%d"}}},
        {{}, {{nullptr, "---"}, {"%d MB", "---"}}},
        // A format for another kind gets the value converted, as large as it reads it.
        {-1, {{"%u", "4294967295"}, {"%ld", "-1"}, {"%llu", "4294967295"}, {"%zu", "4294967295"}}},
        {UINT_MAX, {{"%d", "-1"}, {"%.0f", "4294967295"}, {"%hhd", "-1"}}},
        {-2.9f, {{"%d MB", "-2 MB"}, {"%u", "4294967294"}, {"%lld", "-2"}}},
        {INFINITY, {{nullptr, "inf"}, {"%d", "2147483647"}}},
        // One that would read more than a number isn't used.
        {16777217, {{"%.0f", "16777217"}, {"%s", "16777217"}, {"%n", "16777217"}, {"%d %d", "16777217"}}},
        {7.0f, {{"%s", "7.000"}, {"%p", "7.000"}, {"%*d", "7.000"}, {"%.*f", "7.000"}, {"%", "7.000"}}},
    };
    for (const auto& [value, prints] : cases)
        for (const auto& [format, printed] : prints)
            EXPECT_EQ(value.toString(format), printed) << (format ? format : "null");
}

TEST(Value, printsDecimalsToTheDigitAsPrintfDoes)
{
    std::vector<float> values = {0.0625f,    0.1875f,    -0.0f,       1e-45f,      9.9996f,
                                 -999.9995f, 8388607.5f, 16777215.0f, 16777216.0f, -INFINITY};
    std::mt19937 random(1);
    for (int count = 0; count < 20000; ++count) {
        const auto bits = static_cast<std::uint32_t>(random());
        float value = 0;
        std::memcpy(&value, &bits, sizeof(value));
        if (!std::isnan(value))
            values.push_back(value);
    }
    for (const float value : values)
        for (const char* format : {"%.0f", "%.3f", "%.9f"}) {
            char printed[64];
            std::snprintf(printed, sizeof(printed), format, static_cast<double>(value));
            ASSERT_EQ(Value(value).toString(format), printed);
        }
}

TEST(Value, theDefaultPrintHasAPointInEveryLocale)
{
    const char* found = nullptr;
    for (const char* name : {"de_DE.UTF-8", "fr_FR.UTF-8", "ru_RU.UTF-8", "German"})
        found = found ? found : std::setlocale(LC_ALL, name);
    if (!found)
        GTEST_SKIP() << "no locale with a decimal comma is installed";
    EXPECT_EQ(Value(1234.5f).toString("%.1f"), "1234,5"); // the host's own format follows the host's locale
    EXPECT_EQ(Value(1234.5f).toString(nullptr), "1234.500");
    std::setlocale(LC_ALL, "C");
}

TEST(Value, readsAsANumberOfAnyKindAndSaturates)
{
    const std::tuple<Value, int, unsigned, float> cases[] = {
        {-1, -1, UINT_MAX, -1.0f},
        {UINT_MAX, -1, UINT_MAX, 4294967296.0f},
        {2.9f, 2, 2u, 2.9f},
        {-1.5f, -1, UINT_MAX, -1.5f},
        {2147483648.0f, INT_MAX, 2147483648u, 2147483648.0f},
        {-3e9f, INT_MIN, 1294967296u, -3e9f},
        {FLT_MAX, INT_MAX, UINT_MAX, FLT_MAX},
        {-INFINITY, INT_MIN, 0u, -INFINITY},
        {text("12"), 0, 0u, 0.0f},
        {Value(), 0, 0u, 0.0f},
    };
    for (const auto& [value, asInt, asUInt, asFloat] : cases) {
        EXPECT_EQ(std::tuple(value.toInt(), value.toUInt(), value.toFloat()),
                  std::tuple(asInt, asUInt, asFloat));
    }
    EXPECT_EQ(Value(NAN).toInt(), 0);
    EXPECT_EQ(Value(NAN).toUInt(), 0u);
}

template<typename Number>
constexpr bool kIsRefused = !std::is_constructible_v<Value, Number>;

TEST(Value, isMadeOfTextsAndOfNumbersOf32Bits)
{
    enum Plain { One = 1 };
    const char* const none = nullptr;
    char buffer[] = "buffer";
    const std::pair<Value, std::string> cases[] = {
        {"literal", "literal string"},
        {buffer, "buffer string"},
        {none, "--- empty"},
        {true, "1 int"},
        {'A', "65 int"},
        {short{-2}, "-2 int"},
        {One, "1 int"},
        {0, "0 int"},
    };
    for (const auto& [value, expected] : cases)
        EXPECT_EQ(describe(value), expected);
    static_assert(kIsRefused<double> && kIsRefused<long double>);
    static_assert(kIsRefused<long> && kIsRefused<long long> && kIsRefused<unsigned long long>);
    static_assert(kIsRefused<std::size_t> && kIsRefused<void*>);
}

TEST(Value, comparesByTheRulesOfTheLeftSide)
{
    using Pairs = std::vector<std::pair<Value, Value>>;
    const std::pair<std::string, Pairs> cases[] = {
        {"<", {{1, 2}, {1u << 24, (1u << 24) + 1}, {-1, 0u}, {0u, -1}, {-1, {}}, {text("ab"), text("abc")}}},
        {">", {{UINT_MAX, 1u}, {2.5f, 2}, {3.5f, 3}, {text("9"), 10}, {text("\xFF"), text("a")}}},
        {">", {{text("a"), {}}, {Value(std::string("a\0b", 3)), text("a")}}},
        {"==", {{-1, UINT_MAX}, {text("12"), 12}, {text("1.500"), 1.5f}, {{}, {}}}},
        {"==>", {{12, text("12")}, {16777217, 16777216.0f}}}, // all that hold
        {"", {{3, 3.5f}, {INT_MAX, FLT_MAX}, {NAN, NAN}, {text("---"), {}}, {0u, {}}, {{}, 0}}},
    };
    for (const auto& [expected, pairs] : cases) {
        for (const auto& [left, right] : pairs) {
            const std::string equal = left == right ? "==" : "";
            const std::string order = std::string(left < right ? "<" : "") + (left > right ? ">" : "");
            EXPECT_EQ(equal + order, expected) << describe(left) << " and " << describe(right);
            EXPECT_NE(left == right, left != right);
        }
    }
}

TEST(Value, addsWhatFitsAndReportsTheRest)
{
    const std::string unfit = "canCast(m_type, other.m_type)";
    const std::tuple<Value, Value, std::string, Texts> cases[] = {
        {Value(), text("x"), "x string", Texts()},
        {1, Value(), "1 int", Texts()},
        {1, 2u, "3 int", Texts()},
        {2u, 3, "5 uint", Texts()},
        {INT_MAX, 1, "-2147483648 int", Texts()},
        {0u, -1, "4294967295 uint", Texts()},
        {1.5f, 2.0f, "3.500 decimal", Texts()},
        {1, 2.0f, "1 int", Texts{unfit}},
        {1.0f, 2u, "1.000 decimal", Texts{unfit}},
        {text("a"), Value(), "a string", Texts()},
        {text("a"), 1, "a string", Texts{unfit}},
        {text("a"), text("b"), "a string", Texts{"false"}},
    };
    for (const auto& [value, added, expected, reported] : cases) {
        const test::Reports reports;
        Value sum = value;
        EXPECT_EQ(describe(sum += added), expected);
        EXPECT_EQ(reports.expressions(), reported) << describe(value) << " += " << describe(added);
    }
}

TEST(Value, weighsItsWayBetweenTwoLimits)
{
    using ValueMinMax = std::vector<std::array<Value, 3>>;
    const std::pair<float, ValueMinMax> cases[] = {
        {0.5f, {{75, 50, 100}, {7, 2.9f, 12.9f}, {7.5f, 5, 10u}, {20u, 10.5f, 30.0f}}},
        {0.5f, {{Value(), -5, 5}, {Value(), -1.0f, 1.0f}, {1 << 30, 0, INFINITY}}},
        {-0.1f, {{-10.0f, 0.0f, 100.0f}, {-10, 0, 100}}},
        {4294967291.0f / 10, {{5u, 10u, 20u}}}, // unsigned differences wrap around, and so do signed ones
        {2147483648.0f, {{0, INT_MIN, INT_MAX}}},
        {INFINITY, {{5, 0, 0}, {5u, 0u, 0u}, {5.0f, 0, 0}}},
    };
    for (const auto& [weight, values] : cases) {
        for (const auto& [value, min, max] : values) {
            EXPECT_FLOAT_EQ(Value(value).weight(min, max), weight)
                << describe(value) << " > " << describe(min);
        }
    }
    EXPECT_TRUE(std::isnan(Value(0u).weight(0u, 0u)));
}

TEST(Value, limitsThatAreNoNumbersAreReportedAndWeighLessThanNothing)
{
    const std::tuple<Value, Value, Value, std::string, std::size_t> cases[] = {
        {5, text("0"), 10, "cast CounterValue to int", 2u},
        {5u, text("0"), text("9"), "cast CounterValue to uint", 3u},
        {5.0f, text("0"), 10, "cast CounterValue to float", 2u},
        {5, Value(), 10, "weight CounterValue", 1u},
        {text("5"), 0, 10, "weight CounterValue", 1u},
    };
    for (const auto& [value, min, max, message, count] : cases) {
        const test::Reports reports;
        EXPECT_EQ(Value(value).weight(min, max), -1.0f);
        ASSERT_EQ(reports.texts().size(), count) << message;
        const std::string line =
            "Cannot " + message + ". Incorrect underlying type (expected int, uint or float).";
        EXPECT_NE(reports.texts()[0].find("\r\n" + line + "\r\n"), std::string::npos) << reports.texts()[0];
    }
}

TEST(Value, aMovedFromValueKeepsNumberAndKindButNoText)
{
    for (const Value& value : {Value(7u), Value(1.5f), text("longer than any buffer for short texts")}) {
        Value first = value;
        Value second = std::move(first);
        Value third;
        third = std::move(second);
        EXPECT_EQ(describe(third), describe(value));
        for (const Value* source : {&first, &second})
            EXPECT_EQ(describe(*source), value.isString() ? " string" : describe(value));
    }
}

} // namespace
