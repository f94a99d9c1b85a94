#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace quillon {

class Output;

/// Crawls folders and prints what matches a query, best first.
struct FindCommand
{
    std::string query;
    /// As typed; none means those of the settings, or the home folder.
    std::vector<std::string> folders;
    std::size_t top = 25;
    bool nulSeparated = false;
    bool json = false;

    /// Returns the exit status.
    int run(Output &output) const;
};

} // namespace quillon
