#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

/// Reading of whole files and folders. Nothing here throws: files under /proc vanish between listing and
/// reading.
namespace demo {

/// For files that the kernel writes. Empty if the file can't be read.
std::optional<std::string> readText(const std::string& path);

/// A user's file, or why there is no text of it.
struct FileText {
    std::string text;
    std::string problem;    ///< empty for none; goes behind the file's name: "is no regular file"
    bool isRegular = false; ///< so that another may take its place
};

/// Reads regular files of at most `most` bytes. Whatever else a folder may hold (a pipe without a writer, a
/// link to a device without an end) is told and not opened.
FileText readRegularFile(const std::filesystem::path& path, std::size_t most);

/// True for a link to nothing, too, and for what may not be looked at.
bool isThere(const std::filesystem::path& path);

/// The names of a folder's entries, in no order. What kept them from being read goes to `problem`; a folder
/// that isn't there holds nothing.
std::vector<std::string> entriesOf(const std::filesystem::path& folder, std::string* problem = nullptr);
/// The same for entries whose names are numbers, ascending: processes and threads under /proc.
std::vector<int> numbersIn(const std::string& folder);

} // namespace demo
