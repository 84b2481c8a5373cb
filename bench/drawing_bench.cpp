// What `draw` costs, against a hand-written ImGui panel of the same look.

#include "host.h"

#include <benchmark/benchmark.h>

namespace {

using bench::Context;
using bench::Library;
using statistics::Counter;

void drawPanel()
{
    statistics::System::instance()->draw();
}

void beginPanel()
{
    ImGui::SetNextWindowBgAlpha(0.0f);
    ImGui::SetNextWindowSize(ImVec2(920.0f, 600.0f), ImGuiCond_FirstUseEver);
}

void collapsedOurs(benchmark::State& state)
{
    const std::vector<float> sources(1000);
    Library library;
    bench::addGroupedCounters(library, sources.size(), sources, 0.0f);
    Context host(ImVec2(bench::kDisplayWidth, 1000.0f));
    host.frame([] {
        ImGui::SetNextWindowCollapsed(true);
        drawPanel();
    });
    for (auto _ : state)
        host.frame(drawPanel);
}

void collapsedHand(benchmark::State& state)
{
    Context host(ImVec2(bench::kDisplayWidth, 1000.0f));
    bool open = true;
    const auto scene = [&] {
        beginPanel();
        ImGui::SetNextWindowCollapsed(true, ImGuiCond_FirstUseEver);
        ImGui::Begin("Statistics", &open, 0);
        ImGui::End();
    };
    for (auto _ : state)
        host.frame(scene);
}

BENCHMARK(collapsedOurs)->Name("draw, collapsed/ours");
BENCHMARK(collapsedHand)->Name("draw, collapsed/hand");

/// All lines in view: the window is as high as they are.
void fillWindow(std::size_t lines)
{
    ImGui::SetNextWindowPos(ImVec2(0.0f, 0.0f));
    ImGui::SetNextWindowSize(ImVec2(1200.0f, 100.0f + 23.0f * static_cast<float>(lines)));
}

void visibleOurs(benchmark::State& state, bool limited)
{
    const auto count = static_cast<std::size_t>(state.range(0));
    const std::vector<float> sources(count, 0.5f);
    Library library;
    for (std::size_t index = 0; index < count; ++index)
        library->createCounter(
            bench::name(index),
            limited ? std::make_unique<Counter>(0.0f, 1.0f, bench::getter(sources[index]), "", "")
                    : std::make_unique<Counter>(bench::getter(sources[index])),
            0.0f);
    library->update(0.0f, true);
    Context host(ImVec2(bench::kDisplayWidth, 100.0f + 23.0f * static_cast<float>(count)));
    const auto scene = [&] {
        fillWindow(count);
        drawPanel();
    };
    host.frame(scene);
    for (auto _ : state)
        host.frame(scene);
}

struct Line {
    std::string name, value, min, max;
    float weight;
};

ImVec4 barColor(float weight)
{
    const float t = weight * 1.25f;
    return {0.35f * (1 - t) + 0.96f * t, 0.65f, 0.14f * t, 1.0f};
}

void drawLine(const Line& line, bool limited)
{
    ImGui::PushStyleColor(ImGuiCol_Text, ImVec4(0.475f, 0.6f, 0.718f, 1.0f));
    ImGui::TextUnformatted(line.name.c_str());
    ImGui::PopStyleColor();
    ImGui::SameLine(215.0f);
    if (!limited)
        return ImGui::TextUnformatted(line.value.c_str());
    ImGui::TextUnformatted(line.min.c_str());
    ImGui::SameLine();
    const ImVec4 color = barColor(line.weight);
    ImGui::PushStyleColor(ImGuiCol_FrameBg, ImVec4(color.x, color.y, color.z, 0.25f));
    ImGui::PushStyleColor(ImGuiCol_PlotHistogram, color);
    ImGui::PushItemWidth(275.0f);
    ImGui::ProgressBar(line.weight, ImVec2(0, 0), line.value.c_str());
    ImGui::PopItemWidth();
    ImGui::PopStyleColor(2);
    ImGui::SameLine();
    ImGui::TextUnformatted(line.max.c_str());
}

void visibleHand(benchmark::State& state, bool limited)
{
    const auto count = static_cast<std::size_t>(state.range(0));
    std::vector<Line> lines;
    for (std::size_t index = 0; index < count; ++index)
        lines.push_back({bench::name(index), "0.500", "0.000", "1.000", 0.5f});
    Context host(ImVec2(bench::kDisplayWidth, 100.0f + 23.0f * static_cast<float>(count)));
    bool open = true;
    const auto scene = [&] {
        fillWindow(count);
        ImGui::SetNextWindowBgAlpha(0.0f);
        if (ImGui::Begin("Statistics", &open, 0)) {
            ImGui::TreePush("lines");
            for (const Line& line : lines)
                drawLine(line, limited);
            ImGui::TreePop();
        }
        ImGui::End();
    };
    host.frame(scene);
    for (auto _ : state)
        host.frame(scene);
}

BENCHMARK_CAPTURE(visibleOurs, plain, false)->Name("draw, counters in view/ours")->Arg(100)->Arg(1000);
BENCHMARK_CAPTURE(visibleHand, plain, false)->Name("draw, counters in view/hand")->Arg(100)->Arg(1000);
BENCHMARK_CAPTURE(visibleOurs, bars, true)
    ->Name("draw, counters with bars in view/ours")
    ->Arg(100)
    ->Arg(1000);
BENCHMARK_CAPTURE(visibleHand, bars, true)
    ->Name("draw, counters with bars in view/hand")
    ->Arg(100)
    ->Arg(1000);

void addCountersUnderOneParent(Library& library, std::size_t count, const std::vector<float>& sources)
{
    const unsigned parent = library->createLabel("parent");
    for (std::size_t index = 0; index < count; ++index)
        library->createCounter(bench::name(index), std::make_unique<Counter>(bench::getter(sources[index])),
                               0.0f, parent);
}

/// All of them open, 40 lines in view.
void hiddenOurs(benchmark::State& state, bool grouped)
{
    const auto count = static_cast<std::size_t>(state.range(0));
    const std::vector<float> sources(count, 0.5f);
    Library library;
    if (grouped)
        bench::addGroupedCounters(library, count, sources, 0.0f);
    else
        addCountersUnderOneParent(library, count, sources);
    library->update(0.0f, true);
    Context host(ImVec2(bench::kDisplayWidth, 720.0f));
    const auto scene = [] {
        ImGui::SetNextWindowPos(ImVec2(0.0f, 0.0f));
        ImGui::SetNextWindowSize(ImVec2(900.0f, 40.0f * bench::kLineHeight));
        drawPanel();
    };
    host.frame(scene);
    host.frame(bench::openAllNodes);
    host.frame(scene);
    for (auto _ : state)
        host.frame(scene);
}

void hiddenHand(benchmark::State& state)
{
    const auto count = static_cast<std::size_t>(state.range(0));
    std::vector<Line> lines(count + count / 100);
    for (std::size_t index = 0; index < lines.size(); ++index)
        lines[index] = {bench::name(index), "0.500", "", "", 0.5f};
    Context host(ImVec2(bench::kDisplayWidth, 720.0f));
    bool open = true;
    const auto scene = [&] {
        ImGui::SetNextWindowPos(ImVec2(0.0f, 0.0f));
        ImGui::SetNextWindowSize(ImVec2(900.0f, 40.0f * bench::kLineHeight));
        ImGui::SetNextWindowBgAlpha(0.0f);
        if (ImGui::Begin("Statistics", &open, 0)) {
            ImGuiListClipper clipper;
            clipper.Begin(static_cast<int>(lines.size()), bench::kLineHeight);
            while (clipper.Step())
                for (int line = clipper.DisplayStart; line < clipper.DisplayEnd; ++line)
                    drawLine(lines[static_cast<std::size_t>(line)], false);
        }
        ImGui::End();
    };
    host.frame(scene);
    for (auto _ : state)
        host.frame(scene);
}

BENCHMARK_CAPTURE(hiddenOurs, groups, true)
    ->Name("draw, open groups of 100 out of view/ours")
    ->Arg(100)
    ->Arg(10000)
    ->Arg(60000);
BENCHMARK(hiddenHand)->Name("draw, open groups of 100 out of view/hand")->Arg(100)->Arg(10000)->Arg(60000);
BENCHMARK_CAPTURE(hiddenOurs, one, false)
    ->Name("draw, counters under one parent out of view/ours")
    ->Arg(10000)
    ->Arg(60000);
BENCHMARK(hiddenHand)->Name("draw, counters under one parent out of view/hand")->Arg(10000)->Arg(60000);

} // namespace
