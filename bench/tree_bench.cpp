// Creating, finding and removing items, judging them, and presets.

#include "host.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <list>
#include <random>
#include <unordered_map>

namespace {

using bench::Library;
using statistics::Counter;
using statistics::Limit;

const float s_source = 1.0f;

std::unique_ptr<Counter> makeCounter()
{
    return std::make_unique<Counter>(bench::getter(s_source));
}

struct HandItem {
    std::string name;
    std::unique_ptr<Counter> counter;
    float period;
    float timer = 0;
    std::string valueText = {};
    std::string minText = {};
    std::string maxText = {};
};

/// What a host would keep by itself: the items in a vector, and a map of their full names.
struct HandItems {
    void add(unsigned parent, std::string name)
    {
        byName.emplace(std::to_string(parent) + "/" + name, items.size());
        items.push_back({std::move(name), makeCounter(), 1.0f});
    }

    std::vector<HandItem> items;
    std::unordered_map<std::string, std::size_t> byName;
};

constexpr std::size_t kOneParent = static_cast<std::size_t>(-1);

unsigned groupOf(Library& library, std::size_t index, std::size_t groupSize, unsigned top)
{
    return groupSize == kOneParent ? top : library->createLabel("group " + std::to_string(index / groupSize));
}

void fill(Library& library, std::size_t count, std::size_t groupSize, unsigned top = 0)
{
    unsigned group = 0;
    for (std::size_t index = 0; index < count; ++index) {
        if (index % groupSize == 0)
            group = groupOf(library, index, groupSize, top);
        library->createCounter(bench::name(index), makeCounter(), 1.0f, group);
    }
}

void createOurs(benchmark::State& state, std::size_t groupSize)
{
    for (auto _ : state) {
        state.PauseTiming();
        auto library = std::make_unique<Library>();
        state.ResumeTiming();
        fill(*library, static_cast<std::size_t>(state.range(0)), groupSize);
        state.PauseTiming();
        library.reset();
        state.ResumeTiming();
    }
}

void createHand(benchmark::State& state, std::size_t groupSize)
{
    for (auto _ : state) {
        auto items = std::make_unique<HandItems>();
        for (std::size_t index = 0; index < static_cast<std::size_t>(state.range(0)); ++index)
            items->add(static_cast<unsigned>(index / groupSize), bench::name(index));
        benchmark::DoNotOptimize(*items);
        state.PauseTiming();
        items.reset();
        state.ResumeTiming();
    }
}

BENCHMARK_CAPTURE(createOurs, groups, 100)
    ->Name("create in groups of 100/ours")
    ->Arg(100)
    ->Arg(10000)
    ->Arg(60000);
BENCHMARK_CAPTURE(createHand, groups, 100)
    ->Name("create in groups of 100/hand")
    ->Arg(100)
    ->Arg(10000)
    ->Arg(60000);
BENCHMARK_CAPTURE(createOurs, one, kOneParent)->Name("create under one parent/ours")->Arg(10000)->Arg(60000);
BENCHMARK_CAPTURE(createHand, one, kOneParent)->Name("create under one parent/hand")->Arg(10000)->Arg(60000);

enum class EOrder { FirstToLast, LastToFirst, Random };

template<typename T>
void putInOrder(std::vector<T>& created, EOrder order)
{
    if (order == EOrder::LastToFirst)
        std::reverse(created.begin(), created.end());
    if (order == EOrder::Random)
        std::shuffle(created.begin(), created.end(), std::mt19937(1));
}

/// One by one.
void removeOurs(benchmark::State& state, EOrder order)
{
    for (auto _ : state) {
        state.PauseTiming();
        auto library = std::make_unique<Library>();
        fill(*library, static_cast<std::size_t>(state.range(0)), kOneParent);
        std::vector<unsigned> ids;
        statistics::TestAccess::tree().forEachNode([&](unsigned id) { ids.push_back(id); });
        putInOrder(ids, order);
        state.ResumeTiming();
        for (const unsigned id : ids)
            (*library)->removeItem(id);
        state.PauseTiming();
        library.reset();
        state.ResumeTiming();
    }
}

void removeHand(benchmark::State& state, EOrder order)
{
    for (auto _ : state) {
        state.PauseTiming();
        HandItems items;
        std::vector<std::string> names;
        for (std::size_t index = 0; index < static_cast<std::size_t>(state.range(0)); ++index) {
            items.add(0, bench::name(index));
            names.push_back("0/" + bench::name(index));
        }
        putInOrder(names, order);
        state.ResumeTiming();
        for (const std::string& name : names) {
            const auto found = items.byName.find(name);
            items.items[found->second].counter.reset();
            items.byName.erase(found);
        }
        items.items.clear();
    }
}

/// Everything below the root at once, by its top-level nodes.
void removeAllOurs(benchmark::State& state, std::size_t groupSize)
{
    for (auto _ : state) {
        state.PauseTiming();
        auto library = std::make_unique<Library>();
        const unsigned top = groupSize == kOneParent ? (*library)->createLabel("top") : 0;
        fill(*library, static_cast<std::size_t>(state.range(0)), groupSize, top);
        const statistics::ChildList& children = statistics::TestAccess::tree().m_nodes[0].children;
        const std::vector<unsigned> topLevel(children.begin(), children.end());
        state.ResumeTiming();
        for (const unsigned id : topLevel)
            (*library)->removeItem(id);
        state.PauseTiming();
        library.reset();
        state.ResumeTiming();
    }
}

BENCHMARK_CAPTURE(removeAllOurs, groups, 100)->Name("remove all, groups of 100/ours")->Arg(10000)->Arg(60000);
BENCHMARK_CAPTURE(removeHand, groups, EOrder::FirstToLast)
    ->Name("remove all, groups of 100/hand")
    ->Arg(10000)
    ->Arg(60000);
BENCHMARK_CAPTURE(removeAllOurs, one, kOneParent)
    ->Name("remove all, one parent/ours")
    ->Arg(10000)
    ->Arg(60000);
BENCHMARK_CAPTURE(removeHand, one, EOrder::FirstToLast)
    ->Name("remove all, one parent/hand")
    ->Arg(10000)
    ->Arg(60000);
#define STATISTICS_REMOVE(what, order)                                                                       \
    BENCHMARK_CAPTURE(removeOurs, ours, order)->Name(what "/ours")->Arg(10000)->Arg(60000);                  \
    BENCHMARK_CAPTURE(removeHand, hand, order)->Name(what "/hand")->Arg(10000)->Arg(60000)

STATISTICS_REMOVE("remove one by one from one parent, first to last", EOrder::FirstToLast);
STATISTICS_REMOVE("remove one by one from one parent, last to first", EOrder::LastToFirst);
STATISTICS_REMOVE("remove one by one from one parent, at random", EOrder::Random);

/// A path of three names, each among 1,000 siblings.
void pathOurs(benchmark::State& state)
{
    Library library;
    unsigned parent = 0;
    for (int level = 0; level < 3; ++level) {
        unsigned next = 0;
        for (std::size_t index = 0; index < 1000; ++index) {
            const unsigned id = library->createLabel(bench::name(index), parent);
            next = index == 500 ? id : next;
        }
        parent = next;
    }
    const std::string path = bench::name(500) + "/" + bench::name(500) + "/" + bench::name(500);
    for (auto _ : state)
        benchmark::DoNotOptimize(library->getItemIndex(path));
}

void pathHand(benchmark::State& state)
{
    std::unordered_map<std::string, unsigned> level;
    for (std::size_t index = 0; index < 1000; ++index)
        level.emplace(bench::name(index), static_cast<unsigned>(index));
    const std::string name = bench::name(500);
    for (auto _ : state)
        for (int step = 0; step < 3; ++step)
            benchmark::DoNotOptimize(level.find(name));
}

BENCHMARK(pathOurs)->Name("find a path of three names/ours");
BENCHMARK(pathHand)->Name("find a path of three names/hand");

/// One counter in a hundred is outside.
float valueAt(std::size_t index)
{
    return index % 100 == 0 ? 2.0f : 0.5f;
}

void warningsOurs(benchmark::State& state)
{
    std::vector<float> sources;
    Library library;
    for (std::size_t index = 0; index < static_cast<std::size_t>(state.range(0)); ++index)
        sources.push_back(valueAt(index));
    for (std::size_t index = 0; index < sources.size(); ++index)
        library->createCounter(bench::name(index),
                               std::make_unique<Counter>(0.0f, 1.0f, bench::getter(sources[index]), "", ""),
                               1.0f, library->createLabel("group " + std::to_string(index / 100)));
    for (auto _ : state)
        benchmark::DoNotOptimize(library->collectWarnings());
}

void warningsHand(benchmark::State& state)
{
    std::vector<float> sources;
    for (std::size_t index = 0; index < static_cast<std::size_t>(state.range(0)); ++index)
        sources.push_back(valueAt(index));
    std::vector<std::unique_ptr<Counter>> counters;
    std::vector<std::string> paths;
    for (std::size_t index = 0; index < sources.size(); ++index) {
        counters.push_back(std::make_unique<Counter>(0.0f, 1.0f, bench::getter(sources[index]), "", ""));
        paths.push_back("group " + std::to_string(index / 100) + "/" + bench::name(index));
    }
    for (auto _ : state) {
        std::list<std::string> warnings;
        for (std::size_t index = 0; index < counters.size(); ++index) {
            Counter& counter = *counters[index];
            if (counter.getter() < counter.min || counter.getter() > counter.max)
                warnings.push_back(paths[index]);
        }
        benchmark::DoNotOptimize(warnings);
    }
}

BENCHMARK(warningsOurs)->Name("collect warnings/ours")->Arg(100)->Arg(10000)->Arg(60000);
BENCHMARK(warningsHand)->Name("collect warnings/hand")->Arg(100)->Arg(10000)->Arg(60000);

statistics::LimitMap makeLimits(std::size_t count)
{
    statistics::LimitMap limits;
    for (std::size_t index = 0; index < count; ++index)
        limits[bench::name(index)] = Limit{0.0f, static_cast<float>(index)};
    return limits;
}

void chooseOurs(benchmark::State& state)
{
    const auto count = static_cast<std::size_t>(state.range(0));
    Library library;
    for (std::size_t index = 0; index < count; ++index)
        library->createCounter(bench::name(index),
                               std::make_unique<Counter>(bench::getter(s_source), "", "", bench::name(index)),
                               1.0f);
    library->createPreset("preset", makeLimits(count));
    for (auto _ : state)
        library->choosePreset(0);
}

void chooseHand(benchmark::State& state)
{
    const auto count = static_cast<std::size_t>(state.range(0));
    const statistics::LimitMap limits = makeLimits(count);
    std::vector<HandItem> items;
    for (std::size_t index = 0; index < count; ++index)
        items.push_back({bench::name(index),
                         std::make_unique<Counter>(bench::getter(s_source), "", "", bench::name(index)),
                         1.0f});
    for (auto _ : state)
        for (HandItem& item : items) {
            const auto found = limits.find(item.counter->limitKey);
            char text[64];
            item.minText =
                (std::snprintf(text, sizeof(text), "%.3f", static_cast<double>(found->second.min)), text);
            item.maxText =
                (std::snprintf(text, sizeof(text), "%.3f", static_cast<double>(found->second.max)), text);
        }
}

BENCHMARK(chooseOurs)->Name("choose a preset/ours")->Arg(100)->Arg(10000)->Arg(60000);
BENCHMARK(chooseHand)->Name("choose a preset/hand")->Arg(100)->Arg(10000)->Arg(60000);

} // namespace
