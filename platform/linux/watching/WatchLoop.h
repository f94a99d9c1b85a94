#pragma once

#include "platform/linux/disk/MountTable.h"
#include "platform/linux/watching/ChangeLog.h"
#include "platform/linux/watching/FolderSweep.h"
#include "platform/linux/watching/FolderVerifier.h"
#include "platform/linux/watching/InotifyEventService.h"
#include "platform/linux/watching/InotifyQueue.h"
#include "platform/linux/watching/OpenQuestions.h"
#include "platform/linux/watching/WatchArming.h"
#include "platform/linux/watching/WatchRoots.h"
#include "platform/linux/watching/WatchedFolders.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quillon {

/// Returns the clock with which stamps on the disk are compared: that of the options, or the
/// system's.
WallClock wallClockOf(const InotifyOptions &options);

/// Holds what a watching thread knows, and takes the steps by which it finds changes. Not locked.
class WatchLoop
{
public:
    using Id = WatchTree::Id;
    using Clock = std::chrono::steady_clock;

    /// The queue outlives this object. Without mounts, everything below the roots counts as local.
    /// goesOn is called between folders during long work and returns false when the work is to end.
    WatchLoop(InotifyQueue &queue, std::shared_ptr<const WatchFilter> items,
              const InotifyOptions &options, bool knowsMounts, std::uint32_t rootFlags,
              std::function<bool()> goesOn);

    const WatchedFolders &folders() const { return folders_; }

    /// Reads what has happened and marks it for the next flush.
    void drain();
    /// Reads the table of mounts again, which may have changed.
    void mountsChanged();
    /// Adds a root of which nothing is known. The next flush looks for it.
    void addRoot(const std::string &path);
    /// Forgets a root and drops its folders.
    void removeRoot(const std::string &path) { roots_.remove(path); }
    /// Returns whether the next flush has something to check.
    bool hasDirt() const { return overflow_ || !questions_.isEmpty() || !notListed_.empty(); }
    /// Returns the time at which a flush asks again the questions that were not answered.
    Clock::time_point retryDue() const { return questions_.due(); }

    /// Says how to begin with roots that nobody has watched so far.
    struct Beginning
    {
        /// The folders that a crawl has listed; null when there was no crawl.
        const CrawledTree *crawled = nullptr;
        /// If nobody has crawled the roots, only what has changed since this time is reported.
        std::optional<std::int64_t> quietSince = {};
    };
    /// Begins to watch roots, with the folders that a crawl has listed below them.
    void begin(const std::vector<std::string> &roots, const Beginning &beginning);
    enum class Extent
    {
        /// This includes the marked folders, and the questions that are due to be asked again.
        marked,
        /// This includes every folder without a watch, and every question that was not answered.
        everything,
    };
    /// Compares with the disk. Marks again what was checked while a folder above it was being
    /// moved.
    void flush(Extent extent);
    std::vector<ChangeLog::Change> takeChanges() { return changes_.take(Clock::now()); }
    auto takeRemoteChanges() { return folders_.takeRemoteChanges(); }

    Clock::time_point sweepDue() const { return sweep_.due(); }
    /// Spends a few milliseconds on the folders without a watch. Returns true at the end of a
    /// sweep.
    bool sweep();
    /// Tries the whole budget again.
    void retryBudget();
    /// Returns whether the system has refused a watch.
    bool wasRefused() const { return wasRefused_; }

private:
    /// When the system refuses a watch, one part in this many of the watches is released.
    static constexpr std::size_t GIVEN_BACK = 10;

    /// A time by the clock of the stamps and by one that nobody sets, in nanoseconds.
    struct Moment
    {
        std::int64_t wall = 0;
        std::int64_t boot = 0;
    };

    Moment now() const;
    const MountTable *mounts() const { return mounts_ ? &*mounts_ : nullptr; }
    void note(const InotifyQueue::Event &event);
    bool matters(Id folder, const InotifyQueue::Event &event) const;
    void enterCrawled(const std::vector<std::string> &roots, const CrawledTree &crawled);
    void listAnew(Id id);
    void finish();

    InotifyQueue &queue_;
    const std::shared_ptr<const WatchFilter> items_;
    const std::function<std::int64_t()> wallClock_;
    const std::optional<std::size_t> queueLimit_;
    const std::size_t fullBudget_;
    const std::function<bool()> goesOn_;

    ChangeLog changes_;
    std::optional<MountTable> mounts_;
    WatchedFolders folders_;
    OpenQuestions questions_;
    FolderVerifier verifier_;
    WatchArming arming_;
    WatchRoots roots_;
    FolderSweep sweep_;

    /// The folders that a crawl could not list.
    std::vector<Id> notListed_;
    const std::uint32_t rootFlags_;
    bool overflow_ = false;
    bool wasRefused_ = false;
    /// The time at which the last reading without a loss began.
    Moment readAt_;
};

} // namespace quillon
