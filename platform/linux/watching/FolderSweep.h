#pragma once

#include "platform/linux/watching/FolderVerifier.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <vector>

namespace quillon {

/// Looks at folders by their stamps: now and then at those without a watch, and at all of them when
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

    /// The time of the next look; the end of time when nothing has to be looked at.
    Clock::time_point due() const;
    /// Goes on with a sweep, or begins one, for a few milliseconds. True when it has reached its
    /// end.
    bool goOn(Clock::time_point now);
    /// Looks at every unwatched folder at once.
    void lookAtAll();
    /// Looks at every folder; lists those that have changed since then, or all of them.
    void afterLoss(std::optional<std::int64_t> since, std::uint32_t flags,
                   const std::function<bool()> &goesOn);

private:
    void begin();
    void lookAt(Id id);

    WatchedFolders &folders_;
    FolderVerifier &verifier_;
    const Pace pace_;
    /// Still to be looked at in this sweep, in reverse.
    std::vector<Id> left_;
    Clock::duration spent_{};
    Clock::time_point next_{};
};

} // namespace quillon
