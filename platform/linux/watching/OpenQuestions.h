#pragma once

#include "platform/linux/watching/WatchedFolders.h"

#include <chrono>
#include <compare>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace quillon {

/// The questions about the disk that the next flush asks, and those that the disk has not answered.
/// Each of these is asked again after a second, then after twice the time, up to a minute, until it
/// is answered. Not locked.
///
/// Every question goes by a path. Where a folder on the way was somewhere else at that moment, or
/// another one in its place, the answer was about something else. So the questions that were asked
/// are kept until reviewAsked().
class OpenQuestions
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

    explicit OpenQuestions(const WatchedFolders &folders) : folders_(folders), tree_(folders.tree())
    {}

    /// Has the next flush ask. A question about one root has it ask about all of them.
    void ask(Id folder, std::string_view name = {});
    void askAboutRoots() { ask(WatchTree::NONE); }
    /// Returns whether the next flush asks about this name in a folder.
    bool isAsked(Id folder, std::string_view name) const;
    /// Returns whether the next flush has nothing to ask.
    bool isEmpty() const { return !areRootsAsked_ && names_.empty(); }

    /// Has a flush ask later, since the disk did not answer.
    void askLater(Id folder, std::string_view name = {});
    void askAboutRootsLater() { askLater(WatchTree::NONE); }
    /// Returns when the next of these questions is due, which is the end of time when none is.
    Clock::time_point due() const;

    /// Adds the questions that are due at that time to those of the next flush.
    void askDue(Clock::time_point now);
    /// Returns whether the flush that begins asks about the roots, and does not ask again.
    bool takeRoots() { return std::exchange(areRootsAsked_, false); }
    /// Returns what the flush that begins asks about folders, from the roots down.
    std::vector<Question> take();
    /// Forgets the questions of askDue() that were not left open again.
    void forgetAnswered() { retried_.clear(); }

    /// Notes that a question was asked.
    void noteAsked(Id folder, std::string_view name = {});
    /// Opens the questions again that may have been answered for another folder: those below
    /// folders that have moved by the events so far or by their stamps, and those below folders of
    /// which nobody knows whether another one is in their place. Distrusts all answers when events
    /// were lost or the roots are in question.
    void reviewAsked(bool wereEventsLost);
    /// Has the next flush list each folder that has moved since its watch was requested, and
    /// everything below it. Every watch of a crawl's folders is requested by a path.
    void reviewArmed(bool wereEventsLost);

private:
    struct Wait
    {
        Clock::time_point due;
        Clock::duration delay;
    };

    std::unordered_set<Id> moved() const;
    std::unordered_set<Id> unanswered() const;
    bool isBelowAny(Id id, const std::unordered_set<Id> &folders) const;

    const WatchedFolders &folders_;
    const WatchTree &tree_;
    bool areRootsAsked_ = false;
    std::unordered_map<Id, std::set<std::string, std::less<>>> names_;
    std::map<Question, Wait> waiting_;
    /// The questions of askDue(), with the time that each has waited.
    std::map<Question, Wait> retried_;
    std::vector<Question> asked_;
};

} // namespace quillon
