#pragma once

#include <filesystem>
#include <string>

/// The folders in which a user's programs keep their files.
namespace demo {

/// `chosen`, or if that is empty the program's folder under `variable` (XDG_CONFIG_HOME, XDG_STATE_HOME), or
/// if that isn't set either, under `fallback` in the home folder. Without a home folder it throws
/// `std::runtime_error` with a text for the user, which names `option`.
std::filesystem::path userFolder(const std::string& chosen, const char* variable, const char* fallback,
                                 const char* option);

/// A path as one reads it: "~" for the user's home folder.
std::string shortPath(const std::filesystem::path& path);

} // namespace demo
