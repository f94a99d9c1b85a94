#pragma once

#include "matching/PathIndex.h"
#include "matching/RankingRules.h"
#include "matching/RecentAccessScore.h"
#include "matching/TopHits.h"

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

/// Is a text that a search has found.
struct TreeMatch
{
    std::string text;
    double score = 0;
};

template <typename Rule>
class TreeSearchWorker;

/// Answers one query over the candidates of a tree by one of the rules of RankingRules.h. It is
/// used once, by one thread, which may start helpers.
template <typename Rule>
class TreeSearch
{
public:
    /// The uses may be null. The query, the index and the uses outlive the search.
    TreeSearch(std::string_view query, const PathIndex &index, const RecentAccessSnapshot *uses,
               std::size_t top);

    /// Returns the best matches, best first. Takes the index's lock shared, in slices.
    std::vector<TreeMatch> run(unsigned threads);
    /// Returns true after run() when a writer that was let in between two slices has removed a
    /// match, whose place another text may deserve that was passed over, or has exchanged the tree.
    /// The search is to be made again.
    bool hasLostMatches() const { return hasLostMatches_; }
    /// Runs on this thread alone and lets no writer in until the search has ended.
    std::vector<TreeMatch> runInOneGo();

private:
    friend class TreeSearchWorker<Rule>;

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
    std::vector<TreeMatch> finish() REQUIRES_SHARED(index_.lock);

    // The workers share these.
    bool isWorkWanted() const { return idleWorkers_.load(std::memory_order_relaxed) > 0; }
    void give(const Work &work);
    /// Waits for work, which the caller ends with finishWork(). The work is absent once nobody has
    /// any.
    std::optional<Work> take();
    void finishWork();
    /// Keeps the hit if it is one of the best, unless its text has recorded uses. The caller holds
    /// the index's lock shared.
    void add(const Hit &hit) EXCLUDES(mutex_);
    /// Once there are enough hits, no text is wanted any more that is ranked behind the worst.
    void raiseThreshold() REQUIRES(mutex_);

    const std::string_view query_;
    const PathIndex &index_;
    const RecentAccessSnapshot *uses_;
    const std::size_t top_;
    const typename Rule::Progress progress_;
    /// The scorer is absent when no text can have a finite score.
    std::optional<typename Rule::Scorer> scorer_;
    /// This scorer is absent for long queries too, since so few texts hold them that each is
    /// scored.
    std::optional<typename Rule::UnitScorer> unitScorer_;
    std::uint64_t generation_ = 0;
    /// Texts with recorded uses are ranked before the walk.
    std::unordered_set<NodeId> used_;
    /// No text of a lower rank can be among the best.
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

extern template class TreeSearch<WholePathRule>;
extern template class TreeSearch<NamesFirstRule>;
extern template class TreeSearch<WordsRule<WholePathRule>>;
extern template class TreeSearch<WordsRule<NamesFirstRule>>;

} // namespace quillon
