#pragma once

#include "base/TextFolding.h"
#include "matching/ColumnScorer.h"
#include "matching/FuzzyScore.h"
#include "matching/NamesFirstScore.h"
#include "matching/NamesFirstUnitScorer.h"
#include "matching/QueryProgress.h"
#include "matching/UnitScorer.h"
#include "matching/WordScorers.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quillon {

// Each of these types is all that a search over the tree has to know of an order of rows: which
// texts match, the plain rule, the scorer that carries it from a beginning to what continues it,
// the scorer in whole numbers that finds the few texts that are worth an exact score, and the
// bound.

/// Matches the query's bytes in order. Names are compared as they are.
struct InOrderMatching
{
    using Progress = BytesInOrder;
    static constexpr bool ARE_WORDS_APART = false;

    static std::string_view name(const PathTree &tree, const PathTree::Node &node)
    {
        return tree.name(node);
    }
};

/// Ranks as fuzzyScore() does, texts of equal score by their bytes alone.
struct WholePathRule : InOrderMatching
{
    using Scorer = ColumnScorer;
    using UnitScorer = quillon::UnitScorer;
    /// A text as long as the query that matches it is the best.
    static constexpr bool IS_EQUAL_LENGTH_BEST = true;
    static bool isBest(std::string_view query, std::size_t length)
    {
        return length == query.size();
    }

    static double score(std::string_view query, std::string_view text)
    {
        return fuzzyScore(query, text);
    }
    static double sum(double scores) { return scores; }
    static Hit hit(double score, PathTree::NodeId id, const PathTree::Node &)
    {
        return {.score = score, .node = id};
    }
};

/// Ranks as namesFirstScore() does, texts of equal score by their length and then by their bytes.
struct NamesFirstRule : InOrderMatching
{
    /// Carries the plain rule from name to name. Immutable; safe from every thread.
    class Scorer
    {
    public:
        using State = namesfirst::State;

        explicit Scorer(std::string_view query) : query_(query) {}

        State initialState() const { return State(query_.size()); }
        void extendByName(State &state, std::size_t, std::string_view name) const
        {
            state.passOwnName(query_, name);
        }
        void enterName(State &state, std::size_t, std::string_view name) const
        {
            state.passParent(query_, name);
        }
        double score(const State &state) const
        {
            return static_cast<double>(state.score()) / namesfirst::HUNDREDTHS;
        }

    private:
        const std::string query_;
    };
    using UnitScorer = NamesFirstUnitScorer;
    static constexpr bool IS_EQUAL_LENGTH_BEST = false;
    static bool isBest(std::string_view, std::size_t) { return false; }

    static double score(std::string_view query, std::string_view text)
    {
        return namesFirstScore(query, text);
    }
    /// Sums are whole hundredths as well, so that equal ones are equal as doubles.
    static double sum(double scores)
    {
        return std::round(scores * namesfirst::HUNDREDTHS) / namesfirst::HUNDREDTHS;
    }
    static Hit hit(double score, PathTree::NodeId id, const PathTree::Node &node)
    {
        const bool isScored = score != scoring::SCORE_MIN;
        return {.score = score, .node = id, .length = isScored ? node.textLength : 0U};
    }
};

/// Matches each word of the query in some name, in any order, as foldedWords() and foldedText()
/// give both. Ranks as another rule does, by the sum of a text's scores for each word. The query is
/// the words with single blanks between them.
template <typename Rule>
struct WordsRule
{
    using Progress = WordsInAnyOrder;
    static constexpr bool ARE_WORDS_APART = true;
    using Scorer = WordScorers<Rule>;
    using UnitScorer = typename Rule::UnitScorer;
    static constexpr bool IS_EQUAL_LENGTH_BEST = Rule::IS_EQUAL_LENGTH_BEST;
    static bool isBest(std::string_view query, std::size_t length)
    {
        const auto isBestFor = [length](std::string_view word) {
            return Rule::isBest(word, length);
        };
        return std::ranges::any_of(Progress::wordsOf(query), isBestFor);
    }

    static std::string_view name(const PathTree &tree, const PathTree::Node &node)
    {
        return tree.names().folded(node.name);
    }
    static double score(std::string_view query, std::string_view text)
    {
        const std::optional<std::string> folded = foldedText(text);
        double sum = 0;
        for (const std::string_view word : Progress::wordsOf(query))
            sum += Rule::score(word, folded ? *folded : text);
        return Rule::sum(sum);
    }
    static Hit hit(double score, PathTree::NodeId id, const PathTree::Node &node)
    {
        return Rule::hit(score, id, node);
    }
};

} // namespace quillon
