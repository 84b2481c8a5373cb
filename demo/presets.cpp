#include "presets.h"

#include "files.h"
#include "save_file.h"
#include "texts/preset_file.h"
#include "texts/shown_text.h"

#include <statistics/statistics.h>

#include <algorithm>
#include <cctype>
#include <memory>
#include <optional>
#include <thread>
#include <utility>

namespace demo {

using statistics::LimitMap;
using statistics::PresetSaveLoadParams;
using statistics::System;

namespace {

constexpr const char* kExtension = ".json";
constexpr std::size_t kLongestName = 40;
constexpr std::size_t kLargestFile = 1 << 20; ///< bytes; a preset has some hundred

struct KnownPreset {
    const char* name;
    LimitMap limits;
};

/// Quiet and cool, usual, and whatever the machine gives. Every key of the panel stands in each: the library
/// takes the limits of a key that a preset lacks for zeros.
std::vector<KnownPreset> knownPresets()
{
    const auto processors = static_cast<float>(std::max(std::thread::hardware_concurrency(), 1u));
    return {
        {"Battery",
         {{"frame.rate", {20, 70}},
          {"frame.time", {0, 50}},
          {"frame.longest", {0, 100}},
          {"work.particles", {0, 5000}},
          {"process.processor", {0, 40}},
          {"process.resident", {0, 160}},
          {"process.majorFaults", {0, 1}},
          {"process.files", {0, 64}},
          {"machine.load", {0, 0.5f * processors}},
          {"machine.processors", {0, 50 * processors}},
          {"machine.memory", {0, 80}}}},
        {"Desktop",
         {{"frame.rate", {30, 250}},
          {"frame.time", {0, 34}},
          {"frame.longest", {0, 80}},
          {"work.particles", {0, 20000}},
          {"process.processor", {0, 100 * processors}},
          {"process.resident", {0, 400}},
          {"process.majorFaults", {0, 20}},
          {"process.files", {0, 256}},
          {"machine.load", {0, 2 * processors}},
          {"machine.processors", {0, 100 * processors}},
          {"machine.memory", {0, 90}}}},
        {"Stress",
         {{"frame.rate", {5, 1000}},
          {"frame.time", {0, 200}},
          {"frame.longest", {0, 1000}},
          {"work.particles", {0, 60000}},
          {"process.processor", {0, 100 * processors}},
          {"process.resident", {0, 2000}},
          {"process.majorFaults", {0, 1000}},
          {"process.files", {0, 1024}},
          {"machine.load", {0, 8 * processors}},
          {"machine.processors", {0, 100 * processors}},
          {"machine.memory", {0, 98}}}},
    };
}

bool isNameCharacter(char c)
{
    return std::isalnum(static_cast<unsigned char>(c)) || c == ' ' || c == '-' || c == '_';
}

/// A name that can be part of a file's.
bool isGoodName(const std::string& name)
{
    return !name.empty() && name.size() <= kLongestName && name.front() != ' ' && name.back() != ' ' &&
           std::all_of(name.begin(), name.end(), isNameCharacter);
}

std::string fileNameOf(std::string name)
{
    std::transform(name.begin(), name.end(), name.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return name + kExtension;
}

std::size_t activePreset()
{
    return System::instance()->getActivePreset();
}

} // namespace

Presets::Presets(std::filesystem::path folder) : m_folder(std::move(folder)) {}

void Presets::create()
{
    sweepLeftovers(m_folder);
    for (KnownPreset& preset : knownPresets())
        createOne({preset.name, fileNameOf(preset.name)}, std::move(preset.limits));
    createSaved();
}

void Presets::createSaved()
{
    std::vector<std::string> files = entriesOf(m_folder, &m_folderProblem);
    std::sort(files.begin(), files.end());
    for (const std::string& file : files) {
        const std::filesystem::path path(file);
        if (path.extension() != kExtension || hasFile(file))
            continue;
        const std::string name = texts::parsePreset(readRegularFile(m_folder / file, kLargestFile).text).name;
        const std::string shown = texts::visible(fileNameOf(name) == file ? name : path.stem().string());
        createOne({shown, file}, knownPresets()[1].limits);
    }
}

bool Presets::hasFile(const std::string& file) const
{
    return std::any_of(m_entries.begin(), m_entries.end(),
                       [&file](const Entry& entry) { return entry.file == file; });
}

void Presets::createOne(Entry entry, LimitMap limits)
{
    const std::size_t index = m_entries.size();
    auto params = std::make_unique<PresetSaveLoadParams>();
    params->loadFunctor = [this, index](LimitMap& map, PresetSaveLoadParams&) { return reload(index, map); };
    params->saveFunctor = [this](LimitMap& map, PresetSaveLoadParams&) { return save(map); };
    params->saveAsFunctor = [this](LimitMap& map, PresetSaveLoadParams&) { return saveAs(map); };

    params->text = isThere(m_folder / entry.file) ? load(entry, limits) : "(as built in)";
    System::instance()->createPreset(entry.name, limits, std::move(params));
    m_entries.push_back(std::move(entry));
}

bool Presets::choose(const std::string& name)
{
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
        if (fileNameOf(m_entries[i].name) == fileNameOf(name)) {
            System::instance()->choosePreset(i);
            return true;
        }
    }
    return false;
}

std::vector<std::string> Presets::names() const
{
    std::vector<std::string> names;
    for (const Entry& entry : m_entries)
        names.push_back(entry.name);
    return names;
}

std::vector<std::string> Presets::problems() const
{
    std::vector<std::string> problems;
    if (!m_folderProblem.empty())
        problems.push_back(m_folderProblem);
    for (const Entry& entry : m_entries)
        if (!entry.problem.empty())
            problems.push_back((m_folder / entry.file).string() + " " + entry.problem);
    return problems;
}

bool Presets::isRefused(const std::string& name) const
{
    return std::any_of(m_entries.begin(), m_entries.end(), [&name](const Entry& entry) {
        return fileNameOf(entry.name) == fileNameOf(name) && !entry.problem.empty();
    });
}

/// Limits that the file doesn't name stay: it may be older than the program. The result is the row's text.
std::string Presets::load(Entry& entry, LimitMap& limits) const
{
    const std::string shown = texts::visible(entry.file);
    entry.problem.clear();
    if (!isThere(m_folder / entry.file))
        return "(no " + shown + " yet)";
    const FileText file = readRegularFile(m_folder / entry.file, kLargestFile);
    const texts::PresetText preset =
        file.problem.empty() ? texts::parsePreset(file.text) : texts::PresetText{{}, {}, file.problem};
    entry.problem = preset.problem;
    if (!entry.problem.empty())
        return "(" + shown + " " + entry.problem + ")";
    for (const auto& [key, limit] : preset.limits)
        limits[key] = limit;
    return "(from " + shown + ")";
}

/// Counters take loaded limits when their preset is chosen: for the active one that shall be now.
std::string Presets::reload(std::size_t index, LimitMap& limits)
{
    std::string text = load(m_entries[index], limits);
    if (activePreset() == index)
        System::instance()->choosePreset(index);
    return text;
}

std::string Presets::save(const LimitMap& limits) const
{
    return "(" + store(m_entries[activePreset()], limits) + ")";
}

/// A damaged file is somebody's work, too: it stays aside. A healthy one keeps what this program doesn't
/// know.
std::string Presets::store(const Entry& entry, const LimitMap& limits) const
{
    const std::filesystem::path path = m_folder / entry.file;
    const bool isNew = !isThere(path);
    const FileText file = isNew ? FileText() : readRegularFile(path, kLargestFile);
    if (!isNew && !file.isRegular)
        return texts::visible(entry.file) + " " + file.problem;
    const bool isHealthy = !isNew && file.problem.empty() && texts::parsePreset(file.text).problem.empty();
    const std::string text = texts::printPreset(entry.name, limits, isHealthy ? file.text : "");
    const std::string problem = saveText(path, text, isHealthy ? EOld::Goes : EOld::StaysAside);
    return problem.empty() ? "saved as " + texts::visible(entry.file) : problem;
}

std::string Presets::saveAs(const LimitMap& limits)
{
    const std::string name = m_saveAsName;
    const std::string file = fileNameOf(name);
    if (!isGoodName(name))
        return "('" + texts::visible(name) + "' is no name: use letters, digits, ' ', '-', '_')";
    if (hasFile(file) || isThere(m_folder / file))
        return "(" + file + " is there already)";
    const std::string problem = saveText(m_folder / file, texts::printPreset(name, limits));
    if (!problem.empty())
        return "(" + problem + ")";
    createOne({name, file}, limits);
    return "(saved as " + file + ")";
}

} // namespace demo
