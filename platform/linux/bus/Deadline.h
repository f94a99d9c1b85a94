#pragma once

#include <algorithm>
#include <chrono>

namespace quillon {

/// The time by which something has to be done. It is handed down, so that all steps together keep
/// to it.
class Deadline
{
public:
    using Clock = std::chrono::steady_clock;

    explicit Deadline(std::chrono::milliseconds fromNow) : end_(Clock::now() + fromNow) {}

    /// Returns the time that is left, which is never negative.
    std::chrono::milliseconds remaining() const
    {
        using std::chrono::milliseconds;
        const auto left = std::chrono::ceil<milliseconds>(end_ - Clock::now());
        return std::max(left, milliseconds::zero());
    }
    bool hasPassed() const { return remaining() == std::chrono::milliseconds::zero(); }
    /// Returns the earlier one of this deadline and one that is this far from now.
    Deadline atMost(std::chrono::milliseconds fromNow) const
    {
        return Deadline(std::min(remaining(), fromNow));
    }

private:
    Clock::time_point end_;
};

} // namespace quillon
