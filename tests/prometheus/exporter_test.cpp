// What a server reads from a host, and what neither a server nor a bad client can do to it.
#include "client.h"

#include <statistics/prometheus.h>
#include <statistics/system.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <limits>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

using statistics::Counter;
using statistics::CounterValue;
using statistics::PrometheusExporter;
using statistics::PrometheusOptions;
using statistics::System;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

class Exporter : public testing::Test {
protected:
    Exporter() { System::initialize(); }
    ~Exporter() override
    {
        if (System::instance())
            System::shutdown();
    }

    static unsigned add(const std::string& name, Counter::Getter getter, unsigned parent = 0)
    {
        return System::instance()->createCounter(name, std::make_unique<Counter>(std::move(getter)), 1,
                                                 parent);
    }
    static unsigned add(const std::string& name, CounterValue value, unsigned parent = 0)
    {
        return add(
            name, [value] { return value; }, parent);
    }
    static void addLimited(const std::string& name, CounterValue value, CounterValue min, CounterValue max)
    {
        System::instance()->createCounter(name,
                                          std::make_unique<Counter>(
                                              min, max, [value] { return value; }, "", ""),
                                          1);
    }

    static PrometheusOptions anyPort(PrometheusOptions options = {})
    {
        options.address = "127.0.0.1:0";
        return options;
    }

    /// The samples of one family after an update, without its name.
    static std::vector<std::string> samples(PrometheusExporter& exporter, const std::string& family)
    {
        exporter.update(-1);
        return samplesOf(test::scrape(exporter.port()), family);
    }
    static std::vector<std::string> samplesOf(const std::string& page, const std::string& family)
    {
        std::vector<std::string> found;
        std::istringstream lines(page);
        for (std::string line; std::getline(lines, line);)
            if (line.rfind(family + "{", 0) == 0 || line.rfind(family + " ", 0) == 0)
                found.push_back(line.substr(family.size()));
        return found;
    }
};

TEST_F(Exporter, offersValuesLimitsAndTextsOfEveryCounter)
{
    const unsigned group = System::instance()->createLabel("Frame");
    add("Time", CounterValue(0.1f), group);
    addLimited("Count", -7, 0, 10);
    addLimited("Unsigned", 4294967295U, 0U, 4294967295U);
    add("State", CounterValue(std::string("say \"go\"\\\n")));
    add("Nothing", CounterValue());
    PrometheusOptions options;
    options.labels = {{"host", "sim-3"}};
    PrometheusExporter exporter(anyPort(options));
    EXPECT_THAT(samples(exporter, "statistics_value"),
                ElementsAre("{host=\"sim-3\",path=\"Frame/Time\"} 0.1", "{host=\"sim-3\",path=\"Count\"} -7",
                            "{host=\"sim-3\",path=\"Unsigned\"} 4294967295"));
    const std::string page = test::scrape(exporter.port());
    EXPECT_THAT(samplesOf(page, "statistics_lower_limit"),
                ElementsAre("{host=\"sim-3\",path=\"Count\"} 0", "{host=\"sim-3\",path=\"Unsigned\"} 0"));
    EXPECT_THAT(
        samplesOf(page, "statistics_upper_limit"),
        ElementsAre("{host=\"sim-3\",path=\"Count\"} 10", "{host=\"sim-3\",path=\"Unsigned\"} 4294967295"));
    EXPECT_THAT(samplesOf(page, "statistics_outside_limits"),
                ElementsAre("{host=\"sim-3\",path=\"Count\"} 1", "{host=\"sim-3\",path=\"Unsigned\"} 0"));
    EXPECT_THAT(samplesOf(page, "statistics_text_info"),
                ElementsAre(R"({host="sim-3",path="State",text="say \"go\"\\\n"} 1)"));
    EXPECT_THAT(samplesOf(page, "statistics_counters"), ElementsAre("{host=\"sim-3\"} 5"));
    EXPECT_EQ(samplesOf(page, "statistics_copy_age_seconds").size(), 1U);
    EXPECT_EQ(samplesOf(page, "statistics_copy_duration_seconds").size(), 1U);
}

