#pragma once

#include <statistics/preset.h>

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace demo {

/// The presets on the panel: three that the program knows, and those that the user saved. Each has a JSON
/// file of its own in one folder; a preset without a file has the limits that the program knows.
class Presets {
public:
    explicit Presets(std::filesystem::path folder);

    /// Puts all presets on the panel, with the limits of their files.
    void create();
    /// Makes a preset active; false if there is none of that name.
    bool choose(const std::string& name);

    std::vector<std::string> names() const;
    /// The files that couldn't be taken, each with the reason, and what kept the folder from being read.
    std::vector<std::string> problems() const;
    /// False if the folder couldn't be read: there may be more presets.
    bool isComplete() const { return m_folderProblem.empty(); }
    /// True if the preset has a file that couldn't be taken: its limits are the program's.
    bool isRefused(const std::string& name) const;
    const std::filesystem::path& folder() const { return m_folder; }
    /// The name that "Save As" gives.
    std::string& saveAsName() { return m_saveAsName; }

private:
    struct Entry {
        std::string name;
        std::string file;         ///< name in the folder
        std::string problem = {}; ///< why the file wasn't taken, when it was last read; empty for nothing
    };

    void createOne(Entry entry, statistics::LimitMap limits);
    void createSaved();
    bool hasFile(const std::string& file) const; ///< on the panel

    std::string load(Entry& entry, statistics::LimitMap& limits) const;
    std::string reload(std::size_t index, statistics::LimitMap& limits);
    std::string save(const statistics::LimitMap& limits) const;
    std::string store(const Entry& entry, const statistics::LimitMap& limits) const;
    std::string saveAs(const statistics::LimitMap& limits);

    std::filesystem::path m_folder;
    std::string m_folderProblem;
    std::vector<Entry> m_entries; ///< by the library's index
    std::string m_saveAsName = "My limits";
};

} // namespace demo
