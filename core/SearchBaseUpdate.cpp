#include "base/EitherStop.h"
#include "base/PathText.h"
#include "base/TaskQueue.h"
#include "core/HeldNodes.h"
#include "core/IndexUpdate.h"
#include "core/SearchBase.h"
#include "indexing/Crawler.h"
#include "indexing/SearchBaseLogger.h"

#include <algorithm>
#include <iterator>
#include <utility>

// How changed paths are brought up to date. An update crawls and compares on the calling thread,
// and changes the index in one task of the main queue (IndexUpdate).

namespace quillon {

namespace {

constexpr std::chrono::duration<double> LONG_UPDATE_THRESHOLD(1.0);
/// An update waits this long for one call to a disk, since the updates of other disks wait behind
/// it. What did not answer is asked about again.
constexpr std::chrono::seconds UPDATE_PATIENCE{2};

bool isInsideApplication(std::string_view path)
{
    return path.find(".app/") != std::string_view::npos && !path.ends_with(".app/");
}

} // namespace

CrawlResult SearchBase::enumerateForUpdate(const ChangedPaths &changed,
                                           const std::set<std::string> &patterns, CrawlSink &sink,
                                           const std::stop_token &stop)
{
    // The watcher notices new folders by itself. Usually there is just one of them.
    Crawler crawler(services_.folderLister, searchBaseIgnorePaths_.rules(),
                    {.threads = 1, .patience = UPDATE_PATIENCE});
    return changed.names.empty()
               ? crawler.crawl(changed.path, patterns, sink, {}, stop)
               : crawler.crawlNames(changed.path, changed.names, patterns, sink, stop);
}

void SearchBase::update(const std::string &path, const std::stop_token &stop)
{
    update(std::span(&path, 1), stop);
}

std::vector<std::string> SearchBase::update(std::span<const std::string> paths,
                                            const std::stop_token &stop)
{
    const std::vector<std::string> changed = logChanges(paths);
    const std::stop_token isReset = untilAnew();
    const EitherStop end(stop, isReset);
    const MutexLock changing(changing_);
    const std::shared_ptr<const SearchLocations> locations = this->locations();
    if (changed.empty())
        return {};
    const IndexUpdate::Terms terms = updateTerms(*locations, isReset, nullptr);
    std::vector<std::string> unanswered;
    {
        // The tree is held across all updates, so dead nodes are collected only once.
        const HeldNodes held(searchBaseMatcher_.index());
        for (ChangedPaths &some : ChangedPaths::together(changed, terms.roots)) {
            if (end.token().stop_requested())
                return {};
            IndexUpdate update(searchBasePaths_, terms, some);
            if (findOut(update, some, terms.patterns, end.token()))
                applyAndLog(update);
            std::ranges::move(update.unanswered(), std::back_inserter(unanswered));
        }
    }
    // Folders that came one by one are siblings far apart in memory, which makes searches slow.
    searchBaseMatcher_.arrange();
    keepLater();
    return unanswered;
}

IndexUpdate::Terms SearchBase::updateTerms(const SearchLocations &locations,
                                           const std::stop_token &isReset, CrawlMarks *marks) const
{
    return {.folderLister = services_.folderLister,
            .patterns = locations.extensions(),
            .roots = locations.roots(),
            .rules = searchBaseIgnorePaths_.rules(),
            .isReset = isReset,
            .now = services_.now,
            .marks = marks,
            .wantsDifferences = services_.onDifferences != nullptr};
}

/// Logs the reports and returns the paths that are to be updated.
std::vector<std::string> SearchBase::logChanges(std::span<const std::string> paths)
{
    std::vector<std::string> changed;
    std::vector<std::string> lines;
    for (const std::string &path : paths) {
        lines.push_back("sbl_change: " + path);
        if (isInsideApplication(path))
            lines.push_back("sbl_ignore_app " + path);
        else if (!path.starts_with('/'))
            lines.push_back("sbl_ignore_relative " + path);
        else
            changed.push_back(path);
    }
    services_.logger.log(lines);
    return changed;
}

/// Crawls and compares. Returns false when nothing is to be applied.
bool SearchBase::findOut(IndexUpdate &update, const ChangedPaths &changed,
                         const std::set<std::string> &patterns, const std::stop_token &stop)
{
    if (update.isFolder()) {
        const CrawlResult result = enumerateForUpdate(changed, patterns, update.found(), stop);
        if (stop.stop_requested())
            return false;
        update.crawled(result);
    }
    return update.compare();
}

/// Returns false when the index was reset, or the queue closed.
bool SearchBase::applyInMainQueue(IndexUpdate &update)
{
    while (!update.isApplied()) {
        bool isApplied = false;
        const bool hasRun = services_.mainQueue.postAndWait([&] { isApplied = update.apply(); });
        if (!hasRun || !isApplied)
            return false;
    }
    return true;
}

void SearchBase::applyAndLog(IndexUpdate &update)
{
    if (!applyInMainQueue(update))
        return;
    // Only this thread waits for the logger to take these lines.
    update.log([&](std::span<const std::string> lines) { services_.logger.log(lines); });
    if (services_.onDifferences)
        if (const auto differences = update.differences())
            services_.onDifferences(*differences);
    if (update.insertionTime() > LONG_UPDATE_THRESHOLD)
        services_.logger.print("*>*>*>*> SB: Long delta " +
                               shortestDecimal(update.insertionTime().count()) + " " +
                               std::to_string(update.operations()));
}

} // namespace quillon
