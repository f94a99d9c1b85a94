#pragma once

#include <string>
#include <vector>

namespace quillon {

/// Opens paths as plain Return in the panel does.
struct OpenPathsCommand
{
    /// The paths, as the user typed them.
    std::vector<std::string> paths;

    /// Returns the exit status.
    int run() const;
};

} // namespace quillon
