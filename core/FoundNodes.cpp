#include "core/FoundNodes.h"

#include <algorithm>

namespace quillon {

FoundNodes::FoundNodes(SearchBasePaths &paths, std::stop_token isReset, CrawlMarks *marks)
    : paths_(paths), isReset_(std::move(isReset)), marks_(marks)
{}

CrawlSink::Token FoundNodes::root(const std::string &path)
{
    const WritingIndex writing(paths_.lock());
    if (isReset_.stop_requested())
        return PathTree::NONE;
    const PathTree::NodeId node = paths_.mutableTree().insert(path, 0);
    return path == "/" ? paths_.tree().node(node).parent : node;
}

void FoundNodes::add(Token parent, std::span<Entry> entries)
{
    while (!entries.empty()) {
        const std::span<Entry> some = takeSlice(entries);
        // Most entries are in the index already, and looking them up keeps no search out.
        if (!lookUp(parent, some) || !makeMissing(parent, some))
            return;
        if (marks_ != nullptr)
            marks_->takeKinds(some);
        const MutexLock lock(mutex_);
        for (const Entry &entry : some)
            nodes_.emplace_back(entry.token, entry.isFolder);
    }
}

bool FoundNodes::knows(Token folder, const FolderStamp &stamp, const ReceiveEntry &receive)
{
    if (marks_ == nullptr || !marks_->isUnchanged(folder, stamp))
        return false;
    const ReadingIndex reading(paths_.lock());
    if (isReset_.stop_requested())
        return false;
    const PathTree &tree = paths_.tree();
    for (PathTree::NodeId id = tree.node(folder).firstChild; id != PathTree::NONE;
         id = tree.node(id).nextSibling) {
        const PathTree::Node &node = tree.node(id);
        if ((node.flags & PathTree::STORED) == 0)
            continue;
        const auto isFolder = marks_->isFolder(id, tree.name(node));
        if (!isFolder)
            return false;
        receive({.name = tree.name(node), .isFolder = *isFolder});
    }
    return true;
}

void FoundNodes::listed(Token folder, const FolderStamp &stamp)
{
    if (marks_ != nullptr)
        marks_->listed(folder, stamp);
}

bool FoundNodes::lookUp(Token parent, std::span<Entry> entries)
{
    const ReadingIndex reading(paths_.lock());
    if (isReset_.stop_requested())
        return false;
    for (Entry &entry : entries)
        entry.token = paths_.tree().findChild(parent, entry.name);
    return true;
}

bool FoundNodes::makeMissing(Token parent, std::span<Entry> entries)
{
    if (std::ranges::find(entries, PathTree::NONE, &Entry::token) == entries.end())
        return true;
    const WritingIndex writing(paths_.lock());
    if (isReset_.stop_requested())
        return false;
    for (Entry &entry : entries)
        if (entry.token == PathTree::NONE)
            entry.token = paths_.mutableTree().insertChild(parent, entry.name, 0);
    return true;
}

void FoundNodes::sort()
{
    std::ranges::sort(nodes_);
}

FoundNodes::Kind FoundNodes::kind(PathTree::NodeId node) const
{
    const auto found = std::ranges::lower_bound(nodes_, std::pair(node, false));
    if (found == nodes_.end() || found->first != node)
        return Kind::notFound;
    return found->second ? Kind::folder : Kind::file;
}

} // namespace quillon
