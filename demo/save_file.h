#pragma once

#include <filesystem>
#include <string>

/// Writing of whole files. Nothing here throws. A result is what went wrong, empty for nothing.
namespace demo {

/// Puts `text` in the place of the file: writes a new file beside it and renames that, so that a reader finds
/// the old text or the new one and never a part. Makes the folders. A link is followed, and the file keeps
/// its mode.
std::string replaceText(const std::filesystem::path& path, const std::string& text);

enum class EOld { Goes, StaysAside }; ///< aside: under its name with ".bak" behind it

/// The same for what a user wants to keep: the text is on the disk before it takes the old one's place.
std::string saveText(const std::filesystem::path& path, const std::string& text, EOld old = EOld::Goes);

/// Removes what programs that were killed while they saved left in the folder. Of programs that are saving
/// now nothing is taken.
void sweepLeftovers(const std::filesystem::path& folder);

} // namespace demo
