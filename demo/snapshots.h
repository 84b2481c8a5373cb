#pragma once

#include "notices.h"

#include <filesystem>
#include <string>

namespace demo {

/// Where this program keeps snapshots and comparisons: `<state>/snapshots/run-<number>/` has the snapshots of
/// one run, `<state>/comparisons/` what "Save diff" wrote.
class Snapshots {
public:
    Snapshots(const std::filesystem::path& state, Notices& notices);

    /// Turns snapshots on. If the folder can't be read that is told, and the program goes on without.
    void create();

    const std::filesystem::path& folder() const { return m_root; }

private:
    std::string nextRun() const;
    void saveDiff();

    std::filesystem::path m_root; // of the snapshots
    std::filesystem::path m_comparisons;
    Notices& m_notices;
};

} // namespace demo
