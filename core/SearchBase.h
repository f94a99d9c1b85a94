#pragma once

#include "base/Mutex.h"
#include "core/IndexUpdate.h"
#include "core/SearchBasePaths.h"
#include "indexing/SearchBaseIgnorePaths.h"
#include "indexing/SearchBaseWatcher.h"
#include "indexing/SearchLocations.h"
#include "matching/FuzzyMatch.h"
#include "matching/MatchOrder.h"
#include "results/SearchBaseResult.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <stop_token>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace quillon {

class CacheFile;
class CrawlSink;
class FolderLister;
class FrontItemsSource;
class IndexKeeper;
class IndexedItems;
class ReportedChanges;
class SearchBaseFinder;
class SearchBaseLogger;
class TaskQueue;
struct CrawlResult;
struct KeptTree;

inline std::int64_t nanosecondsSince1970()
{
    return std::chrono::duration_cast<std::chrono::nanoseconds>(
               std::chrono::system_clock::now().time_since_epoch())
        .count();
}

/// The index in memory and the one object through which the program searches it.
///
/// Every operation may be called from any thread. Searches answer from what is there, also during a
/// build or an update. A build and an update exclude each other: each waits for the other to end,
/// so neither is called from the main queue nor from a progress callback.
class SearchBase
{
public:
    /// Receives one line about the state of a build, on the thread that builds.
    using Progress = std::function<void(const std::string &line)>;

    struct Services
    {
        FolderLister &folderLister;
        SearchBaseLogger &logger;
        /// Updates change the index on this queue.
        TaskQueue &mainQueue;
        std::function<std::chrono::steady_clock::time_point()> now = std::chrono::steady_clock::now;
        /// Without these services, the index is as fresh as its last build.
        std::optional<SearchBaseWatcher::Services> watching = std::nullopt;
        /// Receives each path that the watcher reports, on the event queue, before the update.
        std::function<void(const std::string &path)> onReport = nullptr;
        /// Receives what each update has changed, on the event queue. Null when nobody wants that.
        std::function<void(const IndexDifferences &differences)> onDifferences = nullptr;
        /// The file that keeps the index between two runs of the program; null when it is not kept.
        CacheFile *keptIndex = nullptr;
        /// Returns what has been read of that file ahead of time. If this is null, the file is read
        /// when it is needed.
        std::function<std::optional<KeptTree>()> keptTree = nullptr;
        /// Returns the nanoseconds since 1970, as the file systems of this machine count them.
        std::function<std::int64_t()> wallClock = nanosecondsSince1970;
        /// The time between a change of the index and the next writing of that file.
        std::chrono::milliseconds keepDelay = std::chrono::minutes(10);
    };

    /// Without a front window search, answers have no items of the front window.
    SearchBase(const FrontItemsSource *frontFinderSearch, SearchBaseFinder &searchBaseFinder,
               FuzzyMatch &searchBaseMatcher, Services services);
    /// By the time of this call, the event queue no longer runs any task of the index.
    virtual ~SearchBase();
    SearchBase(const SearchBase &) = delete;
    SearchBase &operator=(const SearchBase &) = delete;

    /// Returns at most 25 matches among the front window's items, then at most 25 of the index,
    /// both best first. If there are fewer than 25 rows and the query begins with "/" after its
    /// blanks are trimmed, the last row offers the query itself as a path to go to.
    std::vector<SearchBaseResultRef> search(std::string_view query,
                                            MatchOrder order = MatchOrder::path) const;
    /// Returns those rows and, while there are fewer than 25, further ones in which each word of
    /// the query occurs in some name, see FuzzyMatch::addWordMatches(). They come before the row
    /// that offers a path to go to.
    std::vector<SearchBaseResultRef> searchWithWords(std::string_view query,
                                                     MatchOrder order = MatchOrder::path) const;
    /// Returns at most top matches of the index, best first, with the further ones after them if
    /// they are wanted, and without those in folders that are away.
    std::vector<FuzzyMatchResult> matchesThere(std::string_view query, std::size_t top,
                                               MatchOrder order, bool withWords) const;
    /// Returns at most top of the most used paths, most used first, without those in folders that
    /// are away.
    std::vector<FuzzyMatchResult> mostUsedThere(std::size_t top) const;
    /// Returns the include folder at or above the path that is away, or an empty text.
    std::string awayFolderOf(std::string_view path) const EXCLUDES(watching_);
    /// Returns at most 10 of the folders that the user opened most, most used first.
    std::vector<SearchBaseResultRef> mostAccessedResults() const;

