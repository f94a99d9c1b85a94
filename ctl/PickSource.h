#pragma once

#include "ctl/OwnIndex.h"
#include "platform/linux/bus/BusRunningInstance.h"
#include "platform/linux/settings/JsonDefaultsStore.h"
#include "results/SearchBaseResult.h"

#include <chrono>
#include <cstddef>
#include <future>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace quillon {

/// Answers queries with the rows of the panel: from the running application while it answers, else
/// from an index of this process, which is made once.
class PickSource
{
public:
    struct Answer
    {
        /// The best row comes first.
        std::vector<SearchBaseResultRef> rows;
        /// The row to select at first, counted from 0.
        std::size_t selected = 0;
    };

    PickSource();
    PickSource(const PickSource &) = delete;
    PickSource &operator=(const PickSource &) = delete;
    ~PickSource() { stop_.request_stop(); }

    /// Finds out who answers. Returns false, with a line on standard error, when nobody can.
    bool prepare();
    /// Returns the rows for a query, which is taken as it was typed. With fewer than two characters
    /// they are what is kept on top and the most used folders, or the home folder before there are
    /// any.
    Answer answer(const std::string &query);
    /// Returns true while folders are still being read, so that rows are missing.
    bool isReading() const { return !haveFoldersBeenRead({}); }
    /// Waits until all folders have been read, and returns false when the time was over before.
    bool haveFoldersBeenRead(std::chrono::milliseconds patience) const
    {
        return !reading_.valid() || reading_.wait_for(patience) == std::future_status::ready;
    }
    /// Returns the path that is clearly meant, if there is one: the path that was typed; the only
    /// row; the first row, when no other row shares with it that its name is what was typed, or
    /// begins with that, or that it was opened before. Nothing is clear while folders are being
    /// read.
    std::optional<std::string> clearPath(const std::string &query, const Answer &answer);

private:
    std::vector<FuzzyMatchResult> results(const std::string &query);
    std::optional<std::vector<FuzzyMatchResult>> askRunningInstance(const std::string &query);
    bool makeOwnIndex();
    bool isThere(const std::string &path);
    /// Returns the query with the home folder in place of a leading tilde.
    std::string expanded(const std::string &query) const;

    BusRunningInstance instance_;
    bool isAnswering_ = true;
    JsonDefaultsStore settings_;
    DefaultsRecentAccessScoreDataStore counts_;
    const bool isInAnyOrder_;
    const std::string home_;
    PosixFolderLister lister_;
    BoundedCalls diskCalls_;
    BoundedFolderLister disk_;
    MatchOrder order_ = MatchOrder::path;
    std::unique_ptr<OwnIndex> index_;
    std::stop_source stop_;
    /// It ends before the index does.
    std::future<void> reading_;
};

} // namespace quillon
