#pragma once

#include <optional>
#include <string>
#include <vector>

namespace demo {

/// What the command line asks for.
struct Options {
    bool list = false;                ///< print the paths of all items and quit
    std::optional<double> check;      ///< seconds to run without a window, watching for warnings
    std::optional<double> record;     ///< seconds from one snapshot to the next, without a window
    std::optional<double> seconds;    ///< quit after this time
    std::optional<unsigned> frames;   ///< quit after so many frames
    std::optional<int> particles;     ///< that are moved; nothing: as many as the program likes
    std::string preset = "Desktop";   ///< the preset to start with
    std::string configFolder;         ///< presets; empty: the user's
    std::string stateFolder;          ///< snapshots, comparisons, layout; empty: the user's
    std::string procFolder = "/proc"; ///< where the kernel tells of the machine and its processes
    std::string metrics;              ///< [address:]port for Prometheus; empty: none
    std::vector<std::string> labels;  ///< NAME=VALUE, on all metrics
    std::string screenFile;           ///< where to tell what stands where on the screen; empty: nowhere
};

/// The options, or nothing if the program is to end at once with `exitCode`: after "--help" or a mistake,
/// about which the user has been told.
std::optional<Options> parseOptions(int argc, const char* const* argv, int& exitCode);

} // namespace demo
