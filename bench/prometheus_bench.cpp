// What offering counters to Prometheus costs: a copy of all of them, a frame without a copy, a scrape.

#include "host.h"
#include "prometheus/client.h"

#include <statistics/prometheus.h>

#include <benchmark/benchmark.h>

namespace {

using bench::Library;
using statistics::Counter;
using statistics::CounterValue;
using statistics::PrometheusExporter;
using statistics::PrometheusOptions;

PrometheusOptions options(float period)
{
    PrometheusOptions result;
    result.address = "127.0.0.1:0";
    result.period = period;
    return result;
}

/// In groups of 100, each with limits if asked for.
void addCounters(Library& library, const std::vector<float>& sources, bool limited)
{
    if (!limited)
        return bench::addGroupedCounters(library, sources.size(), sources, 1.0f);
    unsigned group = 0;
    for (std::size_t index = 0; index < sources.size(); ++index) {
        if (index % 100 == 0)
            group = library->createLabel("group " + std::to_string(index / 100));
        library->createCounter(bench::name(index),
                               std::make_unique<Counter>(0.0f, 1e6f, bench::getter(sources[index]), "", ""),
                               1.0f, group);
    }
}

void publishOurs(benchmark::State& state, bool limited)
{
    const std::vector<float> sources(static_cast<std::size_t>(state.range(0)), 16.667f);
    Library library;
    addCounters(library, sources, limited);
    PrometheusExporter exporter(options(0));
    exporter.update(0.016f);
    for (auto _ : state)
        exporter.update(0.016f);
}

/// A new vector each time, as readers may still hold the one before.
void publishHand(benchmark::State& state)
{
    const std::vector<float> sources(static_cast<std::size_t>(state.range(0)), 16.667f);
    std::vector<Counter::Getter> getters;
    getters.reserve(sources.size());
    for (const float& source : sources)
        getters.push_back(bench::getter(source));
    std::vector<CounterValue> published;
    for (auto _ : state) {
        std::vector<CounterValue> values;
        values.reserve(getters.size());
        for (const Counter::Getter& getter : getters)
            values.push_back(getter());
        published = std::move(values);
        benchmark::ClobberMemory();
    }
}

/// What a page tells of a counter with limits.
struct Judged {
    CounterValue value;
    float min;
    float max;
    bool outside;
};

void publishLimitedHand(benchmark::State& state)
{
    const std::vector<float> sources(static_cast<std::size_t>(state.range(0)), 16.667f);
    std::vector<std::unique_ptr<Counter>> counters;
    counters.reserve(sources.size());
    for (const float& source : sources)
        counters.push_back(std::make_unique<Counter>(0.0f, 1e6f, bench::getter(source), "", ""));
    std::vector<Judged> published;
    for (auto _ : state) {
        std::vector<Judged> values;
        values.reserve(counters.size());
        for (const auto& counter : counters) {
            CounterValue value = counter->getter();
            const bool outside = value < counter->min || value > counter->max;
            values.push_back({std::move(value), counter->min.toFloat(), counter->max.toFloat(), outside});
        }
        published = std::move(values);
        benchmark::ClobberMemory();
    }
}

/// Values alone, into memory that is kept: less than publishing takes by hand.
void fillHand(benchmark::State& state)
{
    const std::vector<float> sources(static_cast<std::size_t>(state.range(0)), 16.667f);
    std::vector<Counter::Getter> getters;
    getters.reserve(sources.size());
    for (const float& source : sources)
        getters.push_back(bench::getter(source));
    std::vector<CounterValue> values;
    for (auto _ : state) {
        values.clear();
        for (const Counter::Getter& getter : getters)
            values.push_back(getter());
        benchmark::ClobberMemory();
    }
}

void idle(benchmark::State& state)
{
    const Library library;
    PrometheusExporter exporter(options(1e30f));
    exporter.update(0.016f);
    for (auto _ : state)
        exporter.update(0.016f);
}

/// The whole process, the reading client included.
void copyAndScrape(benchmark::State& state, bool limited)
{
    const std::vector<float> sources(static_cast<std::size_t>(state.range(0)), 16.667f);
    Library library;
    addCounters(library, sources, limited);
    PrometheusExporter exporter(options(0));
    std::size_t bytes = 0;
    for (auto _ : state) {
        exporter.update(0.016f);
        bytes = test::ask(exporter.port(), "GET /metrics HTTP/1.1").size();
    }
    state.counters["page"] = static_cast<double>(bytes);
}

BENCHMARK_CAPTURE(publishOurs, plain, false)->Name("metrics, publish/ours")->Arg(10000);
BENCHMARK(publishHand)->Name("metrics, publish/hand")->Arg(10000);
BENCHMARK_CAPTURE(publishOurs, limited, true)->Name("metrics, publish with limits/ours")->Arg(10000);
BENCHMARK(publishLimitedHand)->Name("metrics, publish with limits/hand")->Arg(10000);
BENCHMARK(fillHand)->Name("metrics, fill kept memory")->Arg(10000);
BENCHMARK(idle)->Name("metrics, no copy due");
BENCHMARK_CAPTURE(copyAndScrape, plain, false)
    ->Name("metrics, copy and scrape")
    ->Arg(10000)
    ->MeasureProcessCPUTime();
BENCHMARK_CAPTURE(copyAndScrape, limited, true)
    ->Name("metrics, copy and scrape with limits")
    ->Arg(10000)
    ->MeasureProcessCPUTime();

} // namespace
