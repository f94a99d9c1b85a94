#pragma once

#include "platform/linux/watching/WatchTree.h"

#include <chrono>
#include <compare>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillon {

/// Questions that the disk has not answered. Each is asked again after a second, then after twice
/// the time, up to a minute, until it is answered. Not locked.
class RetryList
{
public:
    using Id = WatchTree::Id;
    using Clock = std::chrono::steady_clock;

    struct Question
    {
        /// NONE asks about the root whose path is the name, or about all roots without a name.
        Id folder = WatchTree::NONE;
        /// What stands at this name in the folder. Empty: what the folder holds.
        std::string name = {};

        auto operator<=>(const Question &) const = default;
    };

    /// Notes that a question was not answered.
    void add(Id folder, std::string_view name = {});
    void addRoots() { add(WatchTree::NONE); }
    void addRoot(std::string_view path) { add(WatchTree::NONE, path); }
    /// Hands over the questions that are due at that time, to be asked now.
    std::vector<Question> take(Clock::time_point now);
    /// Forgets the questions handed over that were not added again: they have been answered.
    void forgetTaken() { taken_.clear(); }
    /// Returns the questions that wait to be asked again.
    std::vector<Question> waiting() const;
    /// Returns when the next question is due: the end of time where none waits.
    Clock::time_point due() const;

private:
    struct Wait
    {
        Clock::time_point due;
        Clock::duration delay;
    };
    std::map<Question, Wait> waiting_;
    std::map<Question, Wait> taken_;
};

} // namespace quillon
