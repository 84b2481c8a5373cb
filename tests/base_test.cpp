// What the rest of the library stands on: reports, tracked scopes, the look at a host's formats.
#include "support/reports.h"

#include "assertion.h"
#include "format.h"
#include "stack_tracker.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace {

using Texts = std::vector<std::string>;

template<typename Act>
std::string stderrOf(const Act& act)
{
    testing::internal::CaptureStderr();
    act();
    return testing::internal::GetCapturedStderr();
}

TEST(Report, tellsExpressionMessageAndPlaceAndTheCodeGoesOn)
{
    test::Reports reports;
    const int sum = 3;
    EXPECT_TRUE(ORV_ASSERT(sum == 3));
    const auto place = [](int line) { return __FILE__ "(" + std::to_string(line) + ")\r\n"; };
    const int line = __LINE__;
    EXPECT_FALSE(ORV_ASSERT(sum == 4));
    EXPECT_FALSE(ORV_ASSERT_MESSAGE(sum < 0, "100 reasons."));
    EXPECT_EQ(reports.texts(), (Texts{"ASSERTION FAILED: sum == 4\r\n" + place(line + 1),
                                      "ASSERTION FAILED: sum < 0\r\n100 reasons.\r\n" + place(line + 2)}));
}

TEST(Report, goesToTheHandlerSetLastAndToStderrWithoutOne)
{
    test::Reports outer;
    {
        test::Reports inner;
        ORV_ASSERT(!"inner");
        EXPECT_EQ(inner.take(), Texts{"!\"inner\""});
    }
    ORV_ASSERT(!"outer");
    EXPECT_EQ(outer.take(), Texts{"!\"outer\""});

    const statistics::ReportHandler previous = statistics::setReportHandler({});
    const std::string written = stderrOf([] {
        const Orv::StackScope scope("where it happened", __FILE__, __LINE__);
        ORV_ASSERT(!"nobody");
    });
    EXPECT_FALSE(statistics::setReportHandler(previous));
    EXPECT_EQ(written.find("ASSERTION FAILED: !\"nobody\"\r\n"), 0U);
    EXPECT_NE(written.find("where it happened"), std::string::npos);
    EXPECT_EQ(outer.take(), Texts{});
}

TEST(Report, aHandlerMayReportReplaceItselfAndThrow)
{
    test::Reports next;
    const statistics::ReportHandler recorder = statistics::setReportHandler([](const char*) {
        ORV_ASSERT(!"from the handler");
        throw std::runtime_error("stop");
    });
    const auto fail = [] { ORV_ASSERT(!"first"); };
    for (int turn = 0; turn < 2; ++turn) {
        const std::string written = stderrOf([&] { EXPECT_THROW(fail(), std::runtime_error); });
        EXPECT_NE(written.find("from the handler"), std::string::npos) << turn;
    }
    int calls = 0;
    statistics::setReportHandler([&](const char*) {
        statistics::setReportHandler(recorder); // destroys the function that is running
        ++calls;
    });
    fail();
    fail();
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(next.take(), Texts{"!\"first\""});
}

TEST(StackTracker, scopesAreLeftOnEveryWayOutHoweverDeep)
{
    const auto enter = [](auto& self, int levels) -> void {
        const Orv::StackScope scope("level", __FILE__, __LINE__);
        EXPECT_STREQ(Orv::StackTracker::current(), "level");
        if (levels == 0) {
            throw std::runtime_error("up");
        }
        self(self, levels - 1);
    };
    const Orv::StackScope outermost("outermost", __FILE__, __LINE__);
    EXPECT_THROW(enter(enter, 100), std::runtime_error);
    EXPECT_EQ(Orv::StackTracker::depth(), 1U);
    EXPECT_STREQ(Orv::StackTracker::current(), "outermost");
}

TEST(StackTracker, aPopTooManyIsHarmless)
{
    Orv::StackTracker::pop();
    EXPECT_EQ(Orv::StackTracker::depth(), 0U);
    EXPECT_EQ(Orv::StackTracker::current(), nullptr);
}

TEST(Format, printsTextsOfAnyLength)
{
    const std::string text(5000, 'x');
    EXPECT_EQ(Orv::orv_format("%s-%d", text.c_str(), 7), text + "-7");
    EXPECT_EQ(Orv::orv_format("%s", ""), "");
    EXPECT_EQ(Orv::orv_format("%.3f", 1.0), "1.000");
}

TEST(Format, whatANumberFormatReadsIsSeenBeforeItIsUsed)
{
    using EKind = Orv::FormatArgument::EKind;
    using ESize = Orv::FormatArgument::ESize;
    struct Case {
        EKind kind;
        ESize size;
        Texts formats;
    };
    const Case cases[] = {
        {EKind::None, ESize::Default, {"", "no conversion", "100 %%", "%%d"}},
        {EKind::Signed, ESize::Default, {"%d", "a %+05i b", "%hhd", "%hd%%", "% -#8.3d", "%'d", "%c"}},
        {EKind::Signed, ESize::Long, {"%ld", "%10ld MB"}},
        {EKind::Signed, ESize::LongLong, {"%lld"}},
        {EKind::Unsigned, ESize::Default, {"%u", "%hhx", "%#X", "%o"}},
        {EKind::Unsigned, ESize::LongLong, {"%llu", "%%%llx"}},
        {EKind::Floating, ESize::Default, {"%f", "%.3f", "%9999.9999f", "%lf", "%e %%", "%G", "%A"}},
        {EKind::Floating, ESize::LongDouble, {"%Lf", "%.1Le"}},
        // "%llf" reads a long double with some C libraries, a double with others.
        {EKind::Unfit, ESize::Default, {"%s",       "%p",    "%n",  "%*d", "%.*f",  "%d %d", "%f%s",
                                        "%",        "100 %", "%5",  "%l",  "%ls",   "%lc",   "%1$d",
                                        "%k",       "%5%",   "%Ld", "%Lu", "%I64d", "%llf",  "%12345d",
                                        "%.99999f", "%m",    "%C",  "%S",  "%-+ 0", "%."}},
    };
    for (const Case& expected : cases) {
        for (const std::string& format : expected.formats) {
            const Orv::FormatArgument found = Orv::numberArgument(format.c_str());
            EXPECT_TRUE(found.kind == expected.kind && found.size == expected.size) << format;
        }
    }
}

} // namespace
