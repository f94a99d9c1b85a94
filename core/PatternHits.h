#pragma once

#include <cstddef>
#include <stop_token>
#include <string>
#include <vector>

namespace quillon {

struct PathIndex;

/// The paths that an exclude pattern would remove from the index.
struct PatternHits
{
    /// The number of paths that would be removed.
    std::size_t hits = 0;
    /// The number of indexed paths.
    std::size_t paths = 0;
    /// The first few paths that would be removed while the folder above them stays.
    std::vector<std::string> examples;
    /// True when only the folders to search themselves would stay.
    bool isEverything = false;
};

/// Checks every indexed path and lets writers run meanwhile. The include folders are absolute
/// paths, ascending. Files that are indexed count like folders.
PatternHits patternHits(const PathIndex &index, const std::string &pattern,
                        const std::vector<std::string> &includeFolders,
                        const std::stop_token &stop = {});

} // namespace quillon
