#pragma once

#include "base/Mutex.h"
#include "core/FolderMarks.h"
#include "core/SearchBasePaths.h"
#include "indexing/CrawlSink.h"

#include <cstddef>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

namespace quillon {

/// Puts what a crawl keeps into the index, some entries of a folder at a time, until the index is
/// reset: what the crawl knows of it no longer holds then.
///
/// Nothing is taken out of the index meanwhile, since updates wait for a build to end.
///
/// The files of folders that hold nothing else wait until there are many, since every stay in the
/// index keeps searches and the other threads of the crawl out.
class IndexSink final : public CrawlSink
{
public:
    /// isReset is requested with the index locked. The marks, if any, are taken for the next crawl;
    /// they outlive this.
    IndexSink(SearchBasePaths &paths, std::stop_token isReset, CrawlMarks *marks = nullptr);

    Token root(const std::string &path) override;
    /// Leaves the tokens at zero where no entry is a folder.
    void add(Token parent, std::span<Entry> entries) override EXCLUDES(mutex_);
    bool wantsStamps() const override { return marks_ != nullptr; }
    void listed(Token folder, const FolderStamp &stamp) override;
    /// Puts the rest into the index. Called once the crawl is over.
    void finish() EXCLUDES(mutex_);

private:
    /// Files that are to be put into the index, with the names one behind the other.
    struct Files
    {
        struct File
        {
            Token parent = 0;
            std::size_t nameSize = 0;
        };
        std::vector<File> files;
        std::string names;
    };

    void insert(const Files &files) EXCLUDES(paths_.lock());
    void put(Token parent, Entry &entry) REQUIRES(paths_.lock());

    SearchBasePaths &paths_;
    const std::stop_token isReset_;
    CrawlMarks *const marks_;
    Mutex mutex_;
    Files waiting_ GUARDED_BY(mutex_);
};

} // namespace quillon
