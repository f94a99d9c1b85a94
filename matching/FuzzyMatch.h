#pragma once

#include "matching/FuzzyMatchResult.h"
#include "matching/MatchOrder.h"
#include "matching/PathIndex.h"
#include "results/SearchBaseResult.h"

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quillon {

class RecentAccessScore;
struct RecentAccessSnapshot;

/// Holds the set of candidate texts and answers queries over it, best match first.
///
/// Every operation may be called from any thread and takes the index's lock: a search takes it
/// shared and in slices, a change takes it exclusively. A batch of changes takes it once, through
/// index().
class FuzzyMatch
{
public:
    /// The score of recent accesses outlives this. Without it, uses play no part.
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

    /// Makes searches faster after many candidates have come in any order, see
    /// PathIndex::arrange(). Takes some tenths of a second for a million of them.
    void arrange();

    /// Returns at most top candidates that hold the pattern as a subsequence, by score descending
    /// and then by text ascending, in byte order; with names first, the shorter of two texts of
    /// equal score comes before. An upper-case letter of the pattern matches only itself, a
    /// lower-case letter matches both cases.
    std::vector<FuzzyMatchResult> match(std::string_view pattern, std::size_t top,
                                        MatchOrder order = MatchOrder::path) const;
    /// Appends further candidates until there are top results: those in which each word of the
    /// pattern occurs in some component as a subsequence, the words in any order and all folded as
    /// in TextFolding.h. They are ranked by the sum of their scores for each word. Appends nothing
    /// for a pattern of more than WordsInAnyOrder::MOST_WORDS words.
    void addWordMatches(std::string_view pattern, std::size_t top, MatchOrder order,
                        std::vector<FuzzyMatchResult> &results) const;
    /// Returns those of the top most used texts that are candidates, the most used one first.
    std::vector<FuzzyMatchResult> mostAccessedResults(std::size_t top) const;
    /// Returns the runs of the text to mark for the pattern.
    std::vector<TextRange> highlights(std::string_view pattern, std::string_view text,
                                      MatchOrder order = MatchOrder::path) const;
    /// Records one use of the result's path. Main thread.
    void uprankResult(const SearchBaseResult &result);

    /// Returns the number of candidates.
    std::size_t count() const;
    /// Returns the memory that the index holds in bytes, slack included.
    std::size_t bytes() const;
    /// Sets how many threads share one search: 1, or 2, which is the default where there are two
    /// cores.
    void setSearchThreads(unsigned threads) { searchThreads_ = threads; }

    /// Returns the tree of the candidates, which the path store shares.
    PathIndex &index() const { return *index_; }

private:
    std::shared_ptr<const RecentAccessSnapshot> uses() const;

    RecentAccessScore *recentAccessScore_;
    std::unique_ptr<PathIndex> index_;
    unsigned searchThreads_;
};

} // namespace quillon
