#include "arguments.h"

#include "help.h"
#include "numbers.h"

#include <CLI/CLI.hpp>

#include <iostream>
#include <map>

namespace compare {

namespace {

const std::vector<std::string> kFailOn = {"changed", "worse", "added", "removed", "outside"};

const std::map<std::string, EFormat> kFormats = {
    {"text", EFormat::Text}, {"markdown", EFormat::Markdown}, {"csv", EFormat::Csv}, {"json", EFormat::Json}};

const std::map<std::string, ESort> kSorts = {
    {"path", ESort::Path}, {"change", ESort::Change}, {"p", ESort::Probability}};

// What is wrong with a value, empty for nothing.

std::string checkTolerance(const std::string& text)
{
    std::pair<std::string, Tolerance> rule;
    return parseTolerance(text, rule) ? ""
                                      : "'" + text + "' is no tolerance, such as 5%, 0.5 or 'Frame/*=10%'";
}

std::string checkAlpha(const std::string& text)
{
    double alpha = 0;
    return parseNumber(text, alpha) && alpha > 0 && alpha < 1 ? "" : "'" + text + "' is not between 0 and 1";
}

std::string checkLimitPath(const std::string& text)
{
    const std::size_t sign = text.find('=');
    const bool hasBoth = sign != std::string::npos && sign > 0 && sign + 1 < text.size();
    return hasBoth ? "" : "'" + text + "' is not KEY=PATTERN";
}

class Parser {
public:
    Parser()
    {
        m_app.formatter_fn([](const CLI::App*, const std::string&, CLI::AppFormatMode) { return kHelp; });
        m_app.set_version_flag("--version", STATISTICS_COMPARE_VERSION);
        addSides();
        addJudgement();
        addOutput();
    }

    std::optional<Arguments> parse(int count, const char* const* texts, int& status)
    {
        status = Wrong;
        try {
            m_app.parse(count, texts);
        } catch (const CLI::ParseError& error) {
            status = m_app.exit(error) == 0 ? Fine : Wrong;
            return std::nullopt;
        }
        if (!takeSides()) {
            std::cerr << "Two sides are needed: BASE and NEW, or --base and --new.\n"
                         "Run with --help for more information.\n";
            return std::nullopt;
        }
        takeOutput();
        takeRules();
        takeDirections();
        return m_arguments;
    }

private:
    void addSides()
    {
        m_app.add_option("BASE NEW", m_sides)->expected(0, 2);
        m_app.add_option("--base", m_arguments.base);
        m_app.add_option("--new", m_arguments.now);
        m_app.add_flag("--skip-bad", m_arguments.skipsBad);
    }

    /// One value each time, so that BASE and NEW may follow.
    CLI::Option* addRepeated(const std::string& name, std::vector<std::string>& values)
    {
        return m_app.add_option(name, values)->allow_extra_args(false);
    }

    void addJudgement()
    {
        addRepeated("--tolerance", m_tolerances)->check(checkTolerance);
        m_app.add_option("--alpha", m_arguments.judgement.alpha)->check(checkAlpha);
        m_lower = addRepeated("--lower-is-better", m_lowerPatterns);
        m_higher = addRepeated("--higher-is-better", m_higherPatterns);
        m_app.add_option("--limits", m_arguments.limitsFile);
        addRepeated("--limit-path", m_limitPaths)->check(checkLimitPath);
    }

    void addOutput()
    {
        m_app.add_flag("--only-changed", m_arguments.selection.onlyChanged);
        m_app.add_option("--sort", m_sort)->check(CLI::IsMember(&kSorts));
        m_app.add_option("--format", m_format)->check(CLI::IsMember(&kFormats));
        m_app.add_flag("--p-value", m_arguments.showsProbability);
        addRepeated("--fail-on", m_arguments.failOn)
            ->delimiter(',')
            ->check(CLI::IsMember({"changed", "worse", "better", "added", "removed", "outside", "none"}));
    }

    bool takeSides()
    {
        const bool isNamed = !m_arguments.base.empty() || !m_arguments.now.empty();
        if (!isNamed && m_sides.size() == 2) {
            m_arguments.base = {m_sides[0]};
            m_arguments.now = {m_sides[1]};
            return true;
        }
        return m_sides.empty() && !m_arguments.base.empty() && !m_arguments.now.empty();
    }

    void takeOutput()
    {
        if (!m_sort.empty())
            m_arguments.selection.sort = kSorts.at(m_sort);
        m_arguments.format = kFormats.at(m_format);
        if (m_arguments.failOn.empty())
            m_arguments.failOn = kFailOn;
    }

    void takeRules()
    {
        std::pair<std::string, Tolerance> rule;
        for (const std::string& text : m_tolerances)
            if (parseTolerance(text, rule))
                m_arguments.judgement.tolerances.add(rule.first, rule.second);
        for (const std::string& text : m_limitPaths) {
            const std::size_t sign = text.find('=');
            m_arguments.limitPaths.emplace_back(text.substr(0, sign), text.substr(sign + 1));
        }
    }

    /// In the order of the command line, across both options.
    void takeDirections()
    {
        std::size_t lower = 0;
        std::size_t higher = 0;
        for (const CLI::Option* option : m_app.parse_order())
            if (option == m_lower)
                m_arguments.judgement.directions.add(m_lowerPatterns[lower++], EDirection::LowerIsBetter);
            else if (option == m_higher)
                m_arguments.judgement.directions.add(m_higherPatterns[higher++], EDirection::HigherIsBetter);
    }

    CLI::App m_app{"", "statistics-compare"};
    Arguments m_arguments;
    CLI::Option* m_lower = nullptr;
    CLI::Option* m_higher = nullptr;
    std::vector<std::string> m_sides;
    std::string m_sort;
    std::string m_format = "text";
    std::vector<std::string> m_tolerances;
    std::vector<std::string> m_lowerPatterns;
    std::vector<std::string> m_higherPatterns;
    std::vector<std::string> m_limitPaths;
};

} // namespace

std::optional<Arguments> parseArguments(int count, const char* const* texts, int& status)
{
    return Parser().parse(count, texts, status);
}

bool parseTolerance(const std::string& text, std::pair<std::string, Tolerance>& rule)
{
    const std::size_t sign = text.rfind('=');
    rule.first = sign == std::string::npos ? "*" : text.substr(0, sign);
    std::string amount = sign == std::string::npos ? text : text.substr(sign + 1);
    rule.second.isRelative = !amount.empty() && amount.back() == '%';
    if (rule.second.isRelative)
        amount.pop_back();
    if (rule.first.empty() || !parseNumber(amount, rule.second.amount) || !(rule.second.amount >= 0))
        return false;
    if (rule.second.isRelative)
        rule.second.amount /= 100;
    return true;
}

} // namespace compare
