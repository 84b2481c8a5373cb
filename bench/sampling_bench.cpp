// What `update` costs, against a host's own loop over the same getters.

#include "host.h"

#include <benchmark/benchmark.h>

#include <cstdio>

namespace {

using bench::Library;
using statistics::Counter;

std::vector<float> numbers(std::size_t count)
{
    std::vector<float> values(count);
    for (std::size_t index = 0; index < count; ++index)
        values[index] = static_cast<float>(index) * 1.37f;
    return values;
}

void idleOurs(benchmark::State& state)
{
    const auto count = static_cast<std::size_t>(state.range(0));
    const std::vector<float> sources = numbers(count);
    Library library;
    bench::addGroupedCounters(library, count, sources, 1e30f);
    library->update(0.0f, true);
    for (auto _ : state)
        library->update(0.016f, true);
}

/// An array of structures, in which the times stand before the item's name, its texts and its getter.
struct IdleItem {
    float period;
    float timer;
    char rest[160];
};

void idleHand(benchmark::State& state)
{
    std::vector<IdleItem> items(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        for (IdleItem& item : items)
            item.timer += 0.016f;
        benchmark::ClobberMemory();
    }
}

BENCHMARK(idleOurs)->Name("update, nothing due/ours")->Arg(100)->Arg(10000)->Arg(60000);
BENCHMARK(idleHand)->Name("update, nothing due/hand")->Arg(100)->Arg(10000)->Arg(60000);

std::unique_ptr<Counter> makeCounter(const float& source, const char* format, bool limited)
{
    if (limited)
        return std::make_unique<Counter>(0.0f, 1e6f, bench::getter(source), format, "");
    return std::make_unique<Counter>(bench::getter(source), format);
}

void dueOurs(benchmark::State& state, const char* format, bool limited, std::size_t history = 0)
{
    const auto count = static_cast<std::size_t>(state.range(0));
    const std::vector<float> sources = numbers(count);
    Library library;
    statistics::Options options;
    options.history = history;
    library->setOptions(options);
    for (std::size_t index = 0; index < count; ++index)
        library->createCounter(bench::name(index), makeCounter(sources[index], format, limited), 0.0f);
    for (std::size_t times = 0; times <= history; ++times)
        library->update(0.016f, true);
    for (auto _ : state)
        library->update(0.016f, true);
}

void dueHand(benchmark::State& state, const char* format, bool limited)
{
    const auto count = static_cast<std::size_t>(state.range(0));
    const std::vector<float> sources = numbers(count);
    std::vector<Counter::Getter> getters;
    getters.reserve(sources.size());
    for (const float& source : sources)
        getters.push_back(bench::getter(source));
    std::vector<std::string> texts(count);
    std::vector<float> weights(count);
    for (auto _ : state) {
        for (std::size_t index = 0; index < count; ++index) {
            char text[64];
            const double value = static_cast<double>(getters[index]().toFloat());
            const int length = std::snprintf(text, sizeof(text), format, value);
            texts[index].assign(text, static_cast<std::size_t>(length));
            if (limited)
                weights[index] = getters[index]().toFloat() / 1e6f;
        }
        benchmark::ClobberMemory();
    }
}

#define STATISTICS_DUE(what, ourFormat, handFormat, limited)                                                 \
    BENCHMARK_CAPTURE(dueOurs, ours, ourFormat, limited)                                                     \
        ->Name(what "/ours")                                                                                 \
        ->Arg(100)                                                                                           \
        ->Arg(10000)                                                                                         \
        ->Arg(60000);                                                                                        \
    BENCHMARK_CAPTURE(dueHand, hand, handFormat, limited)                                                    \
        ->Name(what "/hand")                                                                                 \
        ->Arg(100)                                                                                           \
        ->Arg(10000)                                                                                         \
        ->Arg(60000)

STATISTICS_DUE("update, all due, default print", "", "%.3f", false);
STATISTICS_DUE("update, all due, %.2f", "%.2f", "%.2f", false);
STATISTICS_DUE("update, all due, limits and %.2f", "%.2f", "%.2f", true);

/// Against the same without the past.
BENCHMARK_CAPTURE(dueOurs, ours, "", false, 240)
    ->Name("update, all due, past of 240 against none/ours")
    ->Arg(100)
    ->Arg(10000)
    ->Arg(60000);
BENCHMARK_CAPTURE(dueOurs, hand, "", false, 0)
    ->Name("update, all due, past of 240 against none/hand")
    ->Arg(100)
    ->Arg(10000)
    ->Arg(60000);

} // namespace
