#include "options.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <functional>
#include <vector>

namespace demo {

namespace {

constexpr const char* kHelp =
    "Usage: statistics_demo [OPTION]...\n"
    "Moves some thousand particles and watches itself doing so.\n"
    "\n"
    "  --list             print the path of every item on the panel and quit\n"
    "  --check SECONDS    run without a window, print what is outside its limits;\n"
    "                     the exit status is 1 if anything is, 0 if nothing is\n"
    "  --preset NAME      limits to start with (Battery, Desktop, Stress or one of\n"
    "                     your own; Desktop if not given)\n"
    "  --config DIR       keep presets in DIR, not in ~/.config/statistics-demo\n"
    "  --state DIR        keep snapshots, comparisons and the windows' layout in\n"
    "                     DIR, not in ~/.local/state/statistics-demo\n"
    "  --frames N         quit after N frames\n"
    "  --seconds S        quit after S seconds\n"
    "  --screen FILE      keep a list of the texts on the screen and their places\n"
    "                     in FILE, for scripts that click\n"
    "  --help             this text\n"
    "\n"
    "The exit status is 2 after a mistake in the command line, 3 without a display.\n";

/// Takes an option's value; false if it isn't one.
using Reader = std::function<bool(Options&, const std::string&)>;

struct Option {
    const char* name;
    Reader read;
};

template<typename Number>
bool readNumber(const std::string& text, std::optional<Number>& number)
{
    Number value{};
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value);
    if (result.ec != std::errc() || result.ptr != end || !(value >= 0) || !std::isfinite(double(value)))
        return false;
    number = value;
    return true;
}

bool readText(const std::string& text, std::string& target)
{
    target = text;
    return !text.empty();
}

const std::vector<Option>& optionsWithValue()
{
    static const std::vector<Option> options = {
        {"--check", [](Options& o, const std::string& text) { return readNumber(text, o.check); }},
        {"--seconds", [](Options& o, const std::string& text) { return readNumber(text, o.seconds); }},
        {"--frames", [](Options& o, const std::string& text) { return readNumber(text, o.frames); }},
        {"--preset", [](Options& o, const std::string& text) { return readText(text, o.preset); }},
        {"--config", [](Options& o, const std::string& text) { return readText(text, o.configFolder); }},
        {"--state", [](Options& o, const std::string& text) { return readText(text, o.stateFolder); }},
        {"--screen", [](Options& o, const std::string& text) { return readText(text, o.screenFile); }},
    };
    return options;
}

const Option* findOption(const char* name)
{
    for (const Option& option : optionsWithValue()) {
        if (std::strcmp(option.name, name) == 0)
            return &option;
    }
    return nullptr;
}

/// The complaint about one argument and its value, empty if there is none. `value` is null at the end of the
/// line.
std::string readOption(Options& options, const char* name, const char* value)
{
    const Option* const option = findOption(name);
    if (!option)
        return "unknown option '" + std::string(name) + "'";
    if (!value)
        return "option '" + std::string(name) + "' needs a value";
    if (!option->read(options, value))
        return "'" + std::string(value) + "' is no value for option '" + name + "'";
    return {};
}

} // namespace

std::optional<Options> parseOptions(int argc, char** argv, int& exitCode)
{
    Options options;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--help") == 0) {
            std::fputs(kHelp, stdout);
            exitCode = 0;
            return std::nullopt;
        }
        if (std::strcmp(argv[i], "--list") == 0) {
            options.list = true;
            continue;
        }
        const std::string complaint = readOption(options, argv[i], i + 1 < argc ? argv[i + 1] : nullptr);
        if (!complaint.empty()) {
            std::fprintf(stderr, "statistics_demo: %s; try --help\n", complaint.c_str());
            exitCode = 2;
            return std::nullopt;
        }
        ++i;
    }
    return options;
}

} // namespace demo
