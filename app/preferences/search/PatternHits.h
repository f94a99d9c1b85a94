#pragma once

#include <cstddef>
#include <stop_token>
#include <string>
#include <vector>

namespace quillon {

struct PathIndex;

/// What an exclude pattern would take out of the index.
struct PatternHits
{
    /// Paths that would go.
    std::size_t hits = 0;
    /// Paths indexed.
    std::size_t paths = 0;
    /// The first few paths that would go without one above them going.
    std::vector<std::string> examples;
    /// Nothing but the folders to search themselves would stay.
    bool isEverything = false;
};

/// Looks at every path indexed, letting writers in meanwhile. The include folders are absolute
/// paths, ascending. Files that are indexed count like folders.
PatternHits patternHits(const PathIndex &index, const std::string &pattern,
                        const std::vector<std::string> &includeFolders,
                        const std::stop_token &stop = {});

} // namespace quillon
