#pragma once

#include "platform/linux/disk/Descriptor.h"

namespace quillon {

/// Makes this process the only instance of the user on its display, in sessions without a bus that
/// would know of another one. Its claim ends with the process. Without a session bus, a second
/// instance can be noticed in this way but not be reached.
class SoleInstance
{
public:
    /// Returns false while another process holds the claim. Returns true also when that cannot be
    /// determined.
    bool claim();

private:
    Descriptor socket_;
};

} // namespace quillon
