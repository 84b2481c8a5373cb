// Finding some counters among thousands: a key press, from the new words to the frame that shows what they
// leave, and the frames behind it. All that is found is open, 40 lines are in view.

#include "host.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <string_view>

namespace {

using bench::Context;
using bench::Library;

/// As they are typed: each leaves fewer, the first one half of all.
constexpr std::array<const char*, 4> kTexts = {"1", "13", "13 g", "13 group 4"};

ImVec2 windowSize()
{
    return {900.0f, 40.0f * bench::kLineHeight};
}

/// Draws the panel again and again, with `beforeFrame(n)` before frame n.
template<typename BeforeFrame>
void run(benchmark::State& state, const BeforeFrame& beforeFrame)
{
    const auto count = static_cast<std::size_t>(state.range(0));
    const std::vector<float> sources(count, 0.5f);
    Library library;
    bench::addGroupedCounters(library, count, sources, 0.0f);
    library->update(0.0f, true);
    library->setFilter(kTexts[0]);
    Context host(ImVec2(bench::kDisplayWidth, 720.0f));
    const auto scene = [&] {
        ImGui::SetNextWindowPos(ImVec2(0.0f, 0.0f));
        ImGui::SetNextWindowSize(windowSize());
        library->draw();
    };
    host.frame(scene);
    host.frame(scene);
    std::size_t frame = 0;
    for (auto _ : state) {
        beforeFrame(library, ++frame);
        host.frame(scene);
    }
}

void pressOurs(benchmark::State& state)
{
    run(state,
        [](Library& library, std::size_t frame) { library->setFilter(kTexts[frame % kTexts.size()]); });
}

void steadyOurs(benchmark::State& state)
{
    run(state, [](Library&, std::size_t) {});
}

std::string lower(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

/// What a host would keep by itself: all paths in lower case, and the lines of those that are left.
struct HandList {
    explicit HandList(std::size_t count)
    {
        for (std::size_t index = 0; index < count; ++index) {
            names.push_back(bench::name(index));
            paths.push_back(lower("group " + std::to_string(index / 100) + "/" + names.back()));
        }
    }

    static bool holdsAll(const std::string& path, std::string_view words)
    {
        while (!words.empty()) {
            const std::string_view word = words.substr(0, words.find(' '));
            if (path.find(word) == std::string::npos)
                return false;
            words.remove_prefix(std::min(word.size() + 1, words.size()));
        }
        return true;
    }

    void filter(const std::string& text)
    {
        const std::string words = lower(text);
        lines.clear();
        for (std::size_t index = 0; index < paths.size(); ++index) {
            if (!holdsAll(paths[index], words))
                continue;
            if (lines.empty() || lines.back() / 100 != index / 100)
                lines.push_back(index); // its group's line
            lines.push_back(index);
        }
    }

    void draw() const
    {
        ImGui::SetNextWindowPos(ImVec2(0.0f, 0.0f));
        ImGui::SetNextWindowSize(windowSize());
        ImGui::SetNextWindowBgAlpha(0.0f);
        if (ImGui::Begin("Statistics", nullptr, 0)) {
            ImGuiListClipper clipper;
            clipper.Begin(static_cast<int>(lines.size()), bench::kLineHeight);
            while (clipper.Step())
                for (int line = clipper.DisplayStart; line < clipper.DisplayEnd; ++line) {
                    ImGui::TextUnformatted(names[lines[static_cast<std::size_t>(line)]].c_str());
                    ImGui::SameLine(215.0f);
                    ImGui::TextUnformatted("0.500");
                }
        }
        ImGui::End();
    }

    std::vector<std::string> names, paths;
    std::vector<std::size_t> lines;
};

void pressHand(benchmark::State& state)
{
    HandList list(static_cast<std::size_t>(state.range(0)));
    Context host(ImVec2(bench::kDisplayWidth, 720.0f));
    std::size_t frame = 0;
    for (auto _ : state) {
        list.filter(kTexts[++frame % kTexts.size()]);
        host.frame([&] { list.draw(); });
    }
}

void steadyHand(benchmark::State& state)
{
    HandList list(static_cast<std::size_t>(state.range(0)));
    list.filter(kTexts[0]);
    Context host(ImVec2(bench::kDisplayWidth, 720.0f));
    for (auto _ : state)
        host.frame([&] { list.draw(); });
}

BENCHMARK(pressOurs)->Name("filter, key press/ours")->Arg(1000)->Arg(60000);
BENCHMARK(pressHand)->Name("filter, key press/hand")->Arg(1000)->Arg(60000);
BENCHMARK(steadyOurs)->Name("filter, steady frame/ours")->Arg(1000)->Arg(60000);
BENCHMARK(steadyHand)->Name("filter, steady frame/hand")->Arg(1000)->Arg(60000);

} // namespace
