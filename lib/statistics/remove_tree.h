#pragma once

#include <filesystem>
#include <system_error>

namespace statistics {

/// Deletes a file, or a directory with all below it. A link is deleted, and never what it leads to. Nothing
/// there is no error.
std::error_code removeTree(const std::filesystem::path& path);

} // namespace statistics