TEST_F(Exporter, spellsWhatIsNoOrdinaryNumberAsTheFormatDoes)
{
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    addLimited("a", std::nanf(""), -kInfinity, kInfinity);
    PrometheusExporter exporter(anyPort());
    EXPECT_THAT(samples(exporter, "statistics_value"), ElementsAre("{path=\"a\"} NaN"));
    EXPECT_THAT(samples(exporter, "statistics_lower_limit"), ElementsAre("{path=\"a\"} -Inf"));
    EXPECT_THAT(samples(exporter, "statistics_upper_limit"), ElementsAre("{path=\"a\"} +Inf"));
    EXPECT_THAT(samples(exporter, "statistics_outside_limits"), ElementsAre("{path=\"a\"} 0"));
}

TEST_F(Exporter, makesUtf8OfEveryPathAndTellsApartThoseThatBecomeTheSame)
{
    for (const char* name :
         {"\x80", "\xFF", "\xC0\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80", "é€😀", "\xE2\x82"})
        add(name, 1);
    add(std::string("\0", 1), 1);
    add("b", 1, add("a", 1));
    add("a/b", 2);
    const std::string bad = "\xEF\xBF\xBD";
    const auto path = [](const std::string& text) { return "{path=\"" + text + "\"} 1"; };
    PrometheusExporter exporter(anyPort());
    EXPECT_THAT(samples(exporter, "statistics_value"),
                ElementsAre(path(bad), path(bad + "\",duplicate=\"2"), path(bad + bad), path(bad + bad + bad),
                            path(bad + bad + bad + bad), path("é€😀"), path(bad + bad + "\",duplicate=\"2"),
                            path(bad + "\",duplicate=\"3"), path("a"), path("a/b"),
                            "{path=\"a/b\",duplicate=\"2\"} 2"));
}

TEST_F(Exporter, offersOnlyWhatIsIncludedAndNotExcluded)
{
    const unsigned frame = System::instance()->createLabel("Frame");
    for (const char* name : {"Time", "Tide", "Title", "Secret/x"})
        add(name, 1, frame);
    add("Other", 1);
    PrometheusOptions options;
    options.include = {"Frame/*", "nothing"};
    options.exclude = {"*/Secret*", "Frame/T?d?", "Frame"};
    PrometheusExporter exporter(anyPort(options));
    EXPECT_THAT(samples(exporter, "statistics_value"),
                ElementsAre("{path=\"Frame/Time\"} 1", "{path=\"Frame/Title\"} 1"));
    EXPECT_THAT(samples(exporter, "statistics_counters"), ElementsAre(" 2"));
}

TEST_F(Exporter, readsOnceInAPeriodOnTheThreadThatUpdates)
{
    int reads = 0;
    add("Reads", [&] { return CounterValue(++reads); });
    PrometheusOptions options;
    options.period = 2;
    PrometheusExporter exporter(anyPort(options));
    EXPECT_THAT(samplesOf(test::scrape(exporter.port()), "statistics_counters"), ElementsAre(" 0"));
    for (const float dt : {0.0f, 1.0f, 0.5f, 0.25f})
        exporter.update(dt);
    EXPECT_EQ(reads, 1);
    exporter.update(0.25f);
    for (int scrapes = 0; scrapes < 3; ++scrapes)
        EXPECT_THAT(samplesOf(test::scrape(exporter.port()), "statistics_value"),
                    ElementsAre("{path=\"Reads\"} 2"));
    EXPECT_EQ(reads, 2);
}

