#include "app/panel/SearchBaseSource.h"

#include "actions/FrontFinderSearch.h"
#include "core/SearchBase.h"
#include "core/SearchBaseBuilder.h"
#include "indexing/SearchBaseFinder.h"

#include <QDir>

#include <utility>

namespace quillon {

SearchBaseSource::SearchBaseSource(SearchBase &searchBase, SearchBaseFinder &finder,
                                   SearchBaseBuilder &builder, FrontFinderSearch &frontFinderSearch)
    : searchBase_(searchBase),
      finder_(finder),
      builder_(builder),
      frontFinderSearch_(frontFinderSearch)
{}

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
    return {.count = searchBase_.count(),
            .isBuilding = builder_.isBuilding(),
            .hasLocations = builder_.hasLocations()};
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
    builder_.start();
}

} // namespace quillon
