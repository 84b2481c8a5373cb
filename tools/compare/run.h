#pragma once

#include "progress.h"
#include "samples.h"

#include <string>
#include <vector>

namespace compare {

/// Something that can't be used, and why: "cut at line 17".
struct Problem {
    std::string path;
    std::string what;
};

/// The snapshots that a user's path stands for: a file itself, or all files of a folder, by name. A folder of
/// several runs stands for none of them.
std::vector<std::string> snapshotsOf(const std::string& path, std::vector<Problem>& problems);

/// Adds the snapshot to the side. One that isn't whole leaves nothing there and is a problem.
void readSnapshot(const std::string& file, Paths& paths, Samples& side, Progress& progress,
                  std::vector<Problem>& problems);

} // namespace compare
