#include "matching/FuzzyMatchResult.h"

#include <array>
#include <charconv>
#include <utility>

namespace quillon {

namespace {

constexpr double EQUAL_SCORE_TOLERANCE = 0.1;

} // namespace

std::string shortestDecimal(double value)
{
    std::array<char, 32> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr;
    return {buffer.data(), end};
}

FuzzyMatchResult::FuzzyMatchResult(std::string text, double score,
                                   std::vector<TextRange> highlightRanges)
    : text_(std::move(text)), score_(score), highlightRanges_(std::move(highlightRanges))
{}

std::string FuzzyMatchResult::description() const
{
    std::string ranges;
    for (const TextRange &range : highlightRanges_) {
        if (!ranges.empty())
            ranges += ',';
        ranges += "NSRange(location: " + std::to_string(range.location) +
                  ", length: " + std::to_string(range.length) + ")";
    }
    return "FuzzyMatchResult(\n    text: \"" + text_ +
           "\",\n    score: " + shortestDecimal(score_) + ",\n    highlightRanges: [" + ranges +
           "]\n)";
}

bool operator==(const FuzzyMatchResult &a, const FuzzyMatchResult &b)
{
    return a.text_ == b.text_ && b.score_ - EQUAL_SCORE_TOLERANCE <= a.score_ &&
           a.score_ <= b.score_ + EQUAL_SCORE_TOLERANCE && a.highlightRanges_ == b.highlightRanges_;
}

} // namespace quillon
