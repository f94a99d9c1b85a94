#pragma once

#include "core/SearchBasePaths.h"
#include "indexing/CrawlSink.h"

#include <stop_token>
#include <string>

namespace quillon {

/// Puts what a crawl keeps into the index, some entries of a folder at a time, until the index is
/// reset: what the crawl knows of it no longer holds then.
///
/// Nothing is taken out of the index meanwhile, since updates wait for a build to end.
class IndexSink final : public CrawlSink
{
public:
    /// isReset is requested with the index locked.
    IndexSink(SearchBasePaths &paths, std::stop_token isReset);

    Token root(const std::string &path) override;
    void add(Token parent, std::span<Entry> entries) override;

private:
    SearchBasePaths &paths_;
    const std::stop_token isReset_;
};

} // namespace quillon
