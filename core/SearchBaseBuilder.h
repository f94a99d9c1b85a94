#pragma once

#include "indexing/SearchLocations.h"

#include <chrono>
#include <functional>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace quillon {

class SearchBase;
class SearchBaseFinder;
class TaskQueue;

/// Is called on the main thread as builds go on.
class SearchBaseBuildObserver
{
public:
    SearchBaseBuildObserver() = default;
    virtual ~SearchBaseBuildObserver() = default;
    SearchBaseBuildObserver(const SearchBaseBuildObserver &) = delete;
    SearchBaseBuildObserver &operator=(const SearchBaseBuildObserver &) = delete;

    virtual void buildBegan() {}
    /// One line about the state of the build, as the search base wrote it.
    virtual void buildProgressed(const std::string &) {}
    /// The index of the last run is there, and the build compares it with the disk.
    virtual void indexRestored() {}
    virtual void buildEnded() {}
};

/// Runs the full builds of the search base, one at a time, and one more when an include folder that
/// was away has come back without the watch having noticed. Main thread only; the queues run
/// nothing of it any more when it goes.
class SearchBaseBuilder
{
public:
    /// The time between two looks for the folders that are away.
    static constexpr std::chrono::minutes AWAY_INTERVAL{1};

    struct Services
    {
        SearchBase &searchBase;
        SearchBaseFinder &searchBaseFinder;
        /// The builds run on this queue.
        TaskQueue &background;
        TaskQueue &main;
        std::function<std::chrono::steady_clock::time_point()> now = std::chrono::steady_clock::now;
    };
    struct Build
    {
        SearchLocations locations;
        std::chrono::system_clock::time_point ended;
        std::chrono::duration<double> took{};
    };

    explicit SearchBaseBuilder(const Services &services);

    /// Empties the index and builds it anew; the first time the index of the last run of the
    /// program stands in for it meanwhile. While a build runs, another one follows it if the
    /// settings say something else by then than they did for the running one.
    void start();
    /// Makes a running build end soon. What it has found stays in the index, which then follows no
    /// changes on the disk until the next start().
    void cancel();
    /// Makes a running build end soon; nothing is built afterwards.
    void stop();

    bool isBuilding() const { return isBuilding_; }
    /// Returns true while a build compares the index of the last run with the disk.
    bool isComparing() const { return isBuilding_ && isComparing_; }
    /// Returns true when the last build was cancelled, so that the index is not complete.
    bool isCancelled() const { return !isBuilding_ && stop_.stop_requested(); }
    /// Returns false when the settings named no folder for the last build, there or not.
    bool hasLocations() const { return !lastBuild_ || lastBuild_->locations.nameFolders(); }
    /// How long the running build has been at it.
    std::chrono::duration<double> elapsed() const { return services_.now() - began_; }
    /// The result is absent before the first one has ended.
    const std::optional<Build> &lastBuild() const { return lastBuild_; }

    /// Each is told as long as it is added, and outlives that.
    void addObserver(SearchBaseBuildObserver &observer) { observers_.push_back(&observer); }
    void removeObserver(SearchBaseBuildObserver &observer) { std::erase(observers_, &observer); }

private:
    void begin();
    void build(const std::stop_token &stop, bool mayRestore);
    void buildReturned(const SearchLocations &locations);
    void endUnlessWantedAgain();
    void lookForAwayFolders();
    template <typename... Parameters, typename... Arguments>
    void tell(void (SearchBaseBuildObserver::*what)(Parameters...), const Arguments &...arguments);

    const Services services_;
    /// Nothing is built any more.
    bool isStopped_ = false;
    /// Ends the build that runs, or ended the last one.
    std::stop_source stop_;
    std::vector<SearchBaseBuildObserver *> observers_;
    bool isBuilding_ = false;
    bool isWantedAgain_ = false;
    bool isComparing_ = false;
    /// Counts the builds, so that a look for away folders ends with the build it belongs to.
    unsigned builds_ = 0;
    std::chrono::steady_clock::time_point began_;
    std::optional<Build> lastBuild_;
};

} // namespace quillon
