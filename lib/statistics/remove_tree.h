#pragma once

#include <filesystem>
#include <system_error>

namespace statistics {

/// Deletes a directory with all below it. A link, `path` itself included, is deleted and never what it leads
/// to. What else stands at `path`, a file for instance, stays and is an error. So is a directory that
/// something is mounted on, here or below: it stays as it is. Whatever is gone already, as another process
/// may be deleting, too, is none.
std::error_code removeTree(const std::filesystem::path& path);

} // namespace statistics
