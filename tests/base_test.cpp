// What the rest of the library stands on: reports, tracked scopes, the look at a host's formats.
#include "support/reports.h"

#include "assertion.h"
#include "format.h"
#include "stack_tracker.h"

#include <gtest/gtest.h>

#include <stdexcept>

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
    const int line = __LINE__;
    EXPECT_FALSE(ORV_ASSERT(line < 0));
    EXPECT_FALSE(ORV_ASSERT_MESSAGE(!line, "100 reasons."));
    EXPECT_TRUE(ORV_ASSERT(line));
    const auto place = [&](int lines) { return __FILE__ "(" + std::to_string(line + lines) + ")\r\n"; };
    EXPECT_EQ(reports.texts(), (Texts{"ASSERTION FAILED: line < 0\r\n" + place(1),
                                      "ASSERTION FAILED: !line\r\n100 reasons.\r\n" + place(2)}));
}

TEST(Report, goesToStderrWithoutAHandler)
{
    const statistics::ReportHandler previous = statistics::setReportHandler({});
    const Orv::StackScope scope("where it happened", __FILE__, __LINE__);
    const std::string written = stderrOf([] { ORV_ASSERT(!"nobody"); });
    EXPECT_FALSE(statistics::setReportHandler(previous));
    EXPECT_NE(written.find("ASSERTION FAILED: !\"nobody\"\r\n"), std::string::npos);
    EXPECT_NE(written.find("where it happened"), std::string::npos);
}

TEST(Report, aHandlerMayReportThrowAndReplaceItself)
{
    test::Reports next;
    const auto fail = [] { ORV_ASSERT(!"first"); };
    statistics::ReportHandler recorder;
    recorder = statistics::setReportHandler([&, reason = std::string("stop")](const char*) {
        ORV_ASSERT(!"from the handler");
        statistics::setReportHandler(recorder); // destroys the function that is running
        throw std::runtime_error(reason);
    });
    const std::string written = stderrOf([&] { EXPECT_THROW(fail(), std::runtime_error); });
    EXPECT_NE(written.find("from the handler"), std::string::npos);
    fail();
    EXPECT_EQ(next.take(), Texts{"!\"first\""});
}

TEST(Report, aHandlerKeepsItsStateFromReportToReport)
{
    std::vector<int> counts;
    const statistics::ReportHandler before = statistics::setReportHandler(
        [&counts, count = 0](const char*) mutable { counts.push_back(++count); });
    ORV_ASSERT(!"first");
    ORV_ASSERT(!"second");
    statistics::setReportHandler(before);
    EXPECT_EQ(counts, (std::vector<int>{1, 2}));
}

TEST(StackTracker, scopesAreLeftOnEveryWayOutHoweverDeep)
{
    Orv::StackTracker::pop(); // one too many
    EXPECT_EQ(Orv::StackTracker::current(), nullptr);
    const auto enter = [](auto& self, int levels) -> void {
        const Orv::StackScope scope("level", __FILE__, __LINE__);
        EXPECT_STREQ(Orv::StackTracker::current(), "level");
        if (levels == 0)
            throw std::runtime_error("up");
        self(self, levels - 1);
    };
    const Orv::StackScope outermost("outermost", __FILE__, __LINE__);
    EXPECT_THROW(enter(enter, 100), std::runtime_error);
    EXPECT_EQ(Orv::StackTracker::depth(), 1u);
    EXPECT_STREQ(Orv::StackTracker::current(), "outermost");
}

TEST(Format, printsTextsOfAnyLength)
{
    for (const std::size_t length : {249u, 250u, 251u, 5000u}) { // a buffer of 256 bytes comes first
        const std::string text(length, 'x');
        EXPECT_EQ(Orv::orv_format("%s-%.3f%s", text.c_str(), 1.0, ""), text + "-1.000");
    }
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
#ifdef _WIN32
    const EKind positional = EKind::Unfit; // its C library prints the position itself
#else
    const EKind positional = EKind::Signed;
#endif
    const Case cases[] = {
        {positional, ESize::Default, {"%1$d MB", "%1$+5d"}},
        {EKind::None, ESize::Default, {"", "no conversion", "100 %%", "%%d"}},
        {EKind::Signed, ESize::Default, {"%d", "a %+05i b", "%hhd", "%hd%%", "% -#8.3d", "%'d", "%c"}},
        {EKind::Signed, ESize::Long, {"%ld", "%10ld MB"}},
        {EKind::Signed, ESize::LongLong, {"%lld"}},
        {EKind::Unsigned, ESize::Default, {"%u", "%hhx", "%#X", "%o"}},
        {EKind::Unsigned, ESize::LongLong, {"%llu", "%%%llx"}},
        {EKind::Floating, ESize::Default, {"%f", "%.3f", "%9999.9999f", "%lf", "%e %%", "%G", "%A"}},
        {EKind::Floating, ESize::LongDouble, {"%Lf", "%.1Le"}},
        // "%llf" reads a long double with some C libraries, a double with others.
        {EKind::Unfit,
         ESize::Default,
         {"%s",  "%p",   "%n", "%*d", "%.*f", "%d %d", "%f%s", "%",  "100 %",   "%5",       "%l", "%ls",
          "%lc", "%2$d", "%k", "%5%", "%Ld",  "%I64d", "%llf", "%C", "%12345d", "%.99999f", "%m", "%."}}};
    for (const Case& expected : cases)
        for (const std::string& format : expected.formats) {
            const Orv::FormatArgument found = Orv::numberArgument(format.c_str());
            EXPECT_EQ(found.kind, expected.kind) << format;
            EXPECT_EQ(found.size, expected.size) << format;
        }
}

} // namespace
