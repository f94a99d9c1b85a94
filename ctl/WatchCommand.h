#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace quillon {

class Output;

/// Keeps an index of some folders current. Prints what comes and goes until nobody reads it any
/// more, or the index whenever standard input asks for it, until standard input ends.
struct WatchCommand
{
    /// The folders to watch, as the user typed them.
    std::vector<std::string> folders;
    /// The seconds from a change to its report.
    double latency = 10.0;
    /// The time from a report to the update of the index.
    std::chrono::milliseconds window{3000};
    /// The time between two checks of the folders that are not watched.
    std::chrono::milliseconds sweep{60000};
    /// The most watches. If absent, half of what the system grants the user.
    std::optional<std::size_t> budget;
    /// If true, hidden folders are indexed too, whatever the settings say.
    bool withHidden = false;
    /// If true, the index is printed, and not the changes.
    bool dumps = false;
    /// If true, what is printed ends with NUL. Only the index is printed so.
    bool nulSeparated = false;

    /// Returns the exit status.
    int run(Output &output) const;
};

} // namespace quillon
