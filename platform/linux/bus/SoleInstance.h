#pragma once

#include "platform/linux/disk/Descriptor.h"

namespace quillon {

/// Makes this process the only instance of the user on its display that no session bus leads to.
/// Its claim ends with the process. A second instance can be noticed in this way but not be
/// reached.
class SoleInstance
{
public:
    /// Returns false while another process holds the claim. Returns true also when that cannot be
    /// determined.
    bool claim();
    /// Has the process that holds the claim end as by SIGTERM, and waits until it has ended, at
    /// most two seconds. Does nothing when there is none, or when it is another user's.
    static void endOther();

private:
    Descriptor socket_;
};

} // namespace quillon
