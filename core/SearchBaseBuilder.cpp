#include "core/SearchBaseBuilder.h"

#include "base/TaskQueue.h"
#include "core/SearchBase.h"
#include "indexing/SearchBaseFinder.h"

#include <algorithm>
#include <utility>

namespace quillon {

SearchBaseBuilder::SearchBaseBuilder(const Services &services) : services_(services) {}

void SearchBaseBuilder::start()
{
    if (isBuilding_)
        isWantedAgain_ = true;
    else
        begin();
}

void SearchBaseBuilder::cancel()
{
    isWantedAgain_ = false;
    if (isBuilding_)
        stop_.request_stop();
}

void SearchBaseBuilder::stop()
{
    isStopped_ = true;
    stop_.request_stop();
}

void SearchBaseBuilder::begin()
{
    if (isStopped_)
        return;
    stop_ = std::stop_source();
    isBuilding_ = true;
    isWantedAgain_ = false;
    isComparing_ = false;
    const bool isFirst = builds_++ == 0;
    began_ = services_.now();
    services_.searchBase.reset();
    services_.background.post([this, stop = stop_.get_token(), isFirst] { build(stop, isFirst); });
    tell(&SearchBaseBuildObserver::buildBegan);
}

/// This runs on the background queue.
void SearchBaseBuilder::build(const std::stop_token &stop, bool mayRestore)
{
    if (mayRestore && services_.searchBase.restore())
        services_.main.post([this] {
            isComparing_ = isBuilding_;
            tell(&SearchBaseBuildObserver::indexRestored);
        });
    services_.searchBase.build(
        [this](const std::string &line) {
            services_.main.post(
                [this, line] { tell(&SearchBaseBuildObserver::buildProgressed, line); });
        },
        stop);
    services_.main.post(
        [this, locations = services_.searchBase.locations()] { buildReturned(*locations); });
    services_.searchBase.keep();
}

void SearchBaseBuilder::buildReturned(const SearchLocations &locations)
{
    lastBuild_ = {
        .locations = locations, .ended = std::chrono::system_clock::now(), .took = elapsed()};
    endUnlessWantedAgain();
}

void SearchBaseBuilder::endUnlessWantedAgain()
{
    if (!std::exchange(isWantedAgain_, false) || isStopped_) {
        isBuilding_ = false;
        lookForAwayFolders();
        return tell(&SearchBaseBuildObserver::buildEnded);
    }
    // A build requested after the running one was cancelled still needs to run.
    if (stop_.stop_requested())
        return begin();
    services_.background.post([this] {
        services_.main.post([this, current = SearchLocations::of(services_.searchBaseFinder)] {
            if (current == lastBuild_->locations)
                endUnlessWantedAgain();
            else
                begin();
        });
    });
}

void SearchBaseBuilder::lookForAwayFolders()
{
    if (stop_.stop_requested() || services_.searchBase.awayFolders().empty())
        return;
    const auto isLast = [this, build = builds_] { return !isBuilding_ && build == builds_; };
    services_.main.postDelayed(AWAY_INTERVAL, [this, isLast] {
        if (!isLast())
            return;
        services_.background.post([this, isLast] {
            const bool hasOneCome = std::ranges::any_of(
                services_.searchBase.awayFolders(), [this](const std::string &folder) {
                    return services_.searchBaseFinder.bookmarks.presence(folder) ==
                           FolderPresence::there;
                });
            services_.main.post([this, isLast, hasOneCome] {
                if (!isLast())
                    return;
                if (hasOneCome)
                    start();
                else
                    lookForAwayFolders();
            });
        });
    });
}

template <typename... Parameters, typename... Arguments>
void SearchBaseBuilder::tell(void (SearchBaseBuildObserver::*what)(Parameters...),
                             const Arguments &...arguments)
{
    // An observer may add or remove others.
    for (SearchBaseBuildObserver *observer : std::vector(observers_)) {
        if (std::ranges::find(observers_, observer) != observers_.end())
            (observer->*what)(arguments...);
    }
}

} // namespace quillon
