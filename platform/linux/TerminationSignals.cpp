#include "platform/linux/TerminationSignals.h"

#include "platform/linux/ProgramEnd.h"

#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <csignal>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace quillon {

namespace {

constexpr std::array SIGNALS{SIGTERM, SIGINT, SIGHUP};

// What a signal handler may touch: a descriptor, set before the first handler is in place.
volatile std::sig_atomic_t writeEnd = -1;
std::array<struct sigaction, SIGNALS.size()> formerActions;

extern "C" void noteSignal(int)
{
    const int savedErrno = errno;
    ProgramEnd::begin();
    const char byte = 0;
    [[maybe_unused]] const auto written = write(writeEnd, &byte, 1);
    errno = savedErrno;
}

} // namespace

TerminationSignals::TerminationSignals(std::function<void()> onTermination)
{
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    readEnd_ = ends[0];
    writeEnd = ends[1];

    auto *notifier = new QSocketNotifier(readEnd_, QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this,
            [notifier, call = std::move(onTermination)] {
                notifier->setEnabled(false);
                call();
            });

    struct sigaction action
    {};
    action.sa_handler = noteSignal;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (std::size_t i = 0; i < SIGNALS.size(); ++i)
        sigaction(SIGNALS[i], &action, &formerActions[i]);
}

TerminationSignals::~TerminationSignals()
{
    if (readEnd_ < 0)
        return;
    for (std::size_t i = 0; i < SIGNALS.size(); ++i)
        sigaction(SIGNALS[i], &formerActions[i], nullptr);
    close(writeEnd);
    close(readEnd_);
    writeEnd = -1;
}

} // namespace quillon
