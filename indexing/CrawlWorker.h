#pragma once

#include "base/Mutex.h"
#include "indexing/CrawlStack.h"
#include "indexing/KeptEntries.h"
#include "platform/FolderLister.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <system_error>

namespace quillon {

class CrawlTeam;

/// One thread's part in a crawl.
///
/// A worker visits the folders of its own stack, from which others may take. A call into the file
/// system may take for ever. So that nobody has to wait for it, the worker can be given up while it
/// is in such a call. It ends when the call ever does, without touching anything but itself.
class CrawlWorker
{
public:
    struct Counts
    {
        std::uint64_t folders = 0;
        std::uint64_t files = 0;
    };

    explicit CrawlWorker(CrawlTeam &team);

    /// Visits folders until the crawl is over. The first worker begins with the root. The function,
    /// if any, is called between two folders.
    void run(bool isFirst, const std::function<void()> &betweenFolders = {});

    /// Gives away half of what is left. Returns false when there is nothing to share or, unless
    /// everything is asked for, only what the worker itself is about to visit.
    bool share(CrawlStack &given, bool everything) EXCLUDES(mutex_);
    /// Takes over what another gave away. The worker has nothing left itself.
    void receive(CrawlStack given) EXCLUDES(mutex_);
    bool hasFoldersLeft() EXCLUDES(mutex_);
    /// Sets how many folders the worker may keep open while it is below them.
    void setMaxOpen(std::size_t count) EXCLUDES(mutex_);

    /// Returns a number that changes whenever a call begins or ends.
    std::uint64_t activity() const { return activity_.load(); }
    static bool isInCall(std::uint64_t activity) { return (activity & STATE) == IN_CALL; }
    /// Gives the worker up if it is still in the call during which the number was read.
    bool giveUp(std::uint64_t activity);
    bool isGivenUp() const { return (activity_.load() & STATE) == GIVEN_UP; }
    bool hasEnded() const { return ended_.load(); }
    /// Returns the path of what the worker is busy with; empty for the root.
    std::string currentPath() EXCLUDES(mutex_);
    /// Records that what the worker is busy with will not be listed.
    void giveUpListing() EXCLUDES(mutex_);
    /// The counts are read only once the worker has ended or was given up.
    const Counts &counts() const { return counts_; }

private:
    // The lowest bits of the activity. The bits above them count the calls.
    static constexpr std::uint64_t STATE = 3;
    static constexpr std::uint64_t WORKING = 0;
    static constexpr std::uint64_t IN_CALL = 1;
    static constexpr std::uint64_t GIVEN_UP = 2;

    /// Runs a call into the file system. Returns false when the worker was given up meanwhile, or
    /// when the crawl was stopped before.
    template <typename Call>
    bool inCall(const Call &call);

    bool take(CrawlItem &item) EXCLUDES(mutex_);
    // These return the same as inCall().
    bool visitRoot();
    bool visit(CrawlItem &item);
    template <typename Call>
    bool recordBy(CrawlItem &item, const Call &call) EXCLUDES(mutex_);
    bool recordEntered(CrawlItem &item) EXCLUDES(mutex_);
    bool openItem(CrawlItem &item, std::unique_ptr<OpenFolder> &folder, std::error_code &error);
    bool reopenParent(CrawlItem &item, std::error_code &error) EXCLUDES(mutex_);
    bool takeStamp(const OpenFolder *folder);
    bool recall(const CrawlItem &item, bool &isKnown);
    bool isKnown(const CrawlItem &item);
    bool readEntries(OpenFolder &folder, const CrawlItem &item, std::error_code &error);
    bool lookAtNames(const OpenFolder &folder, const CrawlItem &item);
    bool handOver(const CrawlItem &item);
    void goInto(const CrawlItem &item, std::shared_ptr<const OpenFolder> folder) EXCLUDES(mutex_);
    void report(const CrawlItem &item, const std::error_code &error, bool isOpen);

    CrawlTeam &team_;
    std::atomic<std::uint64_t> activity_ = WORKING;
    std::atomic<bool> ended_ = false;
    Counts counts_;

    Mutex mutex_;
    CrawlStack stack_ GUARDED_BY(mutex_);
    /// The folder above what is being visited.
    CrawlFolder::Ref parent_ GUARDED_BY(mutex_);
    std::string name_ GUARDED_BY(mutex_);
    /// The record's number for the folder that the worker is busy with; absent before there is one.
    std::optional<CrawlRecord::Folder> recorded_ GUARDED_BY(mutex_);

    /// The stamp of the folder being visited, taken before it is read. It is unknown when nobody
    /// wants it.
    FolderStamp stamp_;
    FolderBatch batch_;
    /// The entries that are kept of the folder being visited.
    KeptEntries kept_;
};

} // namespace quillon
