#pragma once

#include "base/TaskQueue.h"
#include "indexing/SearchBaseWatcher.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

namespace quillon {

/// Has the paths that the watcher reports brought up to date, and those for which a file system did
/// not answer asked about again, soon at first and then less and less often.
class ReportedChanges final : public SearchBaseWatcherDelegate
{
public:
    struct Hooks
    {
        /// Receives each reported path before its update; may be null.
        std::function<void(const std::string &path)> onReport;
        /// Brings the paths up to date and returns those that did not answer.
        std::function<std::vector<std::string>(std::span<const std::string> paths,
                                               const std::stop_token &stop)>
            update;
    };

    /// The event queue is the one on which the watcher reports. It also runs the hooks.
    ReportedChanges(TaskQueue &eventQueue, Hooks hooks)
        : eventQueue_(eventQueue), hooks_(std::move(hooks))
    {}

    void watchedFoldersChanged(const std::vector<std::string> &paths,
                               const std::stop_token &stop) override;

private:
    void updateAndAskAgain(const std::vector<std::string> &paths, const std::stop_token &stop,
                           std::chrono::milliseconds delay);
    std::vector<std::string> takeWaiting(std::uint64_t question);

    TaskQueue &eventQueue_;
    const Hooks hooks_;
    // Only the event queue uses the fields below.
    /// The watch that the waiting paths belong to.
    std::stop_token stop_;
    /// The paths that will be asked about again, each with the number of the question that will
    /// ask.
    std::map<std::string, std::uint64_t> waiting_;
    std::uint64_t latest_ = 0;
};

} // namespace quillon
