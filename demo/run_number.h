#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace demo {

/// The number of a run, or why there is none.
struct RunNumber {
    std::uint64_t number = 0;
    std::string problem; ///< empty for none
};

/// The name of a run's folder.
std::string runFolder(std::uint64_t number);

/// Takes a number that no run has had: above the last one, which stands in `<state>/last-run`, and above
/// those of the folders in `snapshots`. Two programs at once get two numbers. Makes the folder `state`.
RunNumber takeRunNumber(const std::filesystem::path& state, const std::filesystem::path& snapshots);

} // namespace demo
