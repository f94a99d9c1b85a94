#include "app/panel/SearchBaseSource.h"

#include "actions/FrontFinderSearch.h"
#include "base/PathText.h"
#include "core/SearchBase.h"
#include "core/SearchBaseBuilder.h"
#include "indexing/SearchBaseFinder.h"
#include "matching/RecentAccessScore.h"
#include "platform/FolderLister.h"
#include "platform/Places.h"
#include "prefs/KeptFolders.h"
#include "prefs/Preferences.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace quillon {

namespace {

using namespace std::chrono_literals;

/// The time that an answer waits for the disk to say whether a typed path exists.
constexpr auto DISK_PATIENCE = 300ms;

} // namespace

SearchBaseSource::SearchBaseSource(const Services &services, std::string homeFolder)
    : services_(services), homeFolder_(std::move(homeFolder))
{}

PanelSource::Answer SearchBaseSource::search(const std::string &query) const
{
    const std::string wanted = query.starts_with("~/") ? homeFolder_ + query.substr(1) : query;
    const SearchBase &searchBase = services_.searchBase;
    Answer answer{services_.preferences.matchWordsInOrder.value()
                      ? searchBase.search(wanted, order())
                      : searchBase.searchWithWords(wanted, order())};
    if (wanted.starts_with('/'))
        answer.selectedRow = rowOfPath(answer.results, wanted);
    return answer;
}

MatchOrder SearchBaseSource::order() const
{
    const std::string &key = services_.preferences.matchOrder.selected().key;
    return matchOrderNamed(key).value_or(MatchOrder::path);
}

int SearchBaseSource::rowOfPath(const std::vector<SearchBaseResultRef> &rows,
                                const std::string &path) const
{
    const auto found = std::ranges::find_if(rows, [&path](const SearchBaseResultRef &row) {
        return row->type() != SearchBaseResultType::inFrontFinder && row->path() == path;
    });
    if (found == rows.begin() || found == rows.end() || !isThere(path))
        return 0;
    return static_cast<int>(found - rows.begin());
}

bool SearchBaseSource::isThere(const std::string &path) const
{
    const auto ask = [&disk = services_.disk, path] { return disk.kind(path); };
    const auto kind = diskCalls_.run(path, DISK_PATIENCE, ask);
    return kind == FolderLister::Kind::folder || kind == FolderLister::Kind::other;
}

std::vector<SearchBaseResultRef> SearchBaseSource::mostAccessedResults() const
{
    return services_.searchBase.mostAccessedResults();
}

std::vector<SearchBaseResultRef> SearchBaseSource::places() const
{
    std::vector<SearchBaseResultRef> rows;
    for (const std::string &path : services_.places.folders()) {
        if (isThere(path))
            rows.push_back(std::make_shared<SearchBaseResult>(path, path, std::vector<TextRange>{},
                                                              SearchBaseResultType::standard));
    }
    return rows;
}

void SearchBaseSource::recordUse(const SearchBaseResultRef &result)
{
    services_.useQueue.post([&matcher = services_.searchBase.searchBaseMatcher(), result] {
        matcher.uprankResult(*result);
    });
}

std::vector<std::string> SearchBaseSource::keptOnTop() const
{
    return services_.keptFolders.paths();
}

void SearchBaseSource::keepOnTop(const SearchBaseResult &result, bool isKept)
{
    KeptFolders &kept = services_.keptFolders;
    isWriteRefused_ = !(isKept ? kept.keep(result.path()) : kept.release(result.path()));
}

bool SearchBaseSource::canForget(const SearchBaseResult &result) const
{
    return services_.recentAccessScore.score(withoutTrailingSlashes(result.path())) > 0 ||
           services_.keptFolders.contains(result.path());
}

void SearchBaseSource::forget(const SearchBaseResult &result)
{
    const bool isReleased = services_.keptFolders.release(result.path());
    const std::string counted(withoutTrailingSlashes(result.path()));
    const bool isForgotten = services_.recentAccessScore.forgetUses(counted);
    isWriteRefused_ = !isReleased || !isForgotten;
}

PanelSource::State SearchBaseSource::state() const
{
    return {.count = services_.searchBase.count(),
            .isBuilding = services_.builder.isBuilding(),
            .isComparing = services_.builder.isComparing(),
            .isCancelled = services_.builder.isCancelled(),
            .hasLocations = services_.builder.hasLocations(),
            .isWriteRefused = isWriteRefused_,
            .away = services_.searchBase.awayFolders()};
}

bool SearchBaseSource::canLeaveOut(const SearchBaseResult &result) const
{
    const std::vector<std::string> extensions =
        services_.finder.includeFilePatternPreferences.values();
    return result.type() == SearchBaseResultType::standard &&
           !services_.finder.bookmarks.load().contains(result.path()) &&
           std::ranges::none_of(extensions, [&](const std::string &extension) {
               return result.path().ends_with("." + extension);
           });
}

bool SearchBaseSource::isFrontWindowSearched() const
{
    return services_.frontFinderSearch.isFinderFrontmost();
}

void SearchBaseSource::refreshFrontWindow(std::function<void()> completion)
{
    services_.frontFinderSearch.refresh(std::move(completion));
}

void SearchBaseSource::forgetFrontWindow()
{
    services_.frontFinderSearch.forget();
}

void SearchBaseSource::addHomeFolder()
{
    isWriteRefused_ = !services_.finder.bookmarks.add(homeFolder_);
    if (!isWriteRefused_)
        services_.builder.start();
}

} // namespace quillon
