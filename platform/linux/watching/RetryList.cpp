#include "platform/linux/watching/RetryList.h"

#include <algorithm>

namespace quillon {

namespace {

using namespace std::chrono_literals;

constexpr RetryList::Clock::duration SHORTEST = 1s;
constexpr RetryList::Clock::duration LONGEST = 60s;

} // namespace

void RetryList::add(Id folder, std::string_view name)
{
    Question question{folder, std::string(name)};
    const auto before = taken_.find(question);
    const Clock::duration delay =
        before == taken_.end() ? SHORTEST : std::min(2 * before->second.delay, LONGEST);
    waiting_.try_emplace(std::move(question), Wait{Clock::now() + delay, delay});
}

std::vector<RetryList::Question> RetryList::take(Clock::time_point now)
{
    std::vector<Question> due;
    for (auto next = waiting_.begin(); next != waiting_.end();) {
        const auto waiting = next++;
        if (waiting->second.due > now)
            continue;
        due.push_back(waiting->first);
        taken_.insert(waiting_.extract(waiting));
    }
    return due;
}

std::vector<RetryList::Question> RetryList::waiting() const
{
    std::vector<Question> questions;
    for (const auto &[question, wait] : waiting_)
        questions.push_back(question);
    return questions;
}

RetryList::Clock::time_point RetryList::due() const
{
    Clock::time_point earliest = Clock::time_point::max();
    for (const auto &[question, wait] : waiting_)
        earliest = std::min(earliest, wait.due);
    return earliest;
}

} // namespace quillon
