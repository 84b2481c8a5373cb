// The four hottest scenes, a given number of frames each, for a tool that counts instructions: run twice with
// different numbers, the difference is what the frames cost.

#include "host.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

using bench::Context;
using bench::Library;

void repeat(long frames, const std::function<void()>& frame)
{
    for (long done = 0; done < frames; ++done)
        frame();
}

void updateIdle(long frames)
{
    const std::vector<float> sources(60000);
    Library library;
    bench::addGroupedCounters(library, sources.size(), sources, 1e30f);
    library->update(0.0f, true);
    repeat(frames, [&] { library->update(0.016f, true); });
}

void updateDue(long frames)
{
    const std::vector<float> sources(10000, 16.667f);
    Library library;
    bench::addGroupedCounters(library, sources.size(), sources, 0.0f);
    repeat(frames, [&] { library->update(0.016f, true); });
}

void drawHidden(long frames)
{
    const std::vector<float> sources(60000);
    Library library;
    bench::addGroupedCounters(library, sources.size(), sources, 1e30f);
    library->update(0.0f, true);
    Context host(ImVec2(bench::kDisplayWidth, 720.0f));
    const auto draw = [&] { host.frame([&] { library->draw(); }); };
    draw();
    host.frame(bench::openAllNodes);
    draw();
    repeat(frames, draw);
}

void drawTable(long frames)
{
    Library library;
    const unsigned id = library->createTable(
        "table", [] { return std::size_t{100000}; }, 1e30f);
    for (int column = 0; column < 5; ++column)
        library->getTable(id)->addColumn(
            "column", [](std::size_t row) { return static_cast<int>(row); }, 0.2f);
    library->update(0.0f, true);
    Context host(ImVec2(bench::kDisplayWidth, 720.0f));
    repeat(frames, [&] { host.frame([&] { library->draw(); }); });
}

struct Scene {
    const char* name;
    void (*run)(long frames);
};

constexpr Scene kScenes[] = {{"update-idle", updateIdle},
                             {"update-due", updateDue},
                             {"draw-hidden", drawHidden},
                             {"draw-table", drawTable}};

} // namespace

int main(int count, char** arguments)
{
    for (const Scene& scene : kScenes)
        if (count == 3 && std::strcmp(arguments[1], scene.name) == 0) {
            scene.run(std::strtol(arguments[2], nullptr, 10));
            return 0;
        }
    std::puts("usage: statistics_instructions update-idle|update-due|draw-hidden|draw-table FRAMES");
    return 2;
}
