// What a server reads from a host, and what neither a server nor a bad client can do to it.
#include "../../prometheus/copy_board.h"
#include "client.h"

#include <statistics/prometheus.h>
#include <statistics/system.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <signal.h>
#include <sys/wait.h>

#include <chrono>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <functional>
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
using testing::ThrowsMessage;
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
    add("State", CounterValue(std::string("say \"go\"\\\n\xFF")));
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
                ElementsAre(R"({host="sim-3",path="State",text="say \"go\"\\\n�"} 1)"));
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
         {"\x80", "\xFF", "\xC0\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80", "é€😀", "\xE2\x82x"})
        add(name, 1);
    add(std::string("\0", 1), 1);
    add("b", 1, add("a", 1));
    add("a/b", 2);
    const std::string bad = "\xEF\xBF\xBD";
    const auto path = [](const std::string& text) { return R"({host="�",path=")" + text + "\"} 1"; };
    PrometheusOptions options;
    options.labels = {{"host", "\xC0"}};
    PrometheusExporter exporter(anyPort(options));
    EXPECT_THAT(samples(exporter, "statistics_value"),
                ElementsAre(path(bad), path(bad + "\",duplicate=\"2"), path(bad + bad), path(bad + bad + bad),
                            path(bad + bad + bad + bad), path("é€😀"), path(bad + bad + "x"),
                            path(bad + "\",duplicate=\"3"), path("a"), path("a/b"),
                            R"({host="�",path="a/b",duplicate="2"} 2)"));
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
    System& system = *System::instance();
    const unsigned group = system.createLabel("Group");
    const unsigned old = add("Old", 1, group);
    std::function<void()> change = [&] {
        system.removeItem(old);
        add("New", 2, group); // gets the id of the old one, whose name has been read
    };
    add("Changes", [&] {
        std::exchange(change, [] {})();
        return CounterValue(3);
    });
    const unsigned tail = add("Tail", 4);
    add("End", 5);
    PrometheusExporter exporter(anyPort());
    exporter.update(-1);
    EXPECT_THAT(samples(exporter, "statistics_value"),
                ElementsAre("{path=\"Group/New\"} 2", "{path=\"Changes\"} 3", "{path=\"Tail\"} 4",
                            "{path=\"End\"} 5"));
    // Known names, one of them ahead of the walk.
    change = [&] { system.removeItem(tail); };
    EXPECT_THAT(samples(exporter, "statistics_value"),
                ElementsAre("{path=\"Group/New\"} 2", "{path=\"Changes\"} 3", "{path=\"End\"} 5"));
    const unsigned gone = add("Gone", 6);
    add("Behind", 7);
    change = [&] { system.removeItem(gone); };
    EXPECT_THAT(samples(exporter, "statistics_value"),
                ElementsAre("{path=\"Group/New\"} 2", "{path=\"Changes\"} 3", "{path=\"End\"} 5",
                            "{path=\"Behind\"} 7"));
}

TEST_F(Exporter, keepsTheLastCopyWhenAGetterThrowsAndGoesOnAfterwards)
{
    bool throws = false;
    int reads = 0;
    add("Before", [&] { return CounterValue(++reads); });
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
    EXPECT_THAT(samples(exporter, "statistics_value"),
                ElementsAre("{path=\"Before\"} 3", "{path=\"Throws\"} 1"));
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
    const auto listening = [](const std::string& address) {
        PrometheusOptions options;
        options.address = address;
        return [options] { const PrometheusExporter exporter(options); };
    };
    const std::string taken = "127.0.0.1:" + std::to_string(first.port());
    EXPECT_THAT(listening(taken),
                ThrowsMessage<std::runtime_error>(AllOf(HasSubstr(taken), HasSubstr("in use"))));
    EXPECT_THAT(listening(std::to_string(first.port())), ThrowsMessage<std::runtime_error>(HasSubstr(taken)));
    for (const char* address : {"192.0.2.1:9464", "no.such.host.invalid:80"})
        EXPECT_THAT(listening(address), ThrowsMessage<std::runtime_error>(HasSubstr(address))) << address;
    for (const char* address :
         {"", "x", "127.0.0.1:", "127.0.0.1:99999", "127.0.0.1:1,127.0.0.1:2", "1:80s", "+80", "[::1]:80"})
        EXPECT_THAT(listening(address), ThrowsMessage<std::invalid_argument>(HasSubstr(address))) << address;

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
    for (int frame = 0; frame < 50; ++frame) {
        const Clock::time_point start = Clock::now();
        exporter.update(-1);
        EXPECT_LT(secondsSince(start), 0.5);
    }
    const Clock::time_point start = Clock::now();
    EXPECT_EQ(samplesOf(test::scrape(exporter.port()), "statistics_value").size(), 2000U);
    EXPECT_LT(secondsSince(start), 10);
    EXPECT_LT(residentKilobytes(), before + 64 * 1024);
}

TEST(CopyBoard, givesNoCopyForWritingThatIsRead)
{
    statistics::prometheus_export::CopyBoard board;
    const statistics::prometheus_export::CopyBoard::Reading reading(board);
    for (int frame = 0; frame < 3; ++frame) {
        EXPECT_NE(&board.forWriting(), &*reading);
        board.publish();
    }
}

TEST_F(Exporter, leavesSignalsToTheHostsThreads)
{
    const PrometheusExporter exporter(anyPort());
    sigset_t signals{};
    sigaddset(&signals, SIGUSR1);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    kill(getpid(), SIGUSR1); // ends the process where a thread takes it
    EXPECT_EQ(sigwaitinfo(&signals, nullptr), SIGUSR1);
    pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
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
