#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

/// Reading and writing of whole files, and the folders in which a user's programs keep theirs. Nothing here
/// throws: files under /proc vanish between listing and reading, and disks fill up.
namespace demo {

/// Empty if the file can't be read.
std::optional<std::string> readText(const std::string& path);

/// Puts `text` in the place of the file: writes a new file beside it and renames that, so that a reader finds
/// the old text or the new one and never a part. Makes the folders. The result is what went wrong, empty for
/// nothing.
std::string replaceText(const std::filesystem::path& path, const std::string& text);

/// The names of a folder's entries, in no order; none if it can't be read.
std::vector<std::string> entriesOf(const std::string& folder);
/// The same for entries whose names are numbers, ascending: processes and threads under /proc.
std::vector<int> numbersIn(const std::string& folder);

/// `chosen`, or if that is empty the program's folder under `variable` (XDG_CONFIG_HOME, XDG_STATE_HOME), or
/// if that isn't set either, under `fallback` in the home folder.
std::filesystem::path userFolder(const std::string& chosen, const char* variable, const char* fallback);

/// A path as one reads it: "~" for the user's home folder.
std::string shortPath(const std::filesystem::path& path);

} // namespace demo
