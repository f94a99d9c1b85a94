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

/// Hears on the main thread how builds proceed.
class SearchBaseBuildObserver
{
public:
    SearchBaseBuildObserver() = default;
    virtual ~SearchBaseBuildObserver() = default;
    SearchBaseBuildObserver(const SearchBaseBuildObserver &) = delete;
    SearchBaseBuildObserver &operator=(const SearchBaseBuildObserver &) = delete;

    virtual void buildBegan() {}
    /// Receives one line about the state of the build, as the search base wrote it.
    virtual void buildProgressed(const std::string &) {}
    /// The index of the last run has been restored, and the build compares it with the disk.
    virtual void indexRestored() {}
    virtual void buildEnded() {}
};

/// Runs the full builds of the search base, one at a time. Runs one more when an include folder
/// that was missing has come back unnoticed by the watch. Main thread only. By the time of its
/// destruction, the queues no longer run any of its tasks.
class SearchBaseBuilder
{
public:
    /// The time between two checks for the folders that are missing.
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

    /// Empties the index and builds it anew. The first time, the index of the last run of the
    /// program is used until the build has ended. If a build is already running and the settings
    /// have changed since it began, another build follows it.
    void start();
    /// Makes a running build end soon. What it has found stays in the index, but changes on the
    /// disk do not update the index until the next start().
    void cancel();
    /// Makes a running build end soon; nothing is built afterwards.
    void stop();

    bool isBuilding() const { return isBuilding_; }
    /// Returns true while a build compares the index of the last run with the disk.
    bool isComparing() const { return isBuilding_ && isComparing_; }
    /// Returns true when the last build was cancelled, so that the index is not complete.
    bool isCancelled() const { return !isBuilding_ && stop_.stop_requested(); }
    /// Returns false when the settings named no folder for the last build. A missing folder counts.
    bool hasLocations() const { return !lastBuild_ || lastBuild_->locations.nameFolders(); }
    /// Returns how long the running build has taken so far.
    std::chrono::duration<double> elapsed() const { return services_.now() - began_; }
    /// Returns nothing before the first build has ended.
    const std::optional<Build> &lastBuild() const { return lastBuild_; }

    /// The observer hears of builds until it is removed, and outlives that time.
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
    /// True once nothing may be built any more.
    bool isStopped_ = false;
    /// Ends the build that runs, or ended the last one.
    std::stop_source stop_;
    std::vector<SearchBaseBuildObserver *> observers_;
    bool isBuilding_ = false;
    bool isWantedAgain_ = false;
    bool isComparing_ = false;
    /// The number of builds so far, so that a check for missing folders ends with its build.
    unsigned builds_ = 0;
    std::chrono::steady_clock::time_point began_;
    std::optional<Build> lastBuild_;
};

} // namespace quillon
