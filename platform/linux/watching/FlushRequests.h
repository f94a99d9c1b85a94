#pragma once

#include "base/Mutex.h"

#include <chrono>
#include <cstdint>
#include <optional>

namespace quillon {

/// The flushes that other threads ask for, and the threads that wait for them. Safe from every
/// thread.
class FlushRequests
{
public:
    /// Flushes are numbered from one.
    using Number = std::uint64_t;

    Number add() EXCLUDES(mutex_);
    /// Returns the latest flush that has not been carried out, which stands for the earlier ones
    /// too, or nothing when all have been.
    std::optional<Number> pending() const EXCLUDES(mutex_);
    /// Says that all flushes up to this one have been carried out.
    void done(Number number) EXCLUDES(mutex_);
    /// Ends every wait, since no flush will be carried out any more.
    void end() EXCLUDES(mutex_);
    /// Waits until this flush has been carried out, until end(), or until the patience is over.
    void wait(Number number, std::optional<std::chrono::milliseconds> patience) EXCLUDES(mutex_);

private:
    mutable Mutex mutex_;
    Condition changed_;
    Number latest_ GUARDED_BY(mutex_) = 0;
    Number done_ GUARDED_BY(mutex_) = 0;
    bool ended_ GUARDED_BY(mutex_) = false;
};

} // namespace quillon
