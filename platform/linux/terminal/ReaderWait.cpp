#include "platform/linux/terminal/ReaderWait.h"

#include "base/Require.h"

#include <array>
#include <cerrno>

#include <poll.h>
#include <sys/eventfd.h>

namespace quillon {

ReaderWait::ReaderWait(std::FILE *stream)
    : stream_(::fileno(stream)), end_(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC))
{
    require(static_cast<bool>(end_), "an event descriptor can be made");
}

void ReaderWait::await() const
{
    // The kernel reports a closed end whether or not it is asked for.
    std::array<pollfd, 2> waited{pollfd{.fd = stream_, .events = 0, .revents = 0},
                                 pollfd{.fd = end_.get(), .events = POLLIN, .revents = 0}};
    while (::poll(waited.data(), waited.size(), -1) < 0 && errno == EINTR) {
    }
}

void ReaderWait::end() const
{
    ::eventfd_write(end_.get(), 1);
}

} // namespace quillon
