// What a counter costs in memory.

#include "host.h"

#include <benchmark/benchmark.h>

#include <malloc.h>

namespace {

double allocatedBytes()
{
    const struct mallinfo2 info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd);
}

/// Its name and its functor apart, which a host would hold anyway.
void memoryPerCounter(benchmark::State& state)
{
    const auto count = static_cast<std::size_t>(state.range(0));
    const std::vector<float> sources(count);
    constexpr double kApart = sizeof(std::string) + sizeof(statistics::Counter::Getter);
    double bytes = 0;
    for (auto _ : state) {
        bench::Library library;
        const double before = allocatedBytes();
        for (std::size_t index = 0; index < count; ++index)
            library->createCounter(std::to_string(index),
                                   std::make_unique<statistics::Counter>(bench::getter(sources[index])),
                                   1.0f);
        library->update(0.0f, true);
        bytes = (allocatedBytes() - before) / static_cast<double>(count) - kApart;
    }
    state.counters["bytes"] = bytes;
}

/// Besides its samples.
void memoryOfPast(benchmark::State& state)
{
    const auto count = static_cast<std::size_t>(state.range(0));
    const std::vector<float> sources(count);
    bench::Library library;
    for (std::size_t index = 0; index < count; ++index)
        library->createCounter(std::to_string(index),
                               std::make_unique<statistics::Counter>(bench::getter(sources[index])), 1.0f);
    statistics::Options options;
    double bytes = 0;
    for (auto _ : state) {
        library->setOptions({});
        const double before = allocatedBytes();
        options.history = 240;
        library->setOptions(options);
        bytes = (allocatedBytes() - before) / static_cast<double>(count) - 4.0 * 240;
    }
    state.counters["bytes"] = bytes;
}

BENCHMARK(memoryOfPast)->Name("memory of a past")->Arg(60000)->Iterations(1);
// Their pool has 64 slots times a power of two.
BENCHMARK(memoryPerCounter)->Name("memory per counter, stores just grown")->Arg(32769)->Iterations(1);
BENCHMARK(memoryPerCounter)->Name("memory per counter, stores just full")->Arg(65536)->Iterations(1);

} // namespace
