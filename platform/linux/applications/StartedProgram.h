#pragma once

#include <csignal>

namespace quillon {

/// For a program that is being started, in its process: no signal is held back from it, whatever
/// ProgramEnd holds back from the threads of this one.
inline void takeAllSignals()
{
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

} // namespace quillon
