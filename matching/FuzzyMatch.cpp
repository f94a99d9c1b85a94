#include "matching/FuzzyMatch.h"

#include "base/TextFolding.h"
#include "matching/Highlights.h"
#include "matching/RecentAccessScore.h"
#include "matching/TreeSearch.h"

#include <climits>

#include <algorithm>
#include <thread>
#include <unordered_set>

namespace quillon {

namespace {

/// More threads than these gain little, since a search is a few milliseconds of reading memory.
constexpr unsigned MOST_SEARCH_THREADS = 2;
/// A search that has lost matches to a writer this often keeps writers out the next time, so that a
/// stream of removals does not keep it from its end.
constexpr int MOST_LOSSES = 2;
constexpr double MOST_ACCESSED_SCORE = 1.0;

template <typename Rule>
std::vector<TreeMatch> searched(const PathIndex &index, std::string_view pattern,
                                const RecentAccessSnapshot *uses, std::size_t top, unsigned threads)
{
    for (int losses = 0; losses < MOST_LOSSES; ++losses) {
        TreeSearch<Rule> search(pattern, index, uses, top);
        std::vector<TreeMatch> matches = search.run(threads);
        if (!search.hasLostMatches())
            return matches;
    }
    return TreeSearch<Rule>(pattern, index, uses, top).runInOneGo();
}

} // namespace

FuzzyMatch::FuzzyMatch(RecentAccessScore *recentAccessScore)
    : recentAccessScore_(recentAccessScore),
      index_(std::make_unique<PathIndex>()),
      searchThreads_(std::clamp(std::thread::hardware_concurrency(), 1U, MOST_SEARCH_THREADS))
{}

void FuzzyMatch::reset()
{
    const WritingIndex writing(index_->lock);
    index_->tree.removeFlagsEverywhere(PathTree::CANDIDATE);
}

void FuzzyMatch::add(std::string_view result)
{
    add(std::span(&result, 1));
}

void FuzzyMatch::add(std::span<const std::string_view> results)
{
    const WritingIndex writing(index_->lock);
    for (const std::string_view result : results)
        index_->tree.insert(result, PathTree::CANDIDATE);
}

void FuzzyMatch::remove(std::string_view result)
{
    const WritingIndex writing(index_->lock);
    const PathTree::NodeId node = index_->tree.find(result);
    if (node != PathTree::NONE)
        index_->tree.removeFlags(node, PathTree::CANDIDATE);
}

void FuzzyMatch::arrange()
{
    index_->arrange();
}

std::vector<FuzzyMatchResult> FuzzyMatch::match(std::string_view pattern, std::size_t top,
                                                MatchOrder order) const
{
    const auto search =
        order == MatchOrder::names ? searched<NamesFirstRule> : searched<WholePathRule>;
    std::vector<FuzzyMatchResult> results;
    for (TreeMatch &match : search(*index_, pattern, uses().get(), top, searchThreads_)) {
        std::vector<TextRange> ranges = highlights(pattern, match.text, order);
        results.emplace_back(std::move(match.text), match.score, std::move(ranges));
    }
    return results;
}

void FuzzyMatch::addWordMatches(std::string_view pattern, std::size_t top, MatchOrder order,
                                std::vector<FuzzyMatchResult> &results) const
{
    const std::vector<std::string> words = foldedWords(pattern);
    if (results.size() >= top || words.empty() || words.size() > WordsInAnyOrder::MOST_WORDS)
        return;
    std::string query;
    for (const std::string &word : words)
        query.append(query.empty() ? "" : " ").append(word);
    std::unordered_set<std::string> found;
    for (const FuzzyMatchResult &result : results)
        found.insert(result.text());
    const auto search = order == MatchOrder::names ? searched<WordsRule<NamesFirstRule>>
                                                   : searched<WordsRule<WholePathRule>>;
    for (TreeMatch &match : search(*index_, query, uses().get(), top, searchThreads_)) {
        if (results.size() == top || found.contains(match.text))
            continue;
        std::vector<TextRange> ranges = wordRanges(words, match.text);
        results.emplace_back(std::move(match.text), match.score, std::move(ranges));
    }
}

std::shared_ptr<const RecentAccessSnapshot> FuzzyMatch::uses() const
{
    return recentAccessScore_ == nullptr ? nullptr : recentAccessScore_->snapshot();
}

std::vector<FuzzyMatchResult> FuzzyMatch::mostAccessedResults(std::size_t top) const
{
    std::vector<FuzzyMatchResult> results;
    if (recentAccessScore_ == nullptr)
        return results;
    const std::vector<std::string> paths =
        recentAccessScore_->topScores(static_cast<int>(std::min<std::size_t>(top, INT_MAX)));
    const ReadingIndex reading(index_->lock);
    for (const std::string &path : paths) {
        const PathTree::NodeId node = index_->tree.find(path);
        if (node != PathTree::NONE && (index_->tree.node(node).flags & PathTree::CANDIDATE) != 0)
            results.emplace_back(path, MOST_ACCESSED_SCORE, std::vector<TextRange>());
    }
    return results;
}

std::vector<TextRange> FuzzyMatch::highlights(std::string_view pattern, std::string_view text,
                                              MatchOrder order) const
{
    return order == MatchOrder::names ? namesFirstRanges(pattern, text)
                                      : highlightRanges(pattern, text);
}

void FuzzyMatch::uprankResult(const SearchBaseResult &result)
{
    if (recentAccessScore_ != nullptr)
        recentAccessScore_->addRecentAccess(result);
}

std::size_t FuzzyMatch::count() const
{
    const ReadingIndex reading(index_->lock);
    return index_->tree.count(PathTree::CANDIDATE);
}

std::size_t FuzzyMatch::bytes() const
{
    const ReadingIndex reading(index_->lock);
    return index_->tree.bytes();
}

} // namespace quillon
