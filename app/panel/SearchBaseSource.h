#pragma once

#include "app/panel/PanelSource.h"

#include <atomic>
#include <functional>
#include <stop_token>

namespace quillon {

class FrontFinderSearch;
class SearchBase;
class SearchBaseFinder;
class TaskQueue;

/// The search base as the panel sees it, and the builds that fill it.
class SearchBaseSource : public PanelSource
{
public:
    /// Builds run on the background queue; what comes of them is told through the main one.
    SearchBaseSource(SearchBase &searchBase, SearchBaseFinder &finder,
                     FrontFinderSearch &frontFinderSearch, TaskQueue &background, TaskQueue &main);

    /// Calls back on the main thread when a build begins, knows its folders, or ends. One receiver.
    void onChange(std::function<void()> changed) { changed_ = std::move(changed); }
    /// Empties the index and crawls every include folder anew; nothing while a build runs.
    void startBuilding();
    /// Makes a running build end soon; nothing is built afterwards.
    void stop() { stop_.request_stop(); }

    std::vector<SearchBaseResultRef> search(const std::string &query) const override;
    std::vector<SearchBaseResultRef> mostAccessedResults() const override;
    void recordUse(const SearchBaseResultRef &result) override;
    State state() const override;
    bool isFrontWindowSearched() const override;
    void refreshFrontWindow(std::function<void()> completion) override;
    void forgetFrontWindow() override;
    void addHomeFolder() override;

private:
    void build();
    void tellChange();

    SearchBase &searchBase_;
    SearchBaseFinder &finder_;
    FrontFinderSearch &frontFinderSearch_;
    TaskQueue &background_;
    TaskQueue &main_;
    std::function<void()> changed_;
    std::stop_source stop_;
    std::atomic<bool> isBuilding_ = false;
    std::atomic<bool> hasLocations_ = true;
};

} // namespace quillon
