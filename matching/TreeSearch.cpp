#include "matching/TreeSearch.h"

#include "matching/FuzzyScore.h"
#include "matching/TreeSearchWorker.h"

#include <algorithm>
#include <system_error>
#include <thread>

namespace quillon {

namespace {

/// For fewer candidates a second thread costs more than it saves, since starting one takes some 30
/// microseconds.
constexpr std::size_t FEWEST_CANDIDATES_FOR_HELPERS = 20'000;

} // namespace

template <typename Rule>
TreeSearch<Rule>::TreeSearch(std::string_view query, const PathIndex &index,
                             const RecentAccessSnapshot *uses, std::size_t top)
    : query_(query), index_(index), uses_(uses), top_(top), progress_(query)
{
    if (!query.empty() && query.size() <= scoring::MAX_LENGTH)
        scorer_.emplace(query);
    if (scorer_ && query.size() <= Rule::UnitScorer::LONGEST_QUERY)
        unitScorer_.emplace(Rule::Progress::wordsOf(query));
}

template <typename Rule>
std::vector<TreeMatch> TreeSearch<Rule>::run(unsigned threads)
{
    if (top_ == 0)
        return {};
    index_.lock.lockShared();
    begin();
    if (index_.tree.count(PathTree::CANDIDATE) < FEWEST_CANDIDATES_FOR_HELPERS)
        threads = 1;
    index_.lock.unlockShared();
    {
        const std::vector<std::jthread> helpers = startHelpers(threads);
        runWorker();
    }
    const ReadingIndex reading(index_.lock);
    return finish();
}

template <typename Rule>
std::vector<TreeMatch> TreeSearch<Rule>::runInOneGo()
{
    letsWritersIn_ = false;
    const ReadingIndex reading(index_.lock);
    begin();
    TreeSearchWorker<Rule> worker(*this);
    while (const std::optional<Work> work = take()) {
        worker.walk(*work);
        finishWork();
    }
    return finish();
}

/// Starts fewer threads where the system has none to give: the caller's own finds everything alone.
template <typename Rule>
std::vector<std::jthread> TreeSearch<Rule>::startHelpers(unsigned threads)
{
    std::vector<std::jthread> helpers;
    try {
        for (unsigned i = 1; i < threads; ++i)
            helpers.emplace_back([this] { runWorker(); });
    } catch (const std::system_error &) {
        return helpers;
    }
    return helpers;
}

template <typename Rule>
void TreeSearch<Rule>::begin()
{
    index_.tree.pin();
    generation_ = index_.tree.generation();
    {
        const MutexLock guard(mutex_);
        hits_ = std::make_unique<TopHits>(index_.tree, top_);
        work_.push_back({PathTree::ROOT, index_.tree.firstChild(PathTree::ROOT)});
    }
    if (uses_ != nullptr && uses_->totalUsages > 0)
        scoreUsedTexts();
}

template <typename Rule>
void TreeSearch<Rule>::scoreUsedTexts()
{
    // These texts are scored apart, so that their shares never loosen the bound for the others.
    const MutexLock guard(mutex_);
    for (const auto &[text, count] : uses_->counts) {
        if (!progress_.isHeldBy(text))
            continue;
        const NodeId node = index_.tree.find(text);
        if (node == PathTree::NONE || (index_.tree.node(node).flags & PathTree::CANDIDATE) == 0)
            continue;
        used_.insert(node);
        hits_->add(Rule::hit(Rule::score(query_, text) + uses_->share(text), node,
                             index_.tree.node(node)));
    }
    raiseThreshold();
}

template <typename Rule>
void TreeSearch<Rule>::runWorker()
{
    TreeSearchWorker<Rule> worker(*this);
    while (const std::optional<Work> work = take()) {
        {
            const ReadingIndex reading(index_.lock);
            if (index_.tree.generation() == generation_)
                worker.walk(*work);
        }
        finishWork();
    }
}

template <typename Rule>
void TreeSearch<Rule>::give(const Work &work)
{
    {
        const MutexLock guard(mutex_);
        work_.push_back(work);
    }
    workOrEnd_.notifyOne();
}

template <typename Rule>
auto TreeSearch<Rule>::take() -> std::optional<Work>
{
    const MutexLock guard(mutex_);
    idleWorkers_.fetch_add(1, std::memory_order_relaxed);
    while (work_.empty() && busyWorkers_ > 0)
        workOrEnd_.wait(mutex_);
    idleWorkers_.fetch_sub(1, std::memory_order_relaxed);
    if (work_.empty())
        return std::nullopt;
    const Work work = work_.back();
    work_.pop_back();
    ++busyWorkers_;
    return work;
}

template <typename Rule>
void TreeSearch<Rule>::finishWork()
{
    {
        const MutexLock guard(mutex_);
        if (--busyWorkers_ > 0 || !work_.empty())
            return;
    }
    workOrEnd_.notifyAll();
}

template <typename Rule>
void TreeSearch<Rule>::add(const Hit &hit)
{
    if (used_.contains(hit.node))
        return;
    const MutexLock guard(mutex_);
    hits_->add(hit);
    raiseThreshold();
}

template <typename Rule>
void TreeSearch<Rule>::raiseThreshold()
{
    if (hits_->isFull())
        threshold_.store(Rule::UnitScorer::rankToReach(hits_->worst()), std::memory_order_relaxed);
}

template <typename Rule>
std::vector<TreeMatch> TreeSearch<Rule>::finish()
{
    index_.tree.unpin();
    std::vector<TreeMatch> matches;
    hasLostMatches_ = index_.tree.generation() != generation_;
    if (hasLostMatches_)
        return matches;
    const MutexLock guard(mutex_);
    for (const Hit &hit : hits_->takeSorted()) {
        if ((index_.tree.node(hit.node).flags & PathTree::CANDIDATE) != 0)
            matches.push_back({index_.tree.text(hit.node), hit.score});
        else
            hasLostMatches_ = true;
    }
    return matches;
}

template class TreeSearch<WholePathRule>;
template class TreeSearch<NamesFirstRule>;
template class TreeSearch<WordsRule<WholePathRule>>;
template class TreeSearch<WordsRule<NamesFirstRule>>;

} // namespace quillon
