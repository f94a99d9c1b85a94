#pragma once

#include "base/Mutex.h"
#include "core/FolderMarks.h"
#include "core/SearchBasePaths.h"
#include "indexing/CrawlSink.h"

#include <cstdint>
#include <span>
#include <stop_token>
#include <string>
#include <utility>
#include <vector>

namespace quillon {

/// Remembers which nodes of the index a crawl has found. A path that is new gets a node without any
/// flag, so no search sees it.
///
/// The tree is held as long as this object lives. Callers ask what was found once the crawl is
/// over.
class FoundNodes final : public CrawlSink
{
public:
    enum class Kind : std::uint8_t
    {
        notFound,
        file,
        folder,
    };

    /// The stop isReset is requested with the index locked, and nothing is remembered or made after
    /// that. The marks, if any, say which folders need not be read. They outlive this object.
    FoundNodes(SearchBasePaths &paths, std::stop_token isReset, CrawlMarks *marks = nullptr);

    Token root(const std::string &path) override;
    void add(Token parent, std::span<Entry> entries) override;
    bool wantsStamps() const override { return marks_ != nullptr; }
    bool remembers(Token folder) const override;
    bool knows(Token folder, const FolderStamp &stamp, const ReceiveEntry &receive) override;
    void listed(Token folder, const FolderStamp &stamp) override;

    /// Sorts the nodes. It is called once, between the crawl and the first kind().
    void sort();
    /// Returns what the crawl found at a node below its root.
    Kind kind(PathTree::NodeId node) const;

private:
    /// Sets the tokens of the entries that are in the index already; the others keep NONE. Returns
    /// false when the index was reset.
    bool lookUp(Token parent, std::span<Entry> entries) EXCLUDES(paths_.lock());
    bool makeMissing(Token parent, std::span<Entry> entries) EXCLUDES(paths_.lock());

    SearchBasePaths &paths_;
    const std::stop_token isReset_;
    CrawlMarks *const marks_;
    /// Guards the nodes while the crawl runs.
    Mutex mutex_;
    /// Each node comes with true where it is a folder.
    std::vector<std::pair<PathTree::NodeId, bool>> nodes_;
    /// The kinds by id, if the crawl has found many nodes; otherwise empty.
    std::vector<Kind> kinds_;
};

} // namespace quillon
