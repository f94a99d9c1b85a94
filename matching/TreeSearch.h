#pragma once

#include "matching/ColumnScorer.h"
#include "matching/PathIndex.h"
#include "matching/RecentAccessScore.h"
#include "matching/TopHits.h"
#include "matching/UnitScorer.h"

#include <atomic>
#include <cstddef>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <unordered_set>
#include <vector>

namespace quillon {

/// Answers one query over the candidates of a tree. It is used once, by one thread, which may start
/// helpers.
class TreeSearch
{
public:
    struct Match
    {
        std::string text;
        double score = 0;
    };

    /// The uses may be null. The query, the index and the uses outlive the search.
    TreeSearch(std::string_view query, const PathIndex &index, const RecentAccessSnapshot *uses,
               std::size_t top);

    /// Returns the best matches, best first. Takes the index's lock shared, in slices.
    std::vector<Match> run(unsigned threads);
    /// Returns true after run() when a writer that was let in between two slices has removed a
    /// match, whose place another text may deserve that was passed over, or has exchanged the tree.
    /// The search is to be made again.
    bool hasLostMatches() const { return hasLostMatches_; }
    /// Runs on this thread alone and lets no writer in until the search has ended.
    std::vector<Match> runInOneGo();

private:
    friend class TreeSearchWorker;

    static constexpr int NO_THRESHOLD = std::numeric_limits<int>::min();

    using NodeId = PathTree::NodeId;

    /// Stands for a node and the siblings behind it, which are all below the parent.
    struct Work
    {
        NodeId parent = PathTree::NONE;
        NodeId first = PathTree::NONE;
    };

    void begin() REQUIRES_SHARED(index_.lock);
    void scoreUsedTexts() REQUIRES_SHARED(index_.lock);
    std::vector<std::jthread> startHelpers(unsigned threads);
    void runWorker() EXCLUDES(index_.lock);
    std::vector<Match> finish() REQUIRES_SHARED(index_.lock);

    // The workers share these.
    bool isWorkWanted() const { return idleWorkers_.load(std::memory_order_relaxed) > 0; }
    void give(const Work &work);
    /// Waits for work, which the caller ends with finishWork(). The work is absent once nobody has
    /// any.
    std::optional<Work> take();
    void finishWork();
    /// Says that no text is wanted any more that scores less.
    void raiseThreshold(double score);
    void collect(const TopHits &hits);

    const std::string_view query_;
    const PathIndex &index_;
    const RecentAccessSnapshot *uses_;
    const std::size_t top_;
    /// Element i holds the classes of byte that a match needs from the query's byte i on.
    std::vector<ByteClassSet> needed_;
    /// The scorer is absent when no text can have a finite score.
    std::optional<ColumnScorer> scorer_;
    /// This scorer is absent for long queries too, since so few texts hold them that each is
    /// scored.
    std::optional<UnitScorer> unitScorer_;
    std::uint64_t generation_ = 0;
    /// Texts with recorded uses are ranked before the walk.
    std::unordered_set<NodeId> used_;
    /// No text that scores fewer units can be among the best.
    std::atomic<int> threshold_ = NO_THRESHOLD;

    Mutex mutex_;
    Condition workOrEnd_;
    std::vector<Work> work_ GUARDED_BY(mutex_);
    unsigned busyWorkers_ GUARDED_BY(mutex_) = 0;
    std::atomic<unsigned> idleWorkers_ = 0;
    std::unique_ptr<TopHits> hits_ GUARDED_BY(mutex_);
    bool letsWritersIn_ = true;
    bool hasLostMatches_ = false;
};

} // namespace quillon
