#pragma once

#include "platform/linux/watching/CrawlNotes.h"
#include "platform/linux/watching/FolderVerifier.h"

#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

namespace quillon {

/// Asks for the watches of folders that the tree has without one: those that a crawl has entered,
/// and those for which the budget has room again. Not locked.
class WatchArming
{
public:
    using Id = WatchTree::Id;

    struct Hooks
    {
        /// It is called between folders. Returns false when the work is to end.
        std::function<bool()> goesOn;
        /// Reads and notes all events so far, so that what was reported for a folder is not lost
        /// together with its watch.
        std::function<void()> drain;
    };

    WatchArming(WatchedFolders &folders, FolderVerifier &verifier, OpenQuestions &questions,
                Hooks hooks);

    /// Enters a root or another folder that a crawl has listed; armCrawled() then asks for its
    /// watch. Returns NONE when nothing below it is entered.
    Id enterCrawled(Id parent, std::string_view name, const CrawledFolder &crawled);
    /// Arms the folders that a crawl has listed, as far as the budget goes, the roots first, and
    /// lists those again that have changed since. The time is the beginning of the crawl, in
    /// nanoseconds since 1970.
    void armCrawled(std::int64_t crawledSince);
    /// Gives the watches that the budget allows to the folders nearest to the roots.
    void fitToBudget();

private:
    /// A folder that a crawl has listed and that has neither a watch nor a known stamp yet.
    struct Listed
    {
        Id id = WatchTree::NONE;
        /// The stamp that was taken before the folder was listed; unknown when it was not listed.
        FolderStamp stamp;
        /// The sum of itemHash() over its items.
        std::uint64_t items = 0;
    };
    enum class Outcome
    {
        done,
        /// The folder has to be listed again.
        changed,
        /// There is no such folder any more.
        gone,
    };
    /// The folders that are to get watches, those nearest to the roots first, and the folders that
    /// are to lose theirs.
    struct Exchange
    {
        std::vector<Id> arm;
        std::vector<Id> give;
    };

    Outcome armOne(const Listed &listed, std::int64_t crawledSince);
    Exchange planned() const;
    void armInOrder(const std::vector<Id> &ids);

    WatchedFolders &folders_;
    WatchTree &tree_;
    FolderVerifier &verifier_;
    OpenQuestions &questions_;
    const Hooks hooks_;
    /// These folders wait for armCrawled(), in the order of the crawl.
    std::vector<Listed> listed_;
};

} // namespace quillon
