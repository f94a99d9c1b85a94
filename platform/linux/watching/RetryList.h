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

/// The questions that the disk has not answered. Each is asked again after a second, then after
/// twice the time, up to a minute, until it is answered. Not locked.
class RetryList
{
public:
    using Id = WatchTree::Id;
    using Clock = std::chrono::steady_clock;

    struct Question
    {
        /// The folder that the question is about. NONE asks about the root whose path is the name,
        /// or about all roots if the name is empty.
        Id folder = WatchTree::NONE;
        /// The question asks what is at this name in the folder or, if the name is empty, what the
        /// folder holds.
        std::string name = {};

        auto operator<=>(const Question &) const = default;
    };

    /// Notes that a question was not answered.
    void add(Id folder, std::string_view name = {});
    void addRoots() { add(WatchTree::NONE); }
    void addRoot(std::string_view path) { add(WatchTree::NONE, path); }
    /// Returns the questions that are due at that time and are asked now.
    std::vector<Question> take(Clock::time_point now);
    /// Forgets the questions that take() returned and that were not added again, since they have
    /// been answered.
    void forgetTaken() { taken_.clear(); }
    /// Returns the questions that wait to be asked again.
    std::vector<Question> waiting() const;
    /// Returns when the next question is due, which is the end of time when none is waiting.
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
