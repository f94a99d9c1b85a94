#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace quillon {

class Output;

/// Keeps an index of some folders current and prints it whenever standard input asks for it, until
/// that ends.
struct WatchCommand
{
    /// The folders to watch, as typed.
    std::vector<std::string> folders;
    /// Seconds from a change to its being told, and from there to the update.
    double latency = 10.0;
    std::chrono::milliseconds window{3000};
    /// From one look at the folders that are not watched to the next.
    std::chrono::milliseconds sweep{60000};
    /// The most watches; absent: half of what the system grants the user.
    std::optional<std::size_t> budget;
    bool nulSeparated = false;

    /// Returns the exit status.
    int run(Output &output) const;
};

} // namespace quillon
