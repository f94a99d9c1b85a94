#include "base/EitherStop.h"
#include "core/HeldNodes.h"
#include "core/IndexKeeper.h"
#include "core/IndexSink.h"
#include "core/IndexUpdate.h"
#include "core/IndexedItems.h"
#include "core/SearchBase.h"
#include "indexing/Crawler.h"
#include "indexing/SearchBaseFinder.h"
#include "indexing/SearchBaseLogger.h"

#include <algorithm>
#include <iterator>
#include <utility>

// How the index is built, kept in a file and restored. A build either crawls the include folders
// into an empty index or compares them with the index of the last run (IndexKeeper). The comparison
// of a folder is an update of everything in it.

namespace quillon {

namespace {

std::vector<std::string> pathsOf(const std::vector<SearchLocations::Missing> &missing)
{
    std::vector<std::string> paths;
    for (const SearchLocations::Missing &folder : missing)
        paths.push_back(folder.path);
    return paths;
}

} // namespace

/// Holds what a crawl records for the watch that is to come.
struct SearchBase::Watched
{
    std::shared_ptr<const WatchFilter> items;
    std::shared_ptr<CrawlRecord> record;
    /// The disk did not answer for these paths when they were compared with it.
    std::vector<std::string> silent = {};
};

void SearchBase::build(const Progress &progress, const std::stop_token &stop)
{
    const std::stop_token isReset = beginBuild();
    const EitherStop end(stop, isReset);
    const MutexLock changing(changing_);
    const std::shared_ptr<const SearchLocations> locations = takeLocations();
    const bool isCompared = beginKeeping(*locations);
    // An index that is compared has the folders that are away already.
    if (indexKeeper_ && !isCompared && !locations->missing.empty())
        indexKeeper_->addAway(pathsOf(locations->missing), locations->settings({}), isReset);
    std::string starting = "Starting search with ";
    for (const std::string &folder : locations->folders)
        starting += folder;
    progress(starting);

    Watched watched = beginRecord(*locations);
    const Building building{*locations, progress, isReset, end.token(), watched.record};
    for (const std::string &root : locations->folders) {
        progress("Scanning " + root);
        if (isCompared)
            std::ranges::move(compareWithDisk(root, building), std::back_inserter(watched.silent));
        else
            crawlIntoIndex(root, building);
        if (end.token().stop_requested())
            return;
        progress("Added " + std::to_string(count()) + " items");
    }
    if (indexKeeper_ && !end.token().stop_requested())
        indexKeeper_->end(isReset);
    endBuild(std::move(watched), *locations, end.token());
}

std::stop_token SearchBase::beginBuild()
{
    const MutexLock lock(watching_);
    stopWatching();
    const WritingIndex writing(searchBasePaths_.lock());
    return beginAnew();
}

std::stop_token SearchBase::beginAnew()
{
    anew_.request_stop();
    anew_ = {};
    return anew_.get_token();
}

std::stop_token SearchBase::untilAnew() const
{
    const ReadingIndex reading(searchBasePaths_.lock());
    return anew_.get_token();
}

std::shared_ptr<const SearchLocations> SearchBase::takeLocations()
{
    // The folders are looked up before the lock is taken, since a reset must not wait for a disk.
    auto locations =
        std::make_shared<const SearchLocations>(SearchLocations::of(searchBaseFinder_));
    searchBaseIgnorePaths_.refresh(*locations);
    const MutexLock lock(watching_);
    return locations_ = std::move(locations);
}

SearchBase::Watched SearchBase::beginRecord(const SearchLocations &locations)
{
    if (!searchBaseWatcher_)
        return {};
    auto items =
        std::make_shared<IndexedItems>(searchBasePaths_, searchBaseIgnorePaths_.rules(),
                                       ExtensionSet(locations.extensions()), locations.roots());
    {
        const MutexLock lock(watching_);
        if (items_)
            items_->close();
        items_ = items;
    }
    return {.items = items, .record = searchBaseWatcher_->beginRecord()};
}

void SearchBase::crawlIntoIndex(const std::string &root, const Building &building)
{
    IndexSink sink(searchBasePaths_, building.isReset, marks());
    Crawler crawler(services_.folderLister, searchBaseIgnorePaths_.rules(), {}, building.record);
    const CrawlResult result = crawler.crawl(root, building.locations.extensions(), sink,
                                             building.progress, building.stop);
    sink.finish();
    if (!building.stop.stop_requested() && result.outcome == CrawlResult::Outcome::packageOrMissing)
        services_.logger.log(PACKAGE_TAG + root);
}

/// Returns the paths for which the disk did not answer. They stay as they were.
std::vector<std::string> SearchBase::compareWithDisk(const std::string &root,
                                                     const Building &building)
{
    const HeldNodes held(searchBaseMatcher_.index());
    IndexUpdate update(searchBasePaths_, updateTerms(building.locations, building.isReset, marks()),
                       {.path = root});
    Crawler crawler(services_.folderLister, searchBaseIgnorePaths_.rules(), {}, building.record);
    if (update.isFolder())
        update.crawled(crawler.crawl(root, building.locations.extensions(), update.found(),
                                     building.progress, building.stop));
    if (!building.stop.stop_requested() && update.compare())
        applyInMainQueue(update);
    return update.silentPaths();
}

void SearchBase::endBuild(Watched watched, const SearchLocations &locations,
                          const std::stop_token &stop)
{
    const MutexLock lock(watching_);
    if (stop.stop_requested())
        return;
    areCrawled_ = true;
    if (!searchBaseWatcher_)
        return;
    // Missing folders are watched too, so that the watch reports when they appear.
    searchBaseWatcher_->startWatching(locations.roots(), std::move(watched.items),
                                      std::move(watched.record));
    searchBaseWatcher_->report(std::move(watched.silent));
}

void SearchBase::stopWatching()
{
    areCrawled_ = false;
    if (searchBaseWatcher_)
        searchBaseWatcher_->stopWatching();
    if (items_)
        items_->close();
    items_.reset();
}

// Keeping

bool SearchBase::restore()
{
    if (!indexKeeper_)
        return false;
    const MutexLock changing(changing_);
    const auto settings = SearchLocations::withoutFolders(searchBaseFinder_)
                              .settings(searchBaseFinder_.bookmarks.load());
    auto kept = services_.keptTree ? services_.keptTree() : IndexKeeper::read(*services_.keptIndex);
    return indexKeeper_->restore(std::move(kept), settings, untilAnew());
}

/// Returns whether the index is that of the last run and is to be compared with the disk.
bool SearchBase::beginKeeping(const SearchLocations &locations)
{
    if (!indexKeeper_)
        return false;
    // The bookmarks may be newer than the locations. In that case they lead to other folders, and
    // the index that is kept with both is not taken at the next start.
    return indexKeeper_->begin({.settings = locations.settings(searchBaseFinder_.bookmarks.load()),
                                .folders = locations.folders,
                                .missing = pathsOf(locations.missing)},
                               services_.wallClock(), ExtensionSet(locations.extensions()));
}

CrawlMarks *SearchBase::marks()
{
    return indexKeeper_ ? indexKeeper_->marks() : nullptr;
}

void SearchBase::keep()
{
    if (!indexKeeper_)
        return;
    const MutexLock changing(changing_);
    isKeepingDue_ = false;
    const std::error_code error = indexKeeper_->keep();
    // It is tried again after every change, so what goes on failing is said once.
    if (error && error != keepingError_)
        services_.logger.print("The index is not kept for the next start: " + error.message());
    keepingError_ = error;
}

void SearchBase::keepLater()
{
    if (!indexKeeper_ || !services_.watching || std::exchange(isKeepingDue_, true))
        return;
    services_.watching->eventQueue.postDelayed(services_.keepDelay, [this] { keep(); });
}

} // namespace quillon
