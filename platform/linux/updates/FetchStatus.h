#pragma once

namespace quillon {

/// The exit statuses of the program fetch-feed.
enum class FetchStatus : int
{
    /// The whole body was written to standard output.
    fetched = 0,
    /// The arguments were wrong.
    misused = 2,
    // These mean the same as the values of NoUpdate.
    unreachable = 3,
    tooSlow = 4,
    insecure = 5,
    refused = 6,
};

} // namespace quillon
