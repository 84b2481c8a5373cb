#include "user_folders.h"

#include <cstdlib>
#include <optional>
#include <stdexcept>

namespace demo {

namespace fs = std::filesystem;

namespace {

constexpr const char* kFolderName = "statistics-demo";

/// A relative path in such a variable is to be ignored: it would lie in whatever folder is the current one.
std::optional<fs::path> folderIn(const char* variable)
{
    const char* const folder = std::getenv(variable);
    return folder && *folder == '/' ? std::optional<fs::path>(folder) : std::nullopt;
}

fs::path userFolder(const std::string& chosen, const char* variable, const char* fallback, const char* option)
{
    if (!chosen.empty())
        return chosen;
    if (const auto base = folderIn(variable))
        return *base / kFolderName;
    const auto home = folderIn("HOME");
    if (!home)
        throw std::runtime_error(std::string("HOME isn't set: name a folder with ") + option);
    return *home / fallback / kFolderName;
}

} // namespace

fs::path configFolder(const std::string& chosen)
{
    return userFolder(chosen, "XDG_CONFIG_HOME", ".config", "--config");
}

fs::path stateFolder(const std::string& chosen)
{
    return userFolder(chosen, "XDG_STATE_HOME", ".local/state", "--state");
}

std::string shortPath(const fs::path& path)
{
    const auto home = folderIn("HOME");
    const fs::path inHome = home ? path.lexically_relative(*home) : fs::path();
    return inHome.empty() || *inHome.begin() == ".." ? path.string() : (fs::path("~") / inHome).string();
}

} // namespace demo
