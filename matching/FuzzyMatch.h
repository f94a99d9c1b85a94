#pragma once

#include "matching/FuzzyMatchResult.h"
#include "matching/PathIndex.h"
#include "results/SearchBaseResult.h"

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quillon {

class RecentAccessScore;

/// The set of candidate texts and the ranked answers to queries over it.
///
/// Every operation may be called from any thread: each takes the index's lock, searches shared and
/// in slices, changes exclusively. Batches of changes take that lock once, through index().
class FuzzyMatch
{
public:
    /// recentAccessScore outlives this; without one, uses play no part.
    explicit FuzzyMatch(RecentAccessScore *recentAccessScore = nullptr);
    FuzzyMatch(const FuzzyMatch &) = delete;
    FuzzyMatch &operator=(const FuzzyMatch &) = delete;

    /// Forgets every candidate; the use counts stay.
    void reset();
    /// A text already present is not added again.
    void add(std::string_view result);
    void add(std::span<const std::string_view> results);
    /// An absent text is ignored.
    void remove(std::string_view result);

    /// Makes searches faster after a large list has come in any order, see PathIndex::arrange().
    void arrange();

    /// The best candidates that hold the pattern as a subsequence: score descending, then text
    /// ascending by bytes; at most top of them. An upper-case letter of the pattern matches only
    /// itself, a lower-case one both.
    std::vector<FuzzyMatchResult> match(std::string_view pattern, std::size_t top) const;
    /// The most used texts that are candidates, most used first, out of the top most used ones.
    std::vector<FuzzyMatchResult> mostAccessedResults(std::size_t top) const;
    /// The runs of text to mark for the pattern.
    std::vector<TextRange> highlights(std::string_view pattern, std::string_view text) const;
    /// Records one use of the result's path. Main thread.
    void uprankResult(const SearchBaseResult &result);

    /// Number of candidates.
    std::size_t count() const;
    /// Memory held by the index, slack included.
    std::size_t bytes() const;
    /// Threads that share one search: 1, or 2 (the default where there are two cores).
    void setSearchThreads(unsigned threads) { searchThreads_ = threads; }

    /// The tree behind the candidates, shared with the path store.
    PathIndex &index() const { return *index_; }

private:
    RecentAccessScore *recentAccessScore_;
    std::unique_ptr<PathIndex> index_;
    unsigned searchThreads_;
};

} // namespace quillon
