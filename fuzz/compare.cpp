#include "judging.h"
#include "report.h"
#include "run.h"
#include "targets.h"

#include "support/files.h"

#include <nlohmann/json.hpp>

#include <cstdlib>
#include <filesystem>
#include <numeric>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace compare;

constexpr char kNextFile = '\1';
constexpr char kNextSide = '\2';

void require(bool condition)
{
    if (!condition)
        std::abort();
}

/// Writes a side into a folder of its own, a file for each of its parts.
void write(const test::TempDir& dir, const std::string& side, const std::string& bytes)
{
    std::filesystem::remove_all(dir(side));
    std::istringstream stream(bytes);
    std::size_t number = 0;
    for (std::string file; number < 20 && std::getline(stream, file, kNextFile);)
        dir.write(side + "/" + std::to_string(number++), file);
}

Comparison compareFolders(const std::string& base, const std::string& now, const Judgement& judgement)
{
    Paths paths;
    Samples sides[2];
    Progress progress(0);
    std::vector<Problem> problems;
    for (const std::string& file : snapshotsOf(base, problems))
        readSnapshot(file, paths, sides[0], progress, problems);
    for (const std::string& file : snapshotsOf(now, problems))
        readSnapshot(file, paths, sides[1], progress, problems);
    for (const Problem& problem : problems)
        require(!problem.what.empty());
    return judge(paths, sides[0], sides[1], judgement);
}

std::size_t count(const Comparison& comparison, EMark mark)
{
    return comparison.counts[static_cast<std::size_t>(mark)];
}

void requireSound(const Comparison& comparison)
{
    const auto& counts = comparison.counts;
    require(std::accumulate(counts.begin(), counts.end(), std::size_t{0}) == comparison.rows.size());
    for (const Row& row : comparison.rows)
        require(!row.probability || (*row.probability >= 0 && *row.probability <= 1 + 1e-9));
    std::ostringstream json;
    printJson(json, comparison, 0.05);
    require(nlohmann::json::parse(json.str())["rows"].size() == comparison.rows.size());
    std::ostringstream others;
    printText(others, comparison, {40, true, true});
    printMarkdown(others, comparison, {0, false, true});
    printCsv(others, comparison);
    require(others.good());
}

} // namespace

void fuzz::compareRuns(const std::uint8_t* data, std::size_t size)
{
    static const test::TempDir dir;
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const std::size_t middle = bytes.find(kNextSide);
    write(dir, "base", bytes.substr(0, middle));
    write(dir, "new", middle == std::string::npos ? "" : bytes.substr(middle + 1));

    Judgement judgement;
    judgement.tolerances.add("a*", {0.1, true});
    judgement.directions.add("*b", EDirection::LowerIsBetter);
    judgement.limits.add("?", {0, 5});
    const Comparison there = compareFolders(dir("base"), dir("new"), judgement);
    requireSound(there);
    const Comparison back = compareFolders(dir("new"), dir("base"), judgement);
    require(count(there, EMark::Added) == count(back, EMark::Removed));
    require(count(there, EMark::Same) == count(back, EMark::Same));
    require(count(there, EMark::Noise) == 0 || count(back, EMark::Same) < back.rows.size());
    const Comparison itself = compareFolders(dir("base"), dir("base"), judgement);
    require(count(itself, EMark::Same) == itself.rows.size());
}
