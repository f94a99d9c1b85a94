#pragma once

#include "platform/linux/disk/MountTable.h"
#include "platform/linux/watching/ChangeLog.h"
#include "platform/linux/watching/FolderSweep.h"
#include "platform/linux/watching/FolderVerifier.h"
#include "platform/linux/watching/InotifyOptions.h"
#include "platform/linux/watching/InotifyQueue.h"
#include "platform/linux/watching/WatchRoots.h"
#include "platform/linux/watching/WatchedFolders.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace quillon {

class WatchFilter;

/// Returns the clock with which stamps on the disk are compared: that of the options, or the
/// system's.
WallClock wallClockOf(const InotifyOptions &options);

/// What a watching thread knows, and the steps by which it finds changes. Not locked.
class WatchLoop
{
public:
    using Id = WatchTree::Id;
    using Clock = std::chrono::steady_clock;

    struct Hooks
    {
        /// It is called between folders during long work. Returns false when the work is to end.
        std::function<bool()> goesOn;
        /// It is called when a root on a remote file system has come or gone.
        std::function<void(const std::string &path, bool hasCome)> onRemote;
    };

    /// The queue outlives this object. Without mounts, everything below the roots counts as local.
    WatchLoop(InotifyQueue &queue, std::shared_ptr<const WatchFilter> items,
              const InotifyOptions &options, std::size_t budget, bool knowsMounts,
              std::uint32_t rootFlags, Hooks hooks);

    WatchedFolders &folders() { return folders_; }
    const WatchedFolders &folders() const { return folders_; }
    WatchRoots &roots() { return roots_; }
    const MountTable *mounts() const { return mounts_ ? &*mounts_ : nullptr; }

    /// Reads what has happened and marks it for the next flush.
    void drain();
    /// Reads the table of mounts again, which may have changed.
    void mountsChanged();
    void suspectRoots() { rootsSuspect_ = true; }
    bool hasDirt() const;
    /// Returns the time at which a flush asks again the questions that were not answered.
    Clock::time_point retryDue() const { return retries_.due(); }

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
        /// What was marked, and the questions that are due to be asked again.
        marked,
        /// Also every folder without a watch, and every question that was not answered.
        everything,
    };
    /// Compares with the disk. Marks again what was checked while a folder above it was being
    /// moved.
    void flush(Extent extent);
    std::vector<ChangeLog::Change> takeChanges() { return changes_.take(Clock::now()); }

    Clock::time_point sweepDue() const { return sweep_.due(); }
    /// Spends a few milliseconds on the folders without a watch. Returns true at the end of a
    /// sweep.
    bool sweep();
    /// Tries the whole budget again.
    void retryBudget();
    /// Returns whether the system has refused a watch since the last call.
    bool takeRefused() { return std::exchange(wasRefused_, false); }

private:
    /// When the system refuses a watch, one part in this many of the watches is released.
    static constexpr std::size_t GIVEN_BACK = 10;

    void note(const InotifyQueue::Event &event);
    void noteOwn(Id id);
    bool matters(Id folder, const InotifyQueue::Event &event) const;
    void mark(Id folder, std::string_view name);
    void markMountPoint(Id root, std::string_view below);
    using Dirt = std::unordered_map<Id, std::set<std::string, std::less<>>>;

    void enterCrawled(const std::vector<std::string> &roots, const CrawledTree &crawled);
    void takeRetries(Clock::time_point now);
    void verifyDirt(const Dirt &dirty);
    void listAnew(Id id);
    void finish();
    void checkLooks();
    void checkArming();
    std::unordered_set<Id> unsettled() const;
    std::unordered_set<Id> unanswered() const;
    bool isBelowAny(Id id, const std::unordered_set<Id> &folders) const;
    void lookAgain(const FolderVerifier::Look &look);
    bool wasClockStepped() const;

    InotifyQueue &queue_;
    const std::shared_ptr<const WatchFilter> items_;
    const std::function<std::int64_t()> wallClock_;
    const std::optional<std::size_t> queueLimit_;
    const std::size_t fullBudget_;
    const Hooks hooks_;

    ChangeLog changes_;
    RetryList retries_;
    std::optional<MountTable> mounts_;
    WatchedFolders folders_;
    FolderVerifier verifier_;
    WatchRoots roots_;
    FolderSweep sweep_;

    Dirt dirty_;
    /// The folders whose listing has to be compared with the disk.
    std::set<Id> unlisted_;
    /// The folders that a crawl could not list.
    std::vector<Id> notListed_;
    const std::uint32_t rootFlags_;
    bool overflow_ = false;
    bool rootsSuspect_ = false;
    bool wasRefused_ = false;
    /// The time at which the last reading without a loss began, by the clock of the stamps and by
    /// one that nobody sets.
    std::int64_t readAt_ = 0;
    std::int64_t readAtBoot_ = 0;
};

} // namespace quillon
