#pragma once

#include "platform/linux/watching/FolderVerifier.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <vector>

namespace quillon {

/// Checks folders by their stamps: from time to time those without a watch, and all of them when
/// events were lost. Not locked.
class FolderSweep
{
public:
    using Id = WatchTree::Id;
    using Clock = std::chrono::steady_clock;

    struct Pace
    {
        Clock::duration interval = std::chrono::seconds(60);
        Clock::duration longest = std::chrono::hours(24);
    };

    FolderSweep(WatchedFolders &folders, FolderVerifier &verifier, Pace pace)
        : folders_(folders), verifier_(verifier), pace_(pace)
    {}

    /// Returns the time of the next check, which is the end of time when there is nothing to check.
    Clock::time_point due() const;
    /// Continues a sweep, or begins one, for a few milliseconds. Returns true when the sweep has
    /// come to its end.
    bool goOn(Clock::time_point now);
    /// Checks every unwatched folder at once.
    void checkAll();
    /// Checks every folder. Lists those that have changed since that time, or all of them if no
    /// time is given.
    void afterLoss(std::optional<std::int64_t> since, std::uint32_t flags,
                   const std::function<bool()> &goesOn);

private:
    void begin();
    void checkNext();
    void check(Id id);

    WatchedFolders &folders_;
    FolderVerifier &verifier_;
    const Pace pace_;
    /// The folders that this sweep has still to check, in reverse order.
    std::vector<Id> left_;
    Clock::duration spent_{};
    Clock::time_point next_{};
};

} // namespace quillon
