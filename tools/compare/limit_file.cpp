#include "limit_file.h"

#include "native_path.h"
#include "texts/preset_file.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <system_error>

namespace compare {

namespace {

constexpr std::size_t kLongestFile = std::size_t{1} << 20u; ///< bytes

/// Regular files only: nothing is waited for.
std::string readText(const std::string& file, std::string& text)
{
    std::error_code error;
    const std::filesystem::path path = statistics::toPath(file);
    if (!std::filesystem::is_regular_file(path, error))
        return error ? error.message() : "is no file";
    std::ifstream stream(path, std::ios::binary);
    text.resize(kLongestFile + 1);
    stream.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(stream.gcount()));
    if (stream.bad() || !stream.eof())
        return text.size() > kLongestFile ? "is longer than 1 MiB" : "can't be read";
    return {};
}

} // namespace

std::string readLimits(const std::string& file,
                       const std::vector<std::pair<std::string, std::string>>& keyPaths,
                       Rules<statistics::Limit>& limits)
{
    std::string text;
    std::string problem = readText(file, text);
    if (!problem.empty())
        return problem;
    const texts::PresetText preset = texts::parsePreset(text);
    // By key, so that of two patterns that fit one path the same counts each time.
    const std::map<std::string, statistics::Limit> sorted(preset.limits.begin(), preset.limits.end());
    for (const auto& [key, limit] : sorted) {
        const auto named = std::find_if(keyPaths.begin(), keyPaths.end(),
                                        [&key = key](const auto& entry) { return entry.first == key; });
        limits.add(named == keyPaths.end() ? key : named->second, limit);
    }
    return preset.problem;
}

} // namespace compare