TEST_F(Exporter, followsCountersThatComeAndGoWhileItReads)
{
    add("First", 1);
    const unsigned second = add("Second", 2);
    add("Removes", [&] {
        System::instance()->removeItem(System::instance()->getItemIndex("Gone"));
        return CounterValue(3);
    });
    add("Last", 4);
    PrometheusExporter exporter(anyPort());
    exporter.update(-1);
    System::instance()->removeItem(second);
    add("New", 5);
    add("Gone", 6);
    add("Behind", 7);
    for (int update = 0; update < 2; ++update)
        EXPECT_THAT(samples(exporter, "statistics_value"),
                    ElementsAre("{path=\"First\"} 1", "{path=\"Removes\"} 3", "{path=\"Last\"} 4",
                                "{path=\"New\"} 5", "{path=\"Behind\"} 7"));
    // Known names, and a getter that takes one away in the middle.
    bool removes = false;
    add("Trigger", [&] {
        if (std::exchange(removes, false))
            System::instance()->removeItem(System::instance()->getItemIndex("Tail"));
        return CounterValue(8);
    });
    add("Tail", 9);
    add("End", 10);
    exporter.update(-1);
    removes = true;
    EXPECT_THAT(samples(exporter, "statistics_value"),
                AllOf(Not(testing::Contains(HasSubstr("Tail"))), testing::Contains("{path=\"End\"} 10")));
}

TEST_F(Exporter, keepsTheLastCopyWhenAGetterThrowsAndGoesOnAfterwards)
{
    bool throws = false;
    add("Before", [&] { return CounterValue(throws ? 2 : 1); });
    add("Throws", [&] {
        if (throws)
            throw std::runtime_error("host");
        return CounterValue(1);
    });
    PrometheusExporter exporter(anyPort());
    exporter.update(0);
    throws = true;
    EXPECT_THROW(exporter.update(-1), std::runtime_error);
    EXPECT_THAT(samplesOf(test::scrape(exporter.port()), "statistics_value"),
                ElementsAre("{path=\"Before\"} 1", "{path=\"Throws\"} 1"));
    throws = false;
    exporter.update(-1);
    EXPECT_THAT(samples(exporter, "statistics_value").size(), 2U);
}

TEST_F(Exporter, isUsedInAnyOrderWithTheSystemAndByItsGetters)
{
    PrometheusExporter exporter(anyPort());
    add("Calls back", [&] {
        exporter.update(-1);
        return CounterValue(1);
    });
    EXPECT_EQ(samples(exporter, "statistics_value").size(), 1U);
    System::shutdown();
    EXPECT_EQ(samplesOf(test::scrape(exporter.port()), "statistics_value").size(), 1U);
    EXPECT_THAT(samples(exporter, "statistics_value"), ElementsAre());
    System::initialize();
    add("Again", 2);
    EXPECT_THAT(samples(exporter, "statistics_value"), ElementsAre("{path=\"Again\"} 2"));
    PrometheusExporter second(anyPort());
    EXPECT_NE(second.port(), exporter.port());
}

TEST_F(Exporter, refusesAddressesPathsAndLabelsThatCannotBeUsed)
{
    const PrometheusExporter first(anyPort());
    const auto failure = [](const std::string& address) -> std::string {
        PrometheusOptions options;
        options.address = address;
        try {
            const PrometheusExporter exporter(options);
        } catch (const std::exception& error) {
            return error.what();
        }
        return {};
    };
    const std::string taken = "127.0.0.1:" + std::to_string(first.port());
    EXPECT_THAT(failure(taken), AllOf(HasSubstr(taken), HasSubstr("in use")));
    EXPECT_THAT(failure(std::to_string(first.port())), HasSubstr(taken));
    EXPECT_THAT(failure("192.0.2.1:9464"), AllOf(HasSubstr("192.0.2.1:9464"), HasSubstr("assign")));
    for (const char* address : {"", "x", "127.0.0.1:", "127.0.0.1:99999", "127.0.0.1:1,127.0.0.1:2", "1:80s",
                                "+80", "[::1]:80", "no.such.host.invalid:80"})
        EXPECT_THAT(failure(address), HasSubstr(address)) << address;

    for (const char* name : {"path", "text", "duplicate", "", "1a", "a-b", "__name__", "é"}) {
        PrometheusOptions options;
        options.labels = {{name, "x"}};
        EXPECT_THROW(PrometheusExporter{anyPort(options)}, std::invalid_argument) << name;
    }
    PrometheusOptions options;
    options.path = "metrics";
    EXPECT_THROW(PrometheusExporter{anyPort(options)}, std::invalid_argument);
}

