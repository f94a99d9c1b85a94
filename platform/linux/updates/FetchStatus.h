#pragma once

namespace quillon {

/// How the program fetch-feed ends.
enum class FetchStatus : int
{
    /// The whole body is on its standard output.
    fetched = 0,
    /// Called wrongly.
    misused = 2,
    // As the values of NoUpdate:
    unreachable = 3,
    tooSlow = 4,
    insecure = 5,
    refused = 6,
};

} // namespace quillon
