#include "platform/linux/watching/FlushRequests.h"

#include <algorithm>

namespace quillon {

FlushRequests::Number FlushRequests::add()
{
    const MutexLock lock(mutex_);
    return ++latest_;
}

std::optional<FlushRequests::Number> FlushRequests::pending() const
{
    const MutexLock lock(mutex_);
    return done_ < latest_ ? std::optional(latest_) : std::nullopt;
}

void FlushRequests::done(Number number)
{
    const MutexLock lock(mutex_);
    done_ = std::max(done_, number);
    changed_.notifyAll();
}

void FlushRequests::end()
{
    const MutexLock lock(mutex_);
    ended_ = true;
    changed_.notifyAll();
}

void FlushRequests::wait(Number number, std::optional<std::chrono::milliseconds> patience)
{
    using Clock = std::chrono::steady_clock;
    const Clock::time_point end = patience ? Clock::now() + *patience : Clock::time_point::max();
    const MutexLock lock(mutex_);
    while (done_ < number && !ended_ && Clock::now() < end)
        changed_.waitFor(mutex_, patience.value_or(std::chrono::seconds(1)));
}

} // namespace quillon
