#pragma once

#include "results/SearchBaseResult.h"

#include <string>
#include <string_view>
#include <vector>

namespace quillon {

/// The ranges of the text to mark for a query, longest first and the later of two equally long ones
/// first, since the end of a path says what it is. At each character begins the longest run of two
/// or more characters that occurs in the query, letter case aside. A run is left out when it lies
/// inside a range before it, or has the same text as one. Ranges may overlap.
std::vector<TextRange> highlightRanges(std::string_view query, std::string_view text);

/// The ranges of the text to mark for a query where names come first: the characters that
/// namesFirstMatch() matches, in the order of the text, neighbours as one range.
std::vector<TextRange> namesFirstRanges(std::string_view query, std::string_view text);

/// The ranges of the text to mark for words in any order, which are folded, as namesFirstRanges()
/// marks the folded text for each of them.
std::vector<TextRange> wordRanges(const std::vector<std::string> &words, std::string_view text);

} // namespace quillon
