#pragma once

namespace quillon {

class Output;

/// Prints what the running application knows about itself.
struct StatusCommand
{
    bool json = false;

    /// Returns the exit status.
    int run(Output &output) const;
};

} // namespace quillon
