#pragma once

#include "core/SearchBaseBuilder.h"
#include "platform/RemoteSearch.h"

#include <atomic>
#include <string>

namespace quillon {

class Preferences;
class RecentAccessScore;
class SearchBase;

/// Answers other processes from the index, such as the program for the terminal, as long as it
/// holds everything that the settings name.
class IndexAnswers : private SearchBaseBuildObserver
{
public:
    /// All of them outlive this object.
    IndexAnswers(const SearchBase &searchBase, SearchBaseBuilder &builder,
                 RecentAccessScore &recentAccessScore, const Preferences &preferences);
    ~IndexAnswers() override;

    /// Returns nothing when the asker has other settings or has to search on its own. Any thread
    /// may call this.
    RemoteAnswer find(const RemoteQuery &query) const;
    /// Counts a use from outside the panel. Returns false when the settings are others or the use
    /// could not be stored.
    bool recordUse(const std::string &settings, const std::string &path);

private:
    void buildBegan() override { isComplete_ = false; }
    void indexRestored() override { isComplete_ = true; }
    void buildEnded() override;

    const SearchBase &searchBase_;
    SearchBaseBuilder &builder_;
    RecentAccessScore &recentAccessScore_;
    const Preferences &preferences_;
    std::atomic<bool> isComplete_ = false;
};

} // namespace quillon
