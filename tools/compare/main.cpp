#include "arguments.h"
#include "limit_file.h"
#include "run.h"
#include "terminal.h"

#include <algorithm>
#include <iostream>

namespace compare {

namespace {

void tell(const std::vector<Problem>& problems, const char* end = "")
{
    for (const Problem& problem : problems)
        std::cerr << "statistics-compare: " << problem.path << ": " << problem.what << end << '\n';
}

struct Sides {
    Paths paths;
    Samples base;
    Samples now;
};

/// The files of several runs, in the order of the command line.
std::vector<std::string> allSnapshotsOf(const std::vector<std::string>& runs, std::vector<Problem>& problems)
{
    std::vector<std::string> files;
    for (const std::string& run : runs) {
        const std::vector<std::string> more = snapshotsOf(run, problems);
        files.insert(files.end(), more.begin(), more.end());
    }
    return files;
}

/// False if a side can't be had whole and bad files aren't to be skipped, or if nothing is left of it.
bool readSides(const Arguments& arguments, Sides& sides)
{
    std::vector<Problem> problems;
    const std::vector<std::string> baseFiles = allSnapshotsOf(arguments.base, problems);
    const std::vector<std::string> nowFiles = allSnapshotsOf(arguments.now, problems);
    if (!problems.empty()) {
        tell(problems);
        return false;
    }
    {
        Progress progress(baseFiles.size() + nowFiles.size());
        for (const std::string& file : baseFiles)
            readSnapshot(file, sides.paths, sides.base, progress, problems);
        for (const std::string& file : nowFiles)
            readSnapshot(file, sides.paths, sides.now, progress, problems);
    }
    tell(problems, arguments.skipsBad ? " (skipped)" : "");
    if (problems.empty() || (arguments.skipsBad && sides.base.snapshots() > 0 && sides.now.snapshots() > 0))
        return true;
    if (arguments.skipsBad)
        std::cerr << "statistics-compare: nothing is left of a side\n";
    return false;
}

bool takeLimits(const Arguments& arguments, Judgement& judgement)
{
    if (arguments.limitsFile.empty())
        return true;
    const std::string problem = readLimits(arguments.limitsFile, arguments.limitPaths, judgement.limits);
    if (!problem.empty())
        tell({{arguments.limitsFile, problem}});
    return problem.empty();
}

/// A limit that judges nothing would go unnoticed.
void tellIdleLimits(const Judgement& judgement, const Comparison& comparison)
{
    for (const auto& [pattern, limit] : judgement.limits.all()) {
        const bool isIdle =
            std::none_of(comparison.rows.begin(), comparison.rows.end(),
                         [&pattern = pattern](const Row& row) { return matches(pattern, row.path); });
        if (isIdle)
            std::cerr << "statistics-compare: no path for the limits of '" << pattern
                      << "'; see --limit-path\n";
    }
}

void print(const Arguments& arguments, const Comparison& comparison)
{
    const bool showsProbability =
        arguments.showsProbability || arguments.selection.sort == ESort::Probability;
    const Look look{terminalWidth(), wantsColours(), showsProbability};
    switch (arguments.format) {
    case EFormat::Text:
        return printText(std::cout, comparison, look);
    case EFormat::Markdown:
        return printMarkdown(std::cout, comparison, look);
    case EFormat::Csv:
        return printCsv(std::cout, comparison);
    case EFormat::Json:
        return printJson(std::cout, comparison, arguments.judgement.alpha);
    }
}

bool isNamed(const std::vector<std::string>& failOn, const std::string& kind)
{
    return std::find(failOn.begin(), failOn.end(), kind) != failOn.end();
}

bool fails(const std::vector<std::string>& failOn, const Comparison& comparison)
{
    bool fails = comparison.outside > 0 && isNamed(failOn, "outside");
    for (std::size_t mark = 0; mark < kMarks; ++mark)
        fails = fails || (comparison.counts[mark] > 0 && isNamed(failOn, markName(static_cast<EMark>(mark))));
    return fails;
}

int run(Arguments arguments)
{
    Sides sides;
    if (!takeLimits(arguments, arguments.judgement) || !readSides(arguments, sides))
        return Wrong;
    Comparison comparison = judge(sides.paths, sides.base, sides.now, arguments.judgement);
    tellIdleLimits(arguments.judgement, comparison);
    const int status = fails(arguments.failOn, comparison) ? Differs : Fine;
    select(comparison, arguments.selection);
    print(arguments, comparison);
    if (!std::cout.flush()) {
        std::cerr << "statistics-compare: the comparison can't be written\n";
        return Wrong;
    }
    return status;
}

} // namespace

} // namespace compare

int main(int count, char** texts)
{
    int status = compare::Fine;
    const auto arguments = compare::parseArguments(count, texts, status);
    return arguments ? compare::run(*arguments) : status;
}
