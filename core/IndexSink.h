#pragma once

#include "core/FolderMarks.h"
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
    /// isReset is requested with the index locked. The marks, if any, are taken for the next crawl;
    /// they outlive this.
    IndexSink(SearchBasePaths &paths, std::stop_token isReset, CrawlMarks *marks = nullptr);

    Token root(const std::string &path) override;
    void add(Token parent, std::span<Entry> entries) override;
    bool wantsStamps() const override { return marks_ != nullptr; }
    void listed(Token folder, const FolderStamp &stamp) override;

private:
    SearchBasePaths &paths_;
    const std::stop_token isReset_;
    CrawlMarks *const marks_;
};

} // namespace quillon
