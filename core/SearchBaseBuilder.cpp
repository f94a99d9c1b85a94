#include "core/SearchBaseBuilder.h"

#include "base/TaskQueue.h"
#include "core/SearchBase.h"
#include "indexing/SearchBaseFinder.h"

#include <algorithm>
#include <utility>

namespace quillon {

SearchLocations SearchLocations::of(SearchBaseFinder &finder)
{
    SearchLocations locations{.folders = {},
                              .excludePatterns = finder.excludePatternsPreferences.values(),
                              .filePatterns = finder.includeFilePatternPreferences.values()};
    for (const IncludePathSearchBaseLocation &location : finder.includeLocations())
        locations.folders.push_back(location.url());
    return locations;
}

SearchBaseBuilder::SearchBaseBuilder(const Services &services) : services_(services) {}

void SearchBaseBuilder::start()
{
    if (isBuilding_)
        isWantedAgain_ = true;
    else
        begin();
}

void SearchBaseBuilder::begin()
{
    if (stop_.stop_requested())
        return;
    isBuilding_ = true;
    isWantedAgain_ = false;
    began_ = services_.now();
    services_.searchBase.reset();
    services_.background.post([this] { build(); });
    tell(&SearchBaseBuildObserver::buildBegan);
}

/// On the background queue.
void SearchBaseBuilder::build()
{
    // Read before the build reads them: a change in between costs a needless build, not a lost one.
    SearchLocations locations = SearchLocations::of(services_.searchBaseFinder);
    services_.searchBase.build(
        [this](const std::string &line) {
            services_.main.post(
                [this, line] { tell(&SearchBaseBuildObserver::buildProgressed, line); });
        },
        stop_.get_token());
    services_.main.post([this, locations = std::move(locations)]() mutable {
        buildReturned(std::move(locations));
    });
}

void SearchBaseBuilder::buildReturned(SearchLocations locations)
{
    lastBuild_ = {.locations = std::move(locations),
                  .ended = std::chrono::system_clock::now(),
                  .took = elapsed()};
    endUnlessWantedAgain();
}

void SearchBaseBuilder::endUnlessWantedAgain()
{
    if (!std::exchange(isWantedAgain_, false) || stop_.stop_requested()) {
        isBuilding_ = false;
        return tell(&SearchBaseBuildObserver::buildEnded);
    }
    services_.background.post([this] {
        services_.main.post([this, current = SearchLocations::of(services_.searchBaseFinder)] {
            if (current == lastBuild_->locations)
                endUnlessWantedAgain();
            else
                begin();
        });
    });
}

template <typename... Parameters, typename... Arguments>
void SearchBaseBuilder::tell(void (SearchBaseBuildObserver::*what)(Parameters...),
                             const Arguments &...arguments)
{
    // One that is told may add or remove others.
    for (SearchBaseBuildObserver *observer : std::vector(observers_)) {
        if (std::ranges::find(observers_, observer) != observers_.end())
            (observer->*what)(arguments...);
    }
}

} // namespace quillon
