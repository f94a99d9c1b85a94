#include "results/SearchBaseResult.h"

#include <algorithm>
#include <utility>

namespace quillon {

SearchBaseResult::SearchBaseResult(std::string text, std::string path,
                                   std::vector<TextRange> highlightRanges,
                                   SearchBaseResultType type, std::string awayFolder)
    : text_(std::move(text)),
      highlightRanges_(std::move(highlightRanges)),
      path_(std::move(path)),
      type_(type),
      awayFolder_(std::move(awayFolder))
{}

std::vector<SearchBaseResultRef> withKeptFirst(const std::vector<std::string> &kept,
                                               const std::vector<SearchBaseResultRef> &rows)
{
    std::vector<SearchBaseResultRef> all;
    for (const std::string &path : kept) {
        const auto found = std::ranges::find(rows, path, &SearchBaseResult::path);
        all.push_back(found != rows.end()
                          ? *found
                          : std::make_shared<SearchBaseResult>(path, path, std::vector<TextRange>(),
                                                               SearchBaseResultType::standard));
    }
    for (const SearchBaseResultRef &row : rows)
        if (std::ranges::find(kept, row->path()) == kept.end())
            all.push_back(row);
    return all;
}

} // namespace quillon
