#pragma once

#include "matching/QueryProgress.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace quillon {

/// Gives the scorers of an order, one for each word of a query, the form of a single one: a text's
/// score for several words is the sum of its scores for each of them. Immutable; safe from every
/// thread.
template <typename Rule>
class WordScorers
{
public:
    using State = std::vector<typename Rule::Scorer::State>;

    explicit WordScorers(std::string_view query)
    {
        for (const std::string_view word : WordsInAnyOrder::wordsOf(query))
            scorers_.emplace_back(word);
    }

    State initialState() const
    {
        State state;
        for (const typename Rule::Scorer &scorer : scorers_)
            state.push_back(scorer.initialState());
        return state;
    }
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

private:
    std::vector<typename Rule::Scorer> scorers_;
};

} // namespace quillon
