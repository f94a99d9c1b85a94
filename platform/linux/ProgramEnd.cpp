#include "platform/linux/ProgramEnd.h"

#include <csignal>
#include <cstdlib>
#include <ctime>

#include <unistd.h>

namespace quillon {

namespace {

using namespace std::chrono;

// What a signal handler may touch; set before the first one is in place.
timer_t timer{};
itimerspec limit{};
volatile std::sig_atomic_t isPrepared = 0;
volatile std::sig_atomic_t hasBegun = 0;

extern "C" void endNow(int)
{
    _exit(EXIT_SUCCESS);
}

/// Threads still run, which destructors of globals would pull the ground from under.
extern "C" void endUnlessBegun()
{
    if (!hasBegun)
        _exit(EXIT_SUCCESS);
}

} // namespace

ProgramEnd::ProgramEnd(milliseconds patience)
{
    std::atexit(endUnlessBegun);
    sigevent event{};
    event.sigev_notify = SIGEV_SIGNAL;
    event.sigev_signo = SIGALRM;
    if (timer_create(CLOCK_MONOTONIC, &event, &timer) != 0)
        return;
    struct sigaction action
    {};
    action.sa_handler = endNow;
    sigemptyset(&action.sa_mask);
    sigaction(SIGALRM, &action, nullptr);
    limit.it_value.tv_sec = duration_cast<seconds>(patience).count();
    limit.it_value.tv_nsec = nanoseconds(patience % 1s).count();
    isPrepared = 1;
}

void ProgramEnd::begin()
{
    if (isPrepared == 0 || hasBegun != 0)
        return;
    hasBegun = 1;
    timer_settime(timer, 0, &limit, nullptr);
}

} // namespace quillon
