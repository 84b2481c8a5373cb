#include "preset_file.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace demo {

using nlohmann::json;
using statistics::Limit;
using statistics::LimitMap;

namespace {

/// The double that prints as the float does: 0.1, not 0.10000000149011612.
double asWritten(float number)
{
    char text[32];
    const auto end = std::to_chars(text, text + sizeof(text), number).ptr;
    double result = number;
    std::from_chars(text, end, result);
    return result;
}

/// A number under `key` that a float can hold, or NaN.
float numberIn(const json& entry, const char* key)
{
    const auto found = entry.find(key);
    if (found == entry.end() || !found->is_number())
        return NAN;
    const auto number = found->get<double>();
    return std::fabs(number) <= std::numeric_limits<float>::max() ? static_cast<float>(number) : NAN;
}

/// False if the entry isn't a pair of limits.
bool parseLimit(const json& entry, Limit& limit)
{
    if (!entry.is_object())
        return false;
    limit = {numberIn(entry, "min"), numberIn(entry, "max")};
    return limit.min <= limit.max; // false with a NaN
}

/// The problem, empty for none.
std::string parseLimits(const json& entries, LimitMap& limits)
{
    if (!entries.is_object())
        return "has no limits";
    for (const auto& [key, entry] : entries.items()) {
        if (!parseLimit(entry, limits[key]))
            return "'" + key + "' has no min and max";
    }
    return {};
}

std::string lineOfProblem(const std::string& text, std::size_t byte)
{
    const auto end = text.begin() + static_cast<std::ptrdiff_t>(std::min(byte, text.size()));
    return std::to_string(1 + std::count(text.begin(), end, '\n'));
}

} // namespace

PresetText parsePreset(const std::string& text)
{
    PresetText preset;
    try {
        const json document = json::parse(text);
        if (document.is_object() && document.contains("name") && document["name"].is_string())
            preset.name = document["name"].get<std::string>();
        preset.problem = parseLimits(document.value("limits", json()), preset.limits);
    } catch (const json::parse_error& error) {
        preset.problem = "is damaged in line " + lineOfProblem(text, error.byte);
    } catch (const json::exception&) {
        preset.problem = "holds no preset"; // whole JSON, but not an object
    }
    return preset;
}

std::string printPreset(const std::string& name, const LimitMap& limits)
{
    json entries = json::object();
    for (const auto& [key, limit] : limits)
        entries[key] = {{"min", asWritten(limit.min)}, {"max", asWritten(limit.max)}};
    return json({{"name", name}, {"limits", entries}}).dump(4) + "\n";
}

} // namespace demo
