#include "options.h"

#include "exit_status.h"
#include "particles.h"

#include <CLI/CLI.hpp>

#include <cmath>
#include <filesystem>
#include <string>

namespace demo {

namespace {

constexpr const char* kAbout = "Moves some thousand particles and watches itself and the machine doing so.";

constexpr const char* kStatuses =
    "The exit status is\n"
    "  0    if all is well\n"
    "  1    after --check, if a counter was outside its limits\n"
    "  2    after a mistake in the command line\n"
    "  3    without a display, or without OpenGL on it\n"
    "  4    after --check, if none was outside, but one with limits had no value\n"
    "  5    if it couldn't do its work; the reason is told\n"
    "and above 128 if a signal ended it.";

/// Keeps out what is a number for the parser, but no time: "nan", "inf", "-1".
std::string isTime(const std::string& text)
{
    double seconds = 0;
    const bool isNumber = CLI::detail::lexical_cast(text, seconds);
    return isNumber && std::isfinite(seconds) && seconds >= 0 ? "" : "'" + text + "' is no time in seconds";
}

/// Files of snapshots are named by the second.
std::string isPeriod(const std::string& text)
{
    const std::string problem = isTime(text);
    return problem.empty() && std::stod(text) < 1 ? "'" + text + "' is less than a second" : problem;
}

std::string isLabel(const std::string& text)
{
    return text.find('=') == std::string::npos ? "'" + text + "' isn't NAME=VALUE" : "";
}

std::string isNotEmpty(const std::string& text)
{
    return text.empty() ? "it is empty" : "";
}

CLI::Option* addTime(CLI::App& parser, const char* name, std::optional<double>& target, const char* about)
{
    return parser.add_option(name, target, about)->type_name("SECONDS")->check(isTime);
}

void addText(CLI::App& parser, const char* name, std::string& target, const char* type, const char* about)
{
    parser.add_option(name, target, about)->type_name(type)->check(isNotEmpty);
}

/// What the program does instead of showing a window.
void describeErrands(CLI::App& parser, Options& options)
{
    CLI::Option* const list =
        parser.add_flag("--list", options.list, "Print the path of every counter on the panel and quit");
    CLI::Option* const check =
        addTime(parser, "--check", options.check,
                "Run without a window for so long, print what is outside its limits or has no value");
    check->excludes(list);
    addTime(parser, "--record", options.record,
            "Run without a window, take a snapshot at the start and each time these are over")
        ->check(isPeriod)
        ->excludes(list)
        ->excludes(check);
}

void describeFolders(CLI::App& parser, Options& options)
{
    addText(parser, "--config", options.configFolder, "DIR",
            "Keep presets there, not in ~/.config/statistics-demo");
    addText(
        parser, "--state", options.stateFolder, "DIR",
        "Keep snapshots, comparisons and the windows' layout there, not in ~/.local/state/statistics-demo");
    addText(parser, "--proc", options.procFolder, "DIR",
            "Read there of the machine and its processes, not in /proc: in a container, where the host's is "
            "mounted");
}

void describeMetrics(CLI::App& parser, Options& options)
{
    addText(parser, "--metrics", options.metrics, "[ADDRESS:]PORT",
            "Offer every counter to Prometheus there; without an address on this machine alone");
    parser.add_option("--label", options.labels, "Put a label on all metrics; may be given several times")
        ->type_name("NAME=VALUE")
        ->check(isLabel)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->expected(1);
}

/// In the order in which "--help" tells them.
void describe(CLI::App& parser, Options& options)
{
    parser.option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
    describeErrands(parser, options);
    parser.add_option("--particles", options.particles, "Move so many")
        ->type_name("N")
        ->check(CLI::Range(Particles::kMinCount, Particles::kMaxCount));
    addText(parser, "--preset", options.preset, "NAME",
            "Limits to start with: Battery, Desktop, Stress or one of your own; Desktop if not given");
    describeFolders(parser, options);
    parser.add_option("--frames", options.frames, "Quit after so many frames")->type_name("N");
    addTime(parser, "--seconds", options.seconds, "Quit after this time; neither bounds --check");
    describeMetrics(parser, options);
    addText(parser, "--screen", options.screenFile, "FILE",
            "Keep a list of the texts on the screen and their places there, for scripts that click");
}

} // namespace

std::optional<Options> parseOptions(int argc, const char* const* argv, int& exitCode)
{
    Options options;
    CLI::App parser(kAbout, std::filesystem::path(argv[0]).filename().string());
    parser.footer(kStatuses);
    parser.set_help_flag("-h,--help", "Print this text and quit");
    describe(parser, options);
    try {
        parser.parse(argc, argv);
    } catch (const CLI::CallForHelp& help) {
        exitCode = parser.exit(help) == 0 ? kFine : kFailed;
        return std::nullopt;
    } catch (const CLI::ParseError& error) {
        std::cerr << "statistics_demo: " << error.what() << "; try --help\n";
        exitCode = kMistake;
        return std::nullopt;
    }
    return options;
}

} // namespace demo
