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
    const std::filesystem::path& folder() const { return m_folder; }
    /// The name that "Save As" gives.
    std::string& saveAsName() { return m_saveAsName; }

private:
    struct Entry {
        std::string name;
        std::string file; // name in the folder
    };

    void createOne(Entry entry, statistics::LimitMap limits);
    void createSaved();
    bool hasFile(const std::string& file) const;  // as a preset on the panel
    bool isStored(const std::string& file) const; // on disk

    std::string load(const Entry& entry, statistics::LimitMap& limits) const;
    std::string reload(std::size_t index, statistics::LimitMap& limits) const;
    std::string save(const statistics::LimitMap& limits) const;
    std::string saveAs(const statistics::LimitMap& limits);

    std::filesystem::path m_folder;
    std::vector<Entry> m_entries; // by the library's index
    std::string m_saveAsName = "My limits";
};

} // namespace demo
