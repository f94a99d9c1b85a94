#pragma once

#include "results/SearchBaseResult.h"

#include <string_view>
#include <vector>

namespace quillon {

/// The runs of the text to mark for a query, longest first: each is found, letter case aside, as it
/// stands in the query, has two characters or more, overlaps no other, and occurs in no other. Of
/// equally long ones the later wins, since the end of a path says what it is.
std::vector<TextRange> highlightRanges(std::string_view query, std::string_view text);

} // namespace quillon
