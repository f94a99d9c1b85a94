#pragma once

#include <csignal>

namespace quillon {

/// Unblocks all signals in the process of a program that is being started, since ProgramEnd blocks
/// some of them in the threads of this one.
inline void takeAllSignals()
{
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

} // namespace quillon
