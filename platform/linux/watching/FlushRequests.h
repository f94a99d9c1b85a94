#pragma once

#include "base/Mutex.h"

#include <chrono>
#include <cstdint>
#include <optional>

namespace quillon {

/// Flushes that are asked of a thread, and those who wait for them. Safe from every thread.
class FlushRequests
{
public:
    /// Counts from one.
    using Number = std::uint64_t;

    Number add() EXCLUDES(mutex_);
    /// The latest that has not been carried out, which stands for those before; absent when all
    /// have been.
    std::optional<Number> pending() const EXCLUDES(mutex_);
    /// All up to this one have been carried out.
    void done(Number number) EXCLUDES(mutex_);
    /// Ends every wait, since no flush will be carried out any more.
    void end() EXCLUDES(mutex_);
    /// Returns when that one has been carried out, at the end, or when the patience is over.
    void wait(Number number, std::optional<std::chrono::milliseconds> patience) EXCLUDES(mutex_);

private:
    mutable Mutex mutex_;
    Condition changed_;
    Number latest_ GUARDED_BY(mutex_) = 0;
    Number done_ GUARDED_BY(mutex_) = 0;
    bool ended_ GUARDED_BY(mutex_) = false;
};

} // namespace quillon
