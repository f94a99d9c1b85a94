#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace quillon {

class Output;

/// Shows the panel in the terminal and prints the path that the user chooses.
struct PickCommand
{
    /// The words of the query at first, which are joined by blanks.
    std::vector<std::string> words;
    /// The lines to use below the cursor. Without it, the whole screen is used.
    std::optional<std::size_t> height;
    /// If true and it is clear what the query means, nothing is shown.
    bool best = false;
    bool nulSeparated = false;

    /// Returns the exit status.
    int run(Output &output) const;
};

} // namespace quillon
