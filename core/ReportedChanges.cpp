#include "core/ReportedChanges.h"

#include <algorithm>
#include <utility>

namespace quillon {

namespace {

constexpr std::chrono::milliseconds FIRST_ASK_AGAIN_DELAY{1'000};
/// Each delay is twice as long as the one before, up to this one.
constexpr std::chrono::milliseconds LONGEST_ASK_AGAIN_DELAY{3'600'000};
/// An update that waits for a disk delays the updates of other disks. So the next update of its
/// paths waits this many times as long as this one took.
constexpr int REST_AFTER_UPDATE = 3;

} // namespace

void ReportedChanges::watchedFoldersChanged(const std::vector<std::string> &paths,
                                            const std::stop_token &stop)
{
    if (hooks_.onReport)
        std::ranges::for_each(paths, hooks_.onReport);
    if (stop != stop_) {
        stop_ = stop;
        waiting_.clear();
    }
    updateAndAskAgain(paths, stop, FIRST_ASK_AGAIN_DELAY);
}

void ReportedChanges::updateAndAskAgain(const std::vector<std::string> &paths,
                                        const std::stop_token &stop,
                                        std::chrono::milliseconds delay)
{
    const auto begin = std::chrono::steady_clock::now();
    const std::vector<std::string> unanswered = hooks_.update(paths, stop);
    if (unanswered.empty() || stop.stop_requested())
        return;
    ++latest_;
    for (const std::string &path : unanswered)
        waiting_.insert_or_assign(path, latest_);
    const auto took =
        std::chrono::ceil<std::chrono::milliseconds>(std::chrono::steady_clock::now() - begin);
    eventQueue_.postDelayed(std::max(delay, REST_AFTER_UPDATE * took),
                            [this, delay, question = latest_, stop] {
                                if (!stop.stop_requested())
                                    updateAndAskAgain(takeWaiting(question), stop,
                                                      std::min(2 * delay, LONGEST_ASK_AGAIN_DELAY));
                            });
}

/// Returns the paths of a question that no later question has taken over.
std::vector<std::string> ReportedChanges::takeWaiting(std::uint64_t question)
{
    std::vector<std::string> paths;
    std::erase_if(waiting_, [&](const auto &waiting) {
        if (waiting.second == question)
            paths.push_back(waiting.first);
        return waiting.second == question;
    });
    return paths;
}

} // namespace quillon
