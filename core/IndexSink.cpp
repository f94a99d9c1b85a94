#include "core/IndexSink.h"

#include <utility>

namespace quillon {

IndexSink::IndexSink(SearchBasePaths &paths, std::stop_token isReset)
    : paths_(paths), isReset_(std::move(isReset))
{}

CrawlSink::Token IndexSink::root(const std::string &path)
{
    PathIndex &index = paths_.index();
    const WritingIndex writing(index.lock);
    if (isReset_.stop_requested())
        return PathTree::NONE;
    index.tree.insert(normalizePath(path), PathTree::CANDIDATE);
    return paths_.add(path);
}

void IndexSink::add(Token parent, std::span<Entry> entries)
{
    PathIndex &index = paths_.index();
    const WritingIndex writing(index.lock);
    if (isReset_.stop_requested())
        return;
    for (Entry &entry : entries) {
        entry.token = paths_.add(parent, entry.name);
        index.tree.addFlags(entry.token, PathTree::CANDIDATE);
    }
}

} // namespace quillon
