#include "app/panel/SearchBaseSource.h"

#include "actions/FrontFinderSearch.h"
#include "core/SearchBase.h"
#include "indexing/SearchBaseFinder.h"
#include "platform/TaskQueue.h"

#include <QDir>

#include <utility>

namespace quillon {

SearchBaseSource::SearchBaseSource(SearchBase &searchBase, SearchBaseFinder &finder,
                                   FrontFinderSearch &frontFinderSearch, TaskQueue &background,
                                   TaskQueue &main)
    : searchBase_(searchBase),
      finder_(finder),
      frontFinderSearch_(frontFinderSearch),
      background_(background),
      main_(main)
{}

void SearchBaseSource::startBuilding()
{
    if (isBuilding_.exchange(true))
        return;
    background_.post([this] { build(); });
    tellChange();
}

void SearchBaseSource::build()
{
    hasLocations_ = !finder_.includeLocations().empty();
    searchBase_.reset();
    searchBase_.build([](const std::string &) {}, stop_.get_token());
    isBuilding_ = false;
    tellChange();
}

void SearchBaseSource::tellChange()
{
    main_.post([this] {
        if (changed_)
            changed_();
    });
}

std::vector<SearchBaseResultRef> SearchBaseSource::search(const std::string &query) const
{
    return searchBase_.search(query);
}

std::vector<SearchBaseResultRef> SearchBaseSource::mostAccessedResults() const
{
    return searchBase_.mostAccessedResults();
}

void SearchBaseSource::recordUse(const SearchBaseResultRef &result)
{
    searchBase_.searchBaseMatcher().uprankResult(*result);
}

PanelSource::State SearchBaseSource::state() const
{
    return {.count = searchBase_.count(), .isBuilding = isBuilding_, .hasLocations = hasLocations_};
}

bool SearchBaseSource::isFrontWindowSearched() const
{
    return frontFinderSearch_.isFinderFrontmost();
}

void SearchBaseSource::refreshFrontWindow(std::function<void()> completion)
{
    frontFinderSearch_.refresh(std::move(completion));
}

void SearchBaseSource::forgetFrontWindow()
{
    frontFinderSearch_.forget();
}

void SearchBaseSource::addHomeFolder()
{
    finder_.bookmarks.add(QDir::homePath().toStdString());
    hasLocations_ = true;
    startBuilding();
}

} // namespace quillon
