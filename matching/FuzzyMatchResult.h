#pragma once

#include "results/SearchBaseResult.h"

#include <string>
#include <vector>

namespace quillon {

/// Is a candidate that matches a query, with its score.
class FuzzyMatchResult
{
public:
    FuzzyMatchResult(std::string text, double score, std::vector<TextRange> highlightRanges);

    const std::string &text() const { return text_; }
    /// Returns the match quality plus the share of all recorded uses. Either infinity is possible.
    double score() const { return score_; }
    /// Returns the ranges of the text to mark, see highlightRanges() and namesFirstRanges().
    const std::vector<TextRange> &highlightRanges() const { return highlightRanges_; }
    /// Returns several lines for the log.
    std::string description() const;

    /// Two results are equal when texts and ranges are equal and the scores lie within 0.1 of each
    /// other, so that a small adjustment of the ranking leaves a result the same.
    friend bool operator==(const FuzzyMatchResult &a, const FuzzyMatchResult &b);

private:
    std::string text_;
    double score_;
    std::vector<TextRange> highlightRanges_;
};

/// Returns the shortest decimal form that reads back to the same double, or "inf" or "-inf".
std::string shortestDecimal(double value);

} // namespace quillon
