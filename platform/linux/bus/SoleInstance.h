#pragma once

#include "platform/linux/disk/Descriptor.h"

namespace quillon {

/// Makes this process the only instance of the user on its display, in sessions without a bus that
/// would know of another one. Nothing of it outlives the process. Without a session bus a second
/// instance can be noticed in this way and not be reached.
class SoleInstance
{
public:
    /// Returns false while another process has claimed it. True also where that cannot be found
    /// out.
    bool claim();

private:
    Descriptor socket_;
};

} // namespace quillon
