#include "preset_file.h"

#include "shown_text.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

namespace texts {

using nlohmann::json;
using statistics::Limit;
using statistics::LimitMap;

namespace {

/// Levels: to copy or print a document of many thousand would overflow the stack.
constexpr int kDeepest = 16;

/// The double that prints as the float does: 0.1, not 0.10000000149011612.
double asWritten(float number)
{
    char text[32];
    const auto end = std::to_chars(text, text + sizeof(text), number).ptr;
    double result = number;
    std::from_chars(text, end, result);
    return result;
}

std::optional<double> numberIn(const json& entry, const char* key)
{
    if (!entry.is_object())
        return std::nullopt;
    const auto found = entry.find(key);
    return found != entry.end() && found->is_number() ? std::optional(found->get<double>()) : std::nullopt;
}

bool fitsFloat(double number)
{
    return std::fabs(number) <= std::numeric_limits<float>::max();
}

/// The problem, empty for none.
std::string parseLimit(const json& entry, Limit& limit)
{
    const auto min = numberIn(entry, "min");
    const auto max = numberIn(entry, "max");
    if (!min || !max)
        return "has no min and max";
    if (!fitsFloat(*min) || !fitsFloat(*max))
        return "has a number that is out of range";
    if (*min > *max)
        return "has a min above its max";
    limit = {static_cast<float>(*min), static_cast<float>(*max)};
    return {};
}

std::string parseLimits(const json& entries, LimitMap& limits)
{
    constexpr std::size_t kShownKey = 60;
    for (const auto& [key, entry] : entries.items()) {
        const std::string problem = parseLimit(entry, limits[key]);
        if (!problem.empty())
            return "has '" + bounded(visible(key), kShownKey) + "', which " + problem;
    }
    return {};
}

std::string parsePresetDocument(const json& document, PresetText& preset)
{
    if (!document.is_object())
        return "holds no preset";
    const auto name = document.find("name");
    if (name != document.end() && name->is_string())
        preset.name = name->get<std::string>();
    const auto limits = document.find("limits");
    if (limits == document.end() || !limits->is_object())
        return "has no limits";
    return parseLimits(*limits, preset.limits);
}

std::string lineOfProblem(const std::string& text, std::size_t byte)
{
    const auto end = text.begin() + static_cast<std::ptrdiff_t>(std::min(byte, text.size()));
    return std::to_string(1 + std::count(text.begin(), end, '\n'));
}

/// How many objects and arrays lie in each other.
int depthOf(const std::string& text)
{
    int depth = 0;
    int deepest = 0;
    bool inString = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (inString && c == '\\')
            ++i; // an escaped quote ends no string
        else if (c == '"')
            inString = !inString;
        else if (!inString && (c == '{' || c == '['))
            deepest = std::max(deepest, ++depth);
        else if (!inString && (c == '}' || c == ']'))
            --depth;
    }
    return deepest;
}

/// Gives the problem, empty for none.
std::string parseDocument(const std::string& text, json& document)
{
    if (depthOf(text) > kDeepest)
        return "is nested too deep";
    try {
        document = json::parse(text);
    } catch (const json::parse_error& error) {
        return "is damaged in line " + lineOfProblem(text, error.byte);
    } catch (const json::out_of_range&) {
        return "has a number that is out of range";
    }
    return {};
}

} // namespace

PresetText parsePreset(const std::string& text)
{
    PresetText preset;
    json document;
    preset.problem = parseDocument(text, document);
    if (preset.problem.empty())
        preset.problem = parsePresetDocument(document, preset);
    return preset;
}

std::string printPreset(const std::string& name, const LimitMap& limits, const std::string& old)
{
    json document = {{"name", name}, {"limits", json::object()}};
    if (!old.empty())
        parseDocument(old, document);
    for (const auto& [key, limit] : limits) {
        json& entry = document["limits"][key];
        entry["min"] = asWritten(limit.min);
        entry["max"] = asWritten(limit.max);
    }
    // Names of files may hold bytes that are no UTF-8.
    return document.dump(4, ' ', false, json::error_handler_t::replace) + "\n";
}

} // namespace texts