    /// Forgets everything and stops watching; the use counts stay. A build or an update that is
    /// under way ends and changes nothing any more.
    void reset() EXCLUDES(watching_);
    /// Puts the index of the last run of the program into the empty index, unless the settings have
    /// changed. Returns whether it did. The next build then compares the index with the disk and
    /// reads only the folders that have changed. The kept file is all that this call reads from a
    /// disk.
    bool restore() EXCLUDES(watching_);
    /// Writes the index to the file for the next run if a build has come to its end.
    void keep() EXCLUDES(watching_);
    /// Crawls every include folder and adds what it finds, until stop is requested, the index is
    /// reset or another build begins. Changes that happen after the crawl has begun update the
    /// index once the build has come to its end.
    virtual void build(const Progress &progress, const std::stop_token &stop = {});
    /// Crawls a path that has changed and brings what the index holds of it and below it up to
    /// date, in one task of the main queue. Changes nothing when that queue is closed, when stop is
    /// requested before the task, when a reset or a build begins meanwhile, or when the path does
    /// not begin with "/".
    void update(const std::string &path, const std::stop_token &stop = {});
    /// Brings many paths up to date, some hundred of one folder in each task. Returns the paths for
    /// which a file system did not answer. They stay as they were, except for folders that could be
    /// listed in part.
    std::vector<std::string> update(std::span<const std::string> paths,
                                    const std::stop_token &stop = {});
    /// Forgets one path; what is below it stays.
    void remove(std::string_view path);

    /// Returns the extensions of the files that are indexed besides folders.
    std::set<std::string> includeFilePatterns() const;
    /// Returns the number of indexed paths.
    std::size_t count() const;
    /// Returns what the last build, or the running one, took from the settings; never null.
    std::shared_ptr<const SearchLocations> locations() const EXCLUDES(watching_);
    /// Returns the include folders that were missing at the last build or are missing now. While a
    /// build runs, returns only those that it found missing.
    std::vector<std::string> awayFolders() const EXCLUDES(watching_);
    /// Returns every indexed path, ascending by bytes.
    std::vector<std::string> paths() const;
    /// Returns how the include folders are watched, or nothing while they are not watched.
    std::optional<FSEventStatus> watchStatus() const;
    /// Waits until every change of the disk so far has reached the index. It is called neither on
    /// the event queue nor on the main queue.
    void settle();

    /// Hands over everything that is indexed as text: the paths, then the children under each
    /// parent. The text comes piece by piece with the index unlocked in between, so what changes
    /// meanwhile may or may not show.
    void treeDescription(const std::function<void(std::string_view piece)> &receive) const;
    std::string treeDescription() const;

    FuzzyMatch &searchBaseMatcher() { return searchBaseMatcher_; }

protected:
    /// Adds one path, as a build does.
    void add(std::string_view path);

private:
    struct Watched;
    /// Holds what the crawls of one build have in common.
    struct Building
    {
        const SearchLocations &locations;
        const Progress &progress;
        std::stop_token isReset;
        std::stop_token stop;
        std::shared_ptr<CrawlRecord> record;
    };

