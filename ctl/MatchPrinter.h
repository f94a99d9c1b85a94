#pragma once

#include "matching/FuzzyMatchResult.h"

#include <vector>

namespace quillon {

class Output;

/// Says how matches are printed: paths, one a line, unless it says otherwise.
struct MatchFormat
{
    /// If true, what is read and printed ends with NUL instead of a line feed.
    bool nulSeparated = false;
    /// If true, the answer is one array of objects.
    bool json = false;
    /// If true, a line is the score, the path and the ranges to mark, separated by tabs.
    bool scores = false;
    /// If true, paths are relative to the working directory.
    bool relative = false;

    char ending() const { return nulSeparated ? '\0' : '\n'; }
};

/// Prints the matches in their order. Plain paths on a terminal have their matched letters marked,
/// and no characters in them that the terminal would obey.
void print(const std::vector<FuzzyMatchResult> &results, const MatchFormat &format, Output &output);

} // namespace quillon
