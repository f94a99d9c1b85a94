#include "platform/linux/watching/OpenQuestions.h"

#include "platform/linux/disk/FolderProbe.h"

#include <algorithm>
#include <utility>

namespace quillon {

namespace {

using namespace std::chrono_literals;

constexpr OpenQuestions::Clock::duration SHORTEST = 1s;
constexpr OpenQuestions::Clock::duration LONGEST = 60s;

/// Determines by their stamps whether folders without a watch have moved since they were entered.
/// Asks for each stamp once.
class StampCheck
{
public:
    explicit StampCheck(const WatchedFolders &folders) : folders_(folders) {}

    /// Returns whether the folder itself or one above it may have moved.
    bool hasMovedAbove(WatchTree::Id id)
    {
        for (; id != WatchTree::NONE; id = folders_.tree().parent(id))
            if (hasMoved(id))
                return true;
        return false;
    }

private:
    bool hasMoved(WatchTree::Id id)
    {
        const auto *known = folders_.unwatched(id);
        if (known == nullptr || known->isClosed)
            return false;
        const auto [answer, isNew] = answers_.try_emplace(id, false);
        if (isNew) {
            const FolderProbe now =
                probeFolder(folders_.tree().path(id), folders_.tree().isRoot(id));
            answer->second = !known->isTrusted || known->stamp != now.stamp;
        }
        return answer->second;
    }

    const WatchedFolders &folders_;
    std::unordered_map<WatchTree::Id, bool> answers_;
};

} // namespace

// The next flush

void OpenQuestions::ask(Id folder, std::string_view name)
{
    if (folder == WatchTree::NONE) {
        areRootsAsked_ = true;
        return;
    }
    auto &names = names_[folder];
    if (!names.contains(name))
        names.emplace(name);
}

bool OpenQuestions::isAsked(Id folder, std::string_view name) const
{
    const auto names = names_.find(folder);
    return names != names_.end() && names->second.contains(name);
}

std::vector<OpenQuestions::Question> OpenQuestions::take()
{
    std::vector<Question> questions;
    for (const auto &[folder, names] : names_)
        for (const std::string &name : names)
            questions.push_back({folder, name});
    names_.clear();
    std::ranges::stable_sort(questions, {},
                             [this](const Question &one) { return tree_.depth(one.folder); });
    return questions;
}

// Later flushes

void OpenQuestions::askLater(Id folder, std::string_view name)
{
    Question question{folder, std::string(name)};
    const auto before = retried_.find(question);
    const Clock::duration delay =
        before == retried_.end() ? SHORTEST : std::min(2 * before->second.delay, LONGEST);
    waiting_.try_emplace(std::move(question), Wait{Clock::now() + delay, delay});
}

OpenQuestions::Clock::time_point OpenQuestions::due() const
{
    Clock::time_point earliest = Clock::time_point::max();
    for (const auto &[question, wait] : waiting_)
        earliest = std::min(earliest, wait.due);
    return earliest;
}

void OpenQuestions::askDue(Clock::time_point now)
{
    for (auto next = waiting_.begin(); next != waiting_.end();) {
        const auto waiting = next++;
        if (waiting->second.due > now)
            continue;
        ask(waiting->first.folder, waiting->first.name);
        retried_.insert(waiting_.extract(waiting));
    }
}

// Questions that were asked

void OpenQuestions::noteAsked(Id folder, std::string_view name)
{
    asked_.push_back({folder, std::string(name)});
}

void OpenQuestions::reviewAsked(bool wereEventsLost)
{
    const auto asked = std::exchange(asked_, {});
    if (asked.empty())
        return;
    const bool distrustsAll = wereEventsLost || areRootsAsked_;
    const std::unordered_set<Id> moved = this->moved();
    const std::unordered_set<Id> unknown = unanswered();
    StampCheck stamps(folders_);
    for (const auto &[folder, name] : asked) {
        if (!tree_.isLive(folder))
            continue; // the question about the folder above covers this one
        if (distrustsAll || isBelowAny(folder, moved))
            ask(folder, name);
        else if (isBelowAny(folder, unknown) || stamps.hasMovedAbove(folder))
            askLater(folder, name);
    }
}

void OpenQuestions::reviewArmed(bool wereEventsLost)
{
    const bool distrustsAll = wereEventsLost || areRootsAsked_;
    const std::unordered_set<Id> moved = this->moved();
    if (!distrustsAll && moved.empty())
        return;
    for (Id id = 1; id < tree_.idLimit(); ++id)
        if (tree_.isLive(id) && (distrustsAll || isBelowAny(id, moved)))
            ask(id);
}

/// Returns the folders in whose place something has happened since the flush began.
std::unordered_set<WatchTree::Id> OpenQuestions::moved() const
{
    std::unordered_set<Id> found;
    for (const auto &[folder, names] : names_)
        for (const std::string &name : names)
            if (const Id id = tree_.find(folder, name); id != WatchTree::NONE)
                found.insert(id);
    return found;
}

/// Returns the watched folders for which the disk did not say whether they are still in their
/// place. For the other folders their stamps say that.
std::unordered_set<WatchTree::Id> OpenQuestions::unanswered() const
{
    std::unordered_set<Id> found;
    for (const auto &[question, wait] : waiting_)
        if (const Id id = tree_.find(question.folder, question.name);
            id != WatchTree::NONE && folders_.unwatched(id) == nullptr)
            found.insert(id);
    return found;
}

bool OpenQuestions::isBelowAny(Id id, const std::unordered_set<Id> &folders) const
{
    if (folders.empty())
        return false;
    for (; id != WatchTree::NONE; id = tree_.parent(id))
        if (folders.contains(id))
            return true;
    return false;
}

} // namespace quillon
