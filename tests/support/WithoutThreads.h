#pragma once

#include "tests/support/UnprivilegedUser.h"

#include <cstdlib>
#include <functional>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quillon {

/// Returns whether something holds in a process of an ordinary user who may have no second thread.
/// It is tried in a copy of this process, which has only the calling thread.
inline bool holdsWithoutThreads(const std::function<bool()> &what)
{
    const pid_t child = ::fork();
    require(child >= 0, "a process can be started");
    if (child == 0) {
        // The limit does not count for root.
        const rlimit one{1, 1};
        if (::setrlimit(RLIMIT_NPROC, &one) != 0 ||
            (::geteuid() == 0 && ::setuid(UnprivilegedUser::ID) != 0))
            ::_exit(EXIT_FAILURE);
        ::_exit(what() ? EXIT_SUCCESS : EXIT_FAILURE);
    }
    int status = 0;
    return ::waitpid(child, &status, 0) == child && WIFEXITED(status) &&
           WEXITSTATUS(status) == EXIT_SUCCESS;
}

} // namespace quillon
