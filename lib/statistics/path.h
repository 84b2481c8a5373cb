#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace statistics {

/// A path is the names of the items from the first level of the tree down, joined by this. A name that holds
/// it can be shown and read but not found by its path.
constexpr char kPathSeparator = '/';

/// Goes one level down. Names on an empty path stand alone.
inline void appendName(std::string& path, std::string_view name)
{
    if (!path.empty())
        path += kPathSeparator;
    path += name;
}

/// Takes the first name off a path, with the separator behind it.
inline std::string_view takeName(std::string_view& path)
{
    const std::string_view name = path.substr(0, path.find(kPathSeparator));
    path.remove_prefix(std::min(name.size() + 1, path.size()));
    return name;
}

} // namespace statistics
