#pragma once

#include "app/panel/PanelSource.h"
#include "base/BoundedCalls.h"
#include "matching/MatchOrder.h"

#include <string>

namespace quillon {

class FolderLister;
class FrontFinderSearch;
class KeptFolders;
class Places;
class Preferences;
class RecentAccessScore;
class SearchBase;
class SearchBaseBuilder;
class SearchBaseFinder;
class TaskQueue;

/// The search base as the panel sees it.
class SearchBaseSource : public PanelSource
{
public:
    struct Services
    {
        SearchBase &searchBase;
        SearchBaseFinder &finder;
        SearchBaseBuilder &builder;
        FrontFinderSearch &frontFinderSearch;
        const Places &places;
        RecentAccessScore &recentAccessScore;
        /// Counts the uses, in their order.
        TaskQueue &useQueue;
        KeptFolders &keptFolders;
        /// The order of the rows is read at each search.
        const Preferences &preferences;
        /// Asks the disk itself, however long the disk takes. It also outlives the calls that hang.
        FolderLister &disk;
    };

    /// The home folder is an absolute path.
    SearchBaseSource(const Services &services, std::string homeFolder);

    Answer search(const std::string &query) const override;
    std::vector<SearchBaseResultRef> mostAccessedResults() const override;
    std::vector<SearchBaseResultRef> places() const override;
    void recordUse(const SearchBaseResultRef &result) override;
    std::vector<std::string> keptOnTop() const override;
    void keepOnTop(const SearchBaseResult &result, bool isKept) override;
    bool canForget(const SearchBaseResult &result) const override;
    void forget(const SearchBaseResult &result) override;
    State state() const override;
    bool canLeaveOut(const SearchBaseResult &result) const override;
    bool isFrontWindowSearched() const override;
    void refreshFrontWindow(std::function<void()> completion) override;
    void forgetFrontWindow() override;
    void addHomeFolder() override;

private:
    MatchOrder order() const;
    bool isThere(const std::string &path) const;
    int rowOfPath(const std::vector<SearchBaseResultRef> &rows, const std::string &path) const;

    const Services services_;
    const std::string homeFolder_;
    bool isWriteRefused_ = false;
    mutable BoundedCalls diskCalls_;
};

} // namespace quillon
