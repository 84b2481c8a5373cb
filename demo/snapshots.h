#pragma once

#include "notices.h"

#include <filesystem>
#include <string>

namespace demo {

/// Where this program keeps snapshots and comparisons: `<state>/snapshots/run-<number>/` has the snapshots of
/// one run, `<state>/comparisons/` what "Save diff" wrote.
class Snapshots {
public:
    Snapshots(std::filesystem::path state, Notices& notices);

    /// Turns snapshots on, in a folder that is this run's alone. The result is why that couldn't be, empty
    /// for nothing: the program goes on without.
    std::string create();

    const std::filesystem::path& folder() const { return m_root; }

private:
    void saveDiff();

    std::filesystem::path m_state;
    std::filesystem::path m_root; ///< of the snapshots
    std::filesystem::path m_comparisons;
    Notices& m_notices;
};

} // namespace demo
