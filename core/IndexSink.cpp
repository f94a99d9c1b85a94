#include "core/IndexSink.h"

#include <algorithm>
#include <utility>

namespace quillon {

IndexSink::IndexSink(SearchBasePaths &paths, std::stop_token isReset, CrawlMarks *marks)
    : paths_(paths), isReset_(std::move(isReset)), marks_(marks)
{}

CrawlSink::Token IndexSink::root(const std::string &path)
{
    const WritingIndex writing(paths_.lock());
    if (isReset_.stop_requested())
        return PathTree::NONE;
    paths_.mutableTree().insert(normalizePath(path), PathTree::CANDIDATE);
    return paths_.add(path);
}

void IndexSink::add(Token parent, std::span<Entry> entries)
{
    while (!entries.empty()) {
        const std::span<Entry> some = takeSlice(entries);
        const WritingIndex writing(paths_.lock());
        if (isReset_.stop_requested())
            return;
        for (Entry &entry : some) {
            entry.token = paths_.add(parent, entry.name);
            paths_.mutableTree().addFlags(entry.token, PathTree::CANDIDATE);
        }
        if (marks_ != nullptr)
            marks_->takeKinds(some);
    }
}

void IndexSink::listed(Token folder, const FolderStamp &stamp)
{
    if (marks_ != nullptr)
        marks_->listed(folder, stamp);
}

} // namespace quillon