TEST_F(Exporter, answersOnlyGetAndHeadOfItsPath)
{
    const PrometheusExporter exporter(anyPort());
    EXPECT_THAT(test::ask(exporter.port(), "GET /metrics HTTP/1.1"),
                AllOf(HasSubstr("200 OK"), HasSubstr("text/plain; version=0.0.4; charset=utf-8")));
    EXPECT_THAT(test::ask(exporter.port(), "HEAD /metrics HTTP/1.1"),
                AllOf(HasSubstr("200 OK"), Not(HasSubstr("statistics_"))));
    EXPECT_THAT(test::ask(exporter.port(), "POST /metrics HTTP/1.1"), HasSubstr("405"));
    for (const char* path : {"/", "/metrics/", "/../etc/passwd", "//etc/passwd", "/metricsx"})
        EXPECT_THAT(test::ask(exporter.port(), std::string("GET ") + path + " HTTP/1.1"),
                    Not(HasSubstr("200 OK")))
            << path;
}

std::size_t residentKilobytes()
{
    std::ifstream file("/proc/self/statm");
    std::size_t pages = 0;
    file >> pages >> pages;
    return pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE)) / 1024;
}

/// The longest of some updates that read everything, in seconds.
double longestUpdate(PrometheusExporter& exporter)
{
    double longest = 0;
    for (int frame = 0; frame < 50; ++frame) {
        const Clock::time_point start = Clock::now();
        exporter.update(-1);
        longest = std::max(longest, secondsSince(start));
    }
    return longest;
}

TEST_F(Exporter, isNotHeldUpByClientsThatSendNothingTooMuchOrDoNotRead)
{
    for (int index = 0; index < 2000; ++index)
        addLimited("counter number " + std::to_string(index), 1.5f, 0.0f, 2.0f);
    PrometheusExporter exporter(anyPort());
    exporter.update(0);
    test::scrape(exporter.port());
    const std::size_t before = residentKilobytes();

    const std::string megabyte(1 << 20, 'x');
    const auto sendMuch = [&](const std::string& head) {
        const test::Client client(exporter.port());
        client.send(head);
        int sent = 0;
        while (sent < 1024 && client.send(megabyte))
            ++sent;
        return sent;
    };
    EXPECT_LT(sendMuch("POST /metrics HTTP/1.1\r\nHost: x\r\nContent-Length: 1073741824\r\n\r\n"), 64);
    EXPECT_LT(sendMuch("GET /metrics HTTP/1.1\r\nX: "), 64);
    EXPECT_LT(sendMuch(""), 64);

    std::vector<std::unique_ptr<test::Client>> held;
    for (int count = 0; count < 100; ++count) {
        held.push_back(std::make_unique<test::Client>(exporter.port()));
        if (count % 2)
            held.back()->send("GET /metrics HTTP/1.1\r\nHost: x\r\n\r\n"); // and never reads
    }
    EXPECT_LT(longestUpdate(exporter), 0.5);
    const Clock::time_point start = Clock::now();
    EXPECT_EQ(samplesOf(test::scrape(exporter.port()), "statistics_value").size(), 2000U);
    EXPECT_LT(secondsSince(start), 10);
    EXPECT_LT(residentKilobytes(), before + 64 * 1024);
}

TEST_F(Exporter, stopsAtOnceWithClientsOnTheLine)
{
    auto exporter = std::make_unique<PrometheusExporter>(anyPort());
    const unsigned port = exporter->port();
    const test::Client idle(port);
    const Clock::time_point start = Clock::now();
    exporter.reset();
    EXPECT_LT(secondsSince(start), 3);
    EXPECT_FALSE(test::Client(port).isConnected());
}

TEST_F(Exporter, isLeftAloneInAForkedChild)
{
    auto exporter = std::make_unique<PrometheusExporter>(anyPort());
    const pid_t child = fork();
    if (child == 0) {
        alarm(10);
        exporter.reset();
        _exit(0);
    }
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_THAT(test::scrape(exporter->port()), HasSubstr("statistics_counters 0"));
}

} // namespace
