// Tables: refresh, sort and drawing, against the same getters and prints by hand.

#include "host.h"

#include <benchmark/benchmark.h>

#include <imgui_internal.h>

#include <algorithm>
#include <cstdio>
#include <numeric>

namespace {

using bench::Context;
using bench::Library;
using statistics::CounterValue;
using statistics::Table;

constexpr std::size_t kColumns = 5;

/// The host's data: a number for each row, from which the columns are made.
std::vector<unsigned> makeRows(std::size_t count)
{
    std::vector<unsigned> rows(count);
    unsigned state = 1;
    for (unsigned& row : rows)
        row = state = state * 1664525u + 1013904223u;
    return rows;
}

CounterValue readCell(const std::vector<unsigned>& rows, std::size_t column, std::size_t row)
{
    if (column % 2 == 0)
        return rows[row] >> column;
    return static_cast<float>(rows[row]) * 1e-3f;
}

std::function<CounterValue(std::size_t)> cellGetter(const std::vector<unsigned>& rows, std::size_t column)
{
    if (column % 2 == 0)
        return [&rows, column](std::size_t row) { return CounterValue(rows[row] >> column); };
    return [&rows](std::size_t row) { return CounterValue(static_cast<float>(rows[row]) * 1e-3f); };
}

unsigned addTable(Library& library, const std::vector<unsigned>& rows)
{
    const unsigned id = library->createTable(
        "table", [&rows] { return rows.size(); }, 0.0f);
    for (std::size_t column = 0; column < kColumns; ++column)
        library->getTable(id)->addColumn("column", cellGetter(rows, column), 0.2f);
    return id;
}

void refreshOurs(benchmark::State& state)
{
    const std::vector<unsigned> rows = makeRows(static_cast<std::size_t>(state.range(0)));
    Library library;
    const unsigned id = addTable(library, rows);
    library->updateNode(id);
    for (auto _ : state)
        library->updateNode(id);
}

void refreshHand(benchmark::State& state)
{
    const std::vector<unsigned> rows = makeRows(static_cast<std::size_t>(state.range(0)));
    std::vector<std::function<CounterValue(std::size_t)>> getters;
    for (std::size_t column = 0; column < kColumns; ++column)
        getters.push_back(cellGetter(rows, column));
    std::vector<std::vector<std::string>> texts(rows.size(), std::vector<std::string>(kColumns));
    for (auto _ : state) {
        for (std::size_t row = 0; row < rows.size(); ++row)
            for (std::size_t column = 0; column < kColumns; ++column) {
                const CounterValue value = getters[column](row);
                char text[64];
                const int length =
                    value.isDecimal()
                        ? std::snprintf(text, sizeof(text), "%.3f", static_cast<double>(value.toFloat()))
                        : std::snprintf(text, sizeof(text), "%u", value.toUInt());
                texts[row][column].assign(text, static_cast<std::size_t>(length));
            }
        benchmark::ClobberMemory();
    }
}

BENCHMARK(refreshOurs)->Name("table, refresh/ours")->Arg(100)->Arg(10000)->Arg(100000);
BENCHMARK(refreshHand)->Name("table, refresh/hand")->Arg(100)->Arg(10000)->Arg(100000);

void sortOurs(benchmark::State& state)
{
    const std::vector<unsigned> rows = makeRows(static_cast<std::size_t>(state.range(0)));
    Table table([&rows] { return rows.size(); });
    table.addColumn("column", cellGetter(rows, 0), 1.0f);
    for (auto _ : state)
        table.sort(0, true);
}

void sortHand(benchmark::State& state)
{
    const std::vector<unsigned> rows = makeRows(static_cast<std::size_t>(state.range(0)));
    const auto getter = cellGetter(rows, 0);
    std::vector<std::size_t> order(rows.size());
    for (auto _ : state) {
        std::iota(order.begin(), order.end(), std::size_t{0});
        std::sort(order.begin(), order.end(),
                  [&](std::size_t a, std::size_t b) { return getter(a) < getter(b); });
        benchmark::ClobberMemory();
    }
}

BENCHMARK(sortOurs)->Name("table, sort/ours")->Arg(100)->Arg(10000)->Arg(100000);
BENCHMARK(sortHand)->Name("table, sort/hand")->Arg(100)->Arg(10000)->Arg(100000);

void placeWindow()
{
    ImGui::SetNextWindowPos(ImVec2(0.0f, 0.0f));
    ImGui::SetNextWindowSize(ImVec2(900.0f, 42.0f * bench::kLineHeight));
}

void drawOurs(benchmark::State& state)
{
    const std::vector<unsigned> rows = makeRows(static_cast<std::size_t>(state.range(0)));
    Library library;
    addTable(library, rows);
    library->update(0.0f, true);
    Context host(ImVec2(bench::kDisplayWidth, 720.0f));
    const auto scene = [&] {
        placeWindow();
        library->draw();
    };
    host.frame(scene);
    for (auto _ : state)
        host.frame(scene);
}

void drawRowsByHand(const std::vector<std::vector<std::string>>& texts)
{
    ImGuiListClipper clipper;
    clipper.Begin(static_cast<int>(texts.size()), bench::kLineHeight);
    while (clipper.Step())
        for (int row = clipper.DisplayStart; row < clipper.DisplayEnd; ++row)
            for (const std::string& cell : texts[static_cast<std::size_t>(row)]) {
                ImGui::TextUnformatted(cell.c_str());
                if (ImGui::IsItemHovered() && ImGui::IsMouseDoubleClicked(0))
                    benchmark::ClobberMemory();
                ImGui::NextColumn();
            }
}

void drawTableByHand(const std::vector<std::vector<std::string>>& texts)
{
    ImGui::BeginColumns("table", kColumns, ImGuiOldColumnFlags_NoForceWithinWindow);
    for (std::size_t column = 0; column < kColumns; ++column) {
        ImGui::PushID(static_cast<int>(column));
        ImGui::Button("column", ImVec2(ImGui::GetColumnWidth() - 12.0f, 20.0f));
        ImGui::PopID();
        ImGui::NextColumn();
    }
    drawRowsByHand(texts);
    ImGui::EndColumns();
}

void drawHand(benchmark::State& state)
{
    const std::vector<unsigned> rows = makeRows(static_cast<std::size_t>(state.range(0)));
    std::vector<std::vector<std::string>> texts(rows.size(), std::vector<std::string>(kColumns));
    for (std::size_t row = 0; row < rows.size(); ++row)
        for (std::size_t column = 0; column < kColumns; ++column)
            texts[row][column] = readCell(rows, column, row).toString(nullptr);
    Context host(ImVec2(bench::kDisplayWidth, 720.0f));
    bool open = true;
    const auto scene = [&] {
        placeWindow();
        ImGui::SetNextWindowBgAlpha(0.0f);
        if (ImGui::Begin("Statistics", &open, 0))
            drawTableByHand(texts);
        ImGui::End();
    };
    host.frame(scene);
    for (auto _ : state)
        host.frame(scene);
}

BENCHMARK(drawOurs)->Name("table, draw/ours")->Arg(100)->Arg(10000)->Arg(100000);
BENCHMARK(drawHand)->Name("table, draw/hand")->Arg(100)->Arg(10000)->Arg(100000);

} // namespace
