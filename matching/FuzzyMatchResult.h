#pragma once

#include "results/SearchBaseResult.h"

#include <string>
#include <vector>

namespace quillon {

/// A candidate that matches a query, with its rank.
class FuzzyMatchResult
{
public:
    FuzzyMatchResult(std::string text, double score, std::vector<TextRange> highlightRanges);

    const std::string &text() const { return text_; }
    /// Match quality plus the share of all recorded uses; either infinity is possible.
    double score() const { return score_; }
    /// Longest first, without overlaps, each of two characters or more.
    const std::vector<TextRange> &highlightRanges() const { return highlightRanges_; }
    /// Several lines for the log.
    std::string description() const;

    /// Texts and ranges are equal and the scores lie within 0.1 of each other: results that differ
    /// by a small adjustment of the ranking are the same result.
    friend bool operator==(const FuzzyMatchResult &a, const FuzzyMatchResult &b);

private:
    std::string text_;
    double score_;
    std::vector<TextRange> highlightRanges_;
};

/// The shortest decimal form that reads back to the same double; "inf" and "-inf".
std::string shortestDecimal(double value);

} // namespace quillon
