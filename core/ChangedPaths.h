#pragma once

#include <span>
#include <string>
#include <vector>

namespace quillon {

/// Changed paths that are brought up to date together.
struct ChangedPaths
{
    /// The folder that holds all the names. Without names, this path has itself changed. It has no
    /// slash at its end.
    std::string path;
    std::vector<std::string> names = {};

    /// Groups the paths that are in one folder, some hundred at most. An include folder and "/" are
    /// never grouped.
    static std::vector<ChangedPaths> together(std::span<const std::string> paths,
                                              const std::vector<std::string> &roots);
};

} // namespace quillon
