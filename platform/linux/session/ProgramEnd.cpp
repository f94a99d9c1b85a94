#include "platform/linux/session/ProgramEnd.h"

#include <QCoreApplication>
#include <QMetaObject>

#include <array>
#include <atomic>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <system_error>
#include <thread>

#include <unistd.h>

// The kernel gives a signal to the main thread whenever it can. While the main thread hangs on a
// disk, in a call that no signal interrupts, no handler would run. So every thread blocks the
// signals, and a thread that does nothing else waits for them.

namespace quillon {

namespace {

using namespace std::chrono;

constexpr std::array SIGNALS{SIGTERM, SIGINT, SIGHUP};

// These stay as they are until the process is gone, since threads may run until its very end.
timer_t timer{};
itimerspec limit{};
bool isPrepared = false;
std::atomic<bool> hasBegun = false;
std::atomic<bool> isLeaving = false;

/// Threads are still running, and the destructors of globals would destroy what they use.
extern "C" void endUnlessExpected()
{
    if (!hasBegun && !isLeaving)
        _exit(EXIT_SUCCESS);
}

sigset_t awaitedSignals()
{
    sigset_t awaited;
    sigemptyset(&awaited);
    for (const int each : SIGNALS)
        sigaddset(&awaited, each);
    sigaddset(&awaited, SIGALRM);
    return awaited;
}

[[noreturn]] void waitForSignals(QObject &mainThread)
{
    const sigset_t awaited = awaitedSignals();
    for (int number = 0; true;) {
        sigwait(&awaited, &number);
        if (number == SIGALRM)
            _exit(EXIT_SUCCESS);
        ProgramEnd::begin();
        QMetaObject::invokeMethod(
            &mainThread, [] { QCoreApplication::exit(); }, Qt::QueuedConnection);
    }
}

} // namespace

ProgramEnd::ProgramEnd(milliseconds patience)
{
    std::atexit(endUnlessExpected);
    sigevent event{};
    event.sigev_notify = SIGEV_SIGNAL;
    event.sigev_signo = SIGALRM;
    if (timer_create(CLOCK_MONOTONIC, &event, &timer) != 0)
        return;
    limit.it_value.tv_sec = duration_cast<seconds>(patience).count();
    limit.it_value.tv_nsec = nanoseconds(patience % 1s).count();
    isPrepared = true;

    const sigset_t awaited = awaitedSignals();
    pthread_sigmask(SIG_BLOCK, &awaited, nullptr);
    // The object and the thread stay until the process ends.
    static QObject *const mainThread = new QObject;
    try {
        std::thread([] { waitForSignals(*mainThread); }).detach();
    } catch (const std::system_error &) {
        // Without a thread that waits for them, the signals end the program as usual.
        pthread_sigmask(SIG_UNBLOCK, &awaited, nullptr);
    }
}

ProgramEnd::~ProgramEnd()
{
    isLeaving = true;
}

void ProgramEnd::begin()
{
    if (isPrepared && !hasBegun.exchange(true))
        timer_settime(timer, 0, &limit, nullptr);
}

} // namespace quillon
