#pragma once

#include <filesystem>
#include <string>

/// The folders in which a user's programs keep their files.
namespace demo {

/// Where presets are kept: `chosen`, or if that is empty, the program's folder under XDG_CONFIG_HOME or
/// ~/.config. Without a home folder it throws `std::runtime_error` with a text for the user.
std::filesystem::path configFolder(const std::string& chosen);
/// Where snapshots and the like are kept, by the same rule: XDG_STATE_HOME or ~/.local/state.
std::filesystem::path stateFolder(const std::string& chosen);

/// A path as one reads it: "~" for the user's home folder.
std::string shortPath(const std::filesystem::path& path);

} // namespace demo
