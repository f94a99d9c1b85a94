#include "results/SearchBaseResult.h"

#include <utility>

namespace quillon {

SearchBaseResult::SearchBaseResult(std::string text, std::string path,
                                   std::vector<TextRange> highlightRanges,
                                   SearchBaseResultType type)
    : text_(std::move(text)),
      highlightRanges_(std::move(highlightRanges)),
      path_(std::move(path)),
      type_(type)
{}

} // namespace quillon
