#pragma once

#include "pattern.h"

#include <statistics/preset.h>

#include <string>
#include <utility>
#include <vector>

namespace compare {

/// The limits of a preset file by path. A key of the file is a path or a pattern, unless `keyPaths` has a
/// pattern for it: hosts name their limits as they like, and snapshots hold paths only. The result is what is
/// wrong with the file, empty for nothing.
std::string readLimits(const std::string& file,
                       const std::vector<std::pair<std::string, std::string>>& keyPaths,
                       Rules<statistics::Limit>& limits);

} // namespace compare