    std::vector<SearchBaseResultRef> answer(std::string_view query, MatchOrder order,
                                            bool withWords) const;
    /// Returns the rows of matches. What is found in a folder that is away is marked so.
    std::vector<SearchBaseResultRef>
    standardResults(const std::vector<FuzzyMatchResult> &matches) const;
    void eraseAway(std::vector<FuzzyMatchResult> &matches) const;
    /// Returns whether searches find the path although it is not stored, see IndexUpdate.
    bool isAway(const std::string &path) const REQUIRES_SHARED(searchBasePaths_.lock());
    /// Ends what is under way. Returns a stop that the next call requests.
    std::stop_token beginAnew() REQUIRES(searchBasePaths_.lock());
    std::stop_token beginBuild() EXCLUDES(watching_);
    /// Returns a stop that the next build or reset requests.
    std::stop_token untilAnew() const;
    /// Reads from the settings what is to be indexed, for everything until the next build.
    std::shared_ptr<const SearchLocations> takeLocations() EXCLUDES(watching_);
    /// Returns an empty record when nobody reports changes.
    Watched beginRecord(const SearchLocations &locations) EXCLUDES(watching_);
    void endBuild(Watched watched, const SearchLocations &locations, const std::stop_token &stop)
        EXCLUDES(watching_);
    void stopWatching() REQUIRES(watching_);
    void crawlIntoIndex(const std::string &root, const Building &building) REQUIRES(changing_);
    std::vector<std::string> compareWithDisk(const std::string &root, const Building &building)
        REQUIRES(changing_);
    bool beginKeeping(const SearchLocations &locations) REQUIRES(changing_);
    CrawlMarks *marks() REQUIRES(changing_);
    void keepLater() REQUIRES(changing_);
    IndexUpdate::Terms updateTerms(const SearchLocations &locations, const std::stop_token &isReset,
                                   CrawlMarks *marks) const;
    CrawlResult enumerateForUpdate(const ChangedPaths &changed,
                                   const std::set<std::string> &patterns, CrawlSink &sink,
                                   const std::stop_token &stop);
    std::vector<std::string> logChanges(std::span<const std::string> paths);
    bool findOut(IndexUpdate &update, const ChangedPaths &changed,
                 const std::set<std::string> &patterns, const std::stop_token &stop);
    bool applyInMainQueue(IndexUpdate &update);
    void applyAndLog(IndexUpdate &update);
    void describe(SortedPathWalk::Of of,
                  const std::function<void(std::string_view piece)> &receive) const;

    FuzzyMatch &searchBaseMatcher_;
    SearchBasePaths searchBasePaths_;
    const FrontItemsSource *const frontFinderSearch_;
    SearchBaseFinder &searchBaseFinder_;
    SearchBaseIgnorePaths searchBaseIgnorePaths_;
    const Services services_;
    /// It is null when nothing is watched.
    const std::shared_ptr<ReportedChanges> changes_;
    const std::unique_ptr<SearchBaseWatcher> searchBaseWatcher_;

    /// A build or an update holds this mutex as long as it runs. It is taken before the index's
    /// lock.
    Mutex changing_;
    /// It is null when the index is not kept.
    const std::unique_ptr<IndexKeeper> indexKeeper_;
    /// True while a task that keeps the index is waiting for its time.
    bool isKeepingDue_ GUARDED_BY(changing_) = false;
    /// Why the index could not be kept the last time; no error when it was kept.
    std::error_code keepingError_ GUARDED_BY(changing_);
    /// Held while watching begins or ends. It is taken after changing_ and before the index's lock.
    mutable Mutex watching_;
    std::shared_ptr<const SearchLocations> locations_ GUARDED_BY(watching_);
    /// True when a build has crawled all of them and the index has not been reset since.
    bool areCrawled_ GUARDED_BY(watching_) = false;
    /// Answers what the watch asks about the index; null before a build begins and after a reset.
    std::shared_ptr<IndexedItems> items_ GUARDED_BY(watching_);
    /// The stop is requested when the index is reset or built anew.
    std::stop_source anew_ GUARDED_BY(searchBasePaths_.lock());
};

} // namespace quillon
