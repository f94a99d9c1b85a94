#pragma once

#include <string>
#include <vector>

namespace quillon {

/// Counts that paths were opened, as the panel counts it.
struct UseCommand
{
    /// The paths, as the user typed them.
    std::vector<std::string> paths;

    /// Returns the exit status.
    int run() const;
};

} // namespace quillon
