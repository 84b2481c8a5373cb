// A host for a real server: three counters and a text, until it is ended or a minute has passed.
// usage: host --metrics [ADDRESS:]PORT --label NAME=VALUE [--overload]
// It tells the port that it listens on. SIGUSR1 removes the counter "Jobs/Temporary".

#include <statistics/prometheus.h>
#include <statistics/system.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <utility>

namespace {

using statistics::Counter;
using statistics::CounterValue;
using statistics::System;

constexpr float kFrame = 0.05f;         // seconds
constexpr int kFrames = 20 * 60;        // a minute
constexpr float kSlowest = 1000.f / 60; // milliseconds

volatile std::sig_atomic_t s_removalWanted = 0;

struct Settings {
    statistics::PrometheusOptions exporter;
    bool overload = false;
};

Settings readArguments(int count, char** texts)
{
    Settings settings;
    settings.exporter.period = 0.5f;
    for (int index = 1; index < count; ++index) {
        const std::string_view name = texts[index];
        if (name == "--overload") {
            settings.overload = true;
            continue;
        }
        const std::string value = ++index < count ? texts[index] : "";
        if (name == "--metrics")
            settings.exporter.address = value;
        else
            settings.exporter.labels[value.substr(0, value.find('='))] = value.substr(value.find('=') + 1);
    }
    return settings;
}

void addLimited(const std::string& name, unsigned group, Counter::Getter getter)
{
    System::instance()->createCounter(
        name, std::make_unique<Counter>(0.f, kSlowest, std::move(getter), "%.1f", "%.1f"), 1, group);
}

void addCounters(const float& milliseconds, const int& frame)
{
    System& system = *System::instance();
    const unsigned frames = system.createLabel("Frame");
    addLimited("Time", frames, [&] { return CounterValue(milliseconds); });
    system.createCounter("Number", std::make_unique<Counter>([&] { return CounterValue(frame); }), 1, frames);
    const unsigned jobs = system.createLabel("Jobs");
    system.createCounter("Temporary", std::make_unique<Counter>([] { return CounterValue(1); }), 1, jobs);
    system.createCounter("State", std::make_unique<Counter>([] {
                             return CounterValue(std::string("up \"and\" running\\\n"));
                         }),
                         1, jobs);
}

} // namespace

int main(int argc, char** argv)
{
    const Settings settings = readArguments(argc, argv);
    std::signal(SIGUSR1, [](int) { s_removalWanted = 1; });
    System::initialize();
    int frame = 0;
    float milliseconds = 0;
    addCounters(milliseconds, frame);
    statistics::PrometheusExporter exporter(settings.exporter);
    std::printf("%u\n", exporter.port());
    std::fflush(stdout);
    for (; frame < kFrames; ++frame) {
        milliseconds = (settings.overload ? 40.f : 10.f) + static_cast<float>(frame % 7) / 7;
        if (std::exchange(s_removalWanted, 0))
            System::instance()->removeItem(System::instance()->getItemIndex("Jobs/Temporary"));
        System::instance()->update(kFrame, true);
        exporter.update(kFrame);
        std::this_thread::sleep_for(std::chrono::duration<float>(kFrame));
    }
    System::shutdown();
}
