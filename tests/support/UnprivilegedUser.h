#pragma once

#include "base/Require.h"

#include <unistd.h>

namespace quillon {

/// When the tests run as root, runs a scope as a user without rights.
class UnprivilegedUser
{
public:
    static constexpr uid_t ID = 65534;

    UnprivilegedUser()
    {
        if (wasRoot_)
            require(seteuid(ID) == 0, "root can become another user");
    }
    UnprivilegedUser(const UnprivilegedUser &) = delete;
    UnprivilegedUser &operator=(const UnprivilegedUser &) = delete;
    ~UnprivilegedUser()
    {
        if (wasRoot_)
            require(seteuid(0) == 0, "root comes back");
    }

private:
    bool wasRoot_ = geteuid() == 0;
};

} // namespace quillon
