#pragma once

#include "base/Mutex.h"
#include "indexing/CrawlReport.h"
#include "indexing/CrawlSink.h"
#include "indexing/CrawlWorker.h"
#include "indexing/Crawler.h"
#include "indexing/NameKinds.h"
#include "platform/FolderLister.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <thread>
#include <vector>

namespace quillon {

/// The workers of one crawl and what they share.
///
/// The threads hold it too, since a thread that was given up may outlive the crawl. The locks of a
/// worker and of the report are taken after the team's.
class CrawlTeam : public std::enable_shared_from_this<CrawlTeam>
{
public:
    struct Task
    {
        FolderLister &folderLister;
        std::shared_ptr<const SkipRules> rules;
        ExtensionSet extensions;
        CrawlSink &sink;
        std::string rootPath;
        CrawlItem root;
        /// The names in the root that are crawled; absent when all of them are.
        std::optional<std::vector<std::string>> names;
        /// It is null when the crawl is not recorded.
        std::shared_ptr<CrawlRecord> record;
        bool reportsProgress = false;
    };

    CrawlTeam(Task task, const CrawlOptions &options);

    /// Crawls. The calling thread delivers the messages.
    CrawlResult run(const Crawler::Progress &progress, const std::stop_token &stop)
        EXCLUDES(mutex_);

    // Only the workers use the operations below.

    const Task &task() const { return task_; }
    bool isStopped() const { return stopped_.load(std::memory_order_relaxed); }
    /// The first worker sets the root once, before anything can be shared.
    void setRoot(std::shared_ptr<const OpenFolder> handle) { rootHandle_ = std::move(handle); }
    const std::shared_ptr<const OpenFolder> &rootHandle() const { return rootHandle_; }
    /// Waits until the worker has something to visit and returns true. Returns false when the crawl
    /// is over.
    bool waitForWork(CrawlWorker &worker) EXCLUDES(mutex_);
    /// Wakes an idle worker, since there is something to share.
    void workAppeared() EXCLUDES(mutex_);
    /// Closes folders that workers keep open, to free descriptors, and lets the workers keep fewer
    /// from now on. Returns false when that has been done often enough.
    bool openFewer() EXCLUDES(mutex_);
    /// Takes what the workers report. A worker that was given up reports nothing more.
    CrawlReport &report() { return report_; }

private:
    using Clock = std::chrono::steady_clock;

    struct Member
    {
        std::unique_ptr<CrawlWorker> worker;
        /// The worker's own thread; none when the crawling thread does the work itself.
        std::thread thread = {};
        /// The worker's activity when it last changed, and the time of that change.
        std::uint64_t activity = 0;
        Clock::time_point since = {};
        bool isStalled = false;
    };

    bool start() EXCLUDES(mutex_);
    void crawlAlone(const Crawler::Progress &progress) EXCLUDES(mutex_);
    bool isOver() EXCLUDES(mutex_);
    void waitAWhile() EXCLUDES(mutex_);
    CrawlResult total() EXCLUDES(mutex_);

    bool addMember() REQUIRES(mutex_);
    bool takeFromOthers(CrawlWorker &worker) REQUIRES(mutex_);
    std::size_t aliveMembers() REQUIRES(mutex_);
    std::size_t observeMembers() REQUIRES(mutex_);
    bool isAnythingLeft() REQUIRES(mutex_);
    void lookAfterMembers() REQUIRES(mutex_);
    void giveUp(Member &member) REQUIRES(mutex_);
    void finish() REQUIRES(mutex_);

    void requestStop() EXCLUDES(mutex_);
    /// Waits until every thread that can be expected to end has ended.
    void endThreads() EXCLUDES(mutex_);
    bool isEveryoneGone() REQUIRES(mutex_);

    const Task task_;
    const CrawlOptions options_;
    CrawlReport report_;
    std::shared_ptr<const OpenFolder> rootHandle_;

    std::atomic<bool> stopped_ = false;
    std::atomic<std::size_t> idle_ = 0;
    /// True when an idle worker was woken and has not looked yet.
    std::atomic<bool> told_ = false;

    Mutex mutex_;
    Condition work_;
    Condition over_;
    std::vector<Member> members_ GUARDED_BY(mutex_);
    std::size_t maxOpen_ GUARDED_BY(mutex_) = CrawlStack::MAX_OPEN;
    bool finished_ GUARDED_BY(mutex_) = false;
};

} // namespace quillon
