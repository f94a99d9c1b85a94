#include "results/SearchBaseResult.h"

#include <algorithm>
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

std::vector<SearchBaseResultRef> withKeptFirst(const std::vector<std::string> &kept,
                                               const std::vector<SearchBaseResultRef> &rows)
{
    std::vector<SearchBaseResultRef> all;
    for (const std::string &path : kept)
        all.push_back(std::make_shared<SearchBaseResult>(path, path, std::vector<TextRange>(),
                                                         SearchBaseResultType::standard));
    for (const SearchBaseResultRef &row : rows)
        if (std::ranges::find(kept, row->path()) == kept.end())
            all.push_back(row);
    return all;
}

} // namespace quillon
