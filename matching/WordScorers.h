#pragma once

#include "matching/PathTree.h"
#include "matching/QueryProgress.h"
#include "matching/ShortQuery.h"
#include "matching/TopHits.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace quillon {

// A text's score for several words is the sum of its scores for each of them. These types give the
// scorers of an order, one for each word, the form of a single one. Immutable; safe from every
// thread.

template <typename Scorer>
class ScorerForEachWord
{
public:
    using State = std::vector<typename Scorer::State>;

    explicit ScorerForEachWord(std::string_view query)
    {
        for (const std::string_view word : WordsInAnyOrder::wordsOf(query))
            scorers_.emplace_back(word);
    }

    State initialState() const
    {
        State state;
        for (const Scorer &scorer : scorers_)
            state.push_back(scorer.initialState());
        return state;
    }

protected:
    std::vector<Scorer> scorers_;
};

template <typename Rule>
class WordScorers : public ScorerForEachWord<typename Rule::Scorer>
{
    using Each = ScorerForEachWord<typename Rule::Scorer>;
    using Each::scorers_;

public:
    using Each::Each;
    using typename Each::State;

    void extendByName(State &state, std::size_t position, std::string_view name) const
    {
        for (std::size_t i = 0; i < scorers_.size(); ++i)
            scorers_[i].extendByName(state[i], position, name);
    }
    void enterName(State &state, std::size_t position, std::string_view name) const
    {
        for (std::size_t i = 0; i < scorers_.size(); ++i)
            scorers_[i].enterName(state[i], position, name);
    }
    double score(const State &state) const
    {
        double sum = 0;
        for (std::size_t i = 0; i < scorers_.size(); ++i)
            sum += scorers_[i].score(state[i]);
        return Rule::sum(sum);
    }
};

template <typename UnitScorer>
class WordUnitScorers : public ScorerForEachWord<UnitScorer>
{
    using Each = ScorerForEachWord<UnitScorer>;
    using Each::scorers_;

public:
    static constexpr std::size_t LONGEST_QUERY = UnitScorer::LONGEST_QUERY;

    using typename Each::State;
    using Each::Each;

    void enterName(const State &from, State &to, std::size_t position, std::string_view name) const
    {
        to.resize(scorers_.size());
        for (std::size_t i = 0; i < scorers_.size(); ++i)
            scorers_[i].enterName(from[i], to[i], position, name);
    }
    /// The gains for each word follow each other.
    std::size_t gainVectors() const
    {
        std::size_t vectors = 0;
        for (const UnitScorer &scorer : scorers_)
            vectors += scorer.gainVectors();
        return vectors;
    }
    void computeGains(std::string_view name, lanes::Vector *gains) const
    {
        for (const UnitScorer &scorer : scorers_) {
            scorer.computeGains(name, gains);
            gains += scorer.gainVectors();
        }
    }
    int score(const State &state, std::size_t position, const lanes::Vector *gains) const
    {
        int sum = 0;
        for (std::size_t i = 0; i < scorers_.size(); ++i) {
            sum += scorers_[i].score(state[i], position, gains);
            gains += scorers_[i].gainVectors();
        }
        return sum;
    }
    Bounds bounds(const State &state, std::size_t position, const PathTree::Node &node,
                  ByteClassSet below) const
    {
        Bounds sum;
        for (std::size_t i = 0; i < scorers_.size(); ++i) {
            const Bounds word = scorers_[i].bounds(state[i], position, node, below);
            sum.text += word.text;
            sum.below += word.below;
        }
        return sum;
    }

    static int rank(int score, const PathTree::Node &node) { return UnitScorer::rank(score, node); }
    static Bounds ranks(Bounds scores, const PathTree::Node &node, ByteClassSet below)
    {
        return UnitScorer::ranks(scores, node, below);
    }
    static int rankToReach(const Hit &hit) { return UnitScorer::rankToReach(hit); }
};

} // namespace quillon
