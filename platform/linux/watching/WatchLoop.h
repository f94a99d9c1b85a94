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

/// The clock that stamps on the disk are held against: that of the options, or the system's.
WallClock wallClockOf(const InotifyOptions &options);

/// What a watching thread knows and how it finds out what has changed. Not locked.
class WatchLoop
{
public:
    using Id = WatchTree::Id;
    using Clock = std::chrono::steady_clock;

    struct Hooks
    {
        /// It is called between folders during long work. False when it is to end.
        std::function<bool()> goesOn;
        /// A root on a remote file system has come or gone.
        std::function<void(const std::string &path, bool hasCome)> onRemote;
    };

    /// The queue outlives it. Without mounts it takes everything below its roots for its own.
    WatchLoop(InotifyQueue &queue, std::shared_ptr<const WatchFilter> items,
              const InotifyOptions &options, std::size_t budget, bool knowsMounts,
              std::uint32_t rootFlags, Hooks hooks);

    WatchedFolders &folders() { return folders_; }
    const WatchedFolders &folders() const { return folders_; }
    WatchRoots &roots() { return roots_; }
    const MountTable *mounts() const { return mounts_ ? &*mounts_ : nullptr; }

    /// Reads what has happened and marks it for the next flush.
    void drain();
    /// The table of mounts has changed.
    void mountsChanged();
    void suspectRoots() { rootsSuspect_ = true; }
    bool hasDirt() const;
    /// The time at which a flush asks the questions again that were not answered.
    Clock::time_point retryDue() const { return retries_.due(); }

    /// This says how roots are taken on that nobody has watched so far.
    struct Beginning
    {
        /// What a crawl has listed; null when there was none.
        const CrawledTree *crawled = nullptr;
        /// When nobody has crawled the roots, only what changed at this time or later is told.
        std::optional<std::int64_t> quietSince = {};
    };
    /// Takes on roots, with the folders that a crawl has listed below them.
    void begin(const std::vector<std::string> &roots, const Beginning &beginning);
    enum class Extent
    {
        /// What was marked, and what is due to be asked again.
        marked,
        /// This looks at every folder without a watch too, and at all that was not answered.
        everything,
    };
    /// Compares with the disk. Marks again what was looked at while a folder above it was on the
    /// move.
    void flush(Extent extent);
    std::vector<ChangeLog::Change> takeChanges() { return changes_.take(Clock::now()); }

    Clock::time_point sweepDue() const { return sweep_.due(); }
    /// Spends a few milliseconds on the folders without a watch. True at the end of a sweep.
    bool sweep();
    /// Tries the whole budget again.
    void retryBudget();
    /// The system has refused a watch since this was last asked.
    bool takeRefused() { return std::exchange(wasRefused_, false); }

private:
    /// One part in so many.
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
    /// Folders whose listing has to be compared with the disk.
    std::set<Id> unlisted_;
    /// Folders that a crawl was to list and could not.
    std::vector<Id> notListed_;
    const std::uint32_t rootFlags_;
    bool overflow_ = false;
    bool rootsSuspect_ = false;
    bool wasRefused_ = false;
    /// When the last reading that lost nothing began, by the clock of the stamps and by one that
    /// nobody sets.
    std::int64_t readAt_ = 0;
    std::int64_t readAtBoot_ = 0;
};

} // namespace quillon
