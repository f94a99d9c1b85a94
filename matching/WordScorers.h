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

} // namespace quillon
