#include "core/FoundNodes.h"

#include <algorithm>

namespace quillon {

namespace {

/// Once a crawl has found at least one node for every this many ids, it keeps their kinds in a
/// table by id.
constexpr std::size_t MOST_IDS_A_NODE = 16;

} // namespace

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
        const auto isAnyMissing = [some] {
            return std::ranges::find(some, PathTree::NONE, &Entry::token) != some.end();
        };
        // Most entries are in the index already, and looking those up blocks no search.
        if (isAnyMissing() && !lookUp(parent, some))
            return;
        if (isAnyMissing() && !makeMissing(parent, some))
            return;
        if (marks_ != nullptr)
            marks_->takeKinds(some);
        const MutexLock lock(mutex_);
        for (const Entry &entry : some)
            nodes_.emplace_back(entry.token, entry.isFolder);
    }
}

bool FoundNodes::remembers(Token folder) const
{
    return marks_ != nullptr && marks_->remembers(folder);
}

bool FoundNodes::knows(Token folder, const FolderStamp &stamp, const ReceiveEntry &receive)
{
    if (marks_ == nullptr || !marks_->isUnchanged(folder, stamp))
        return false;
    const ReadingIndex reading(paths_.lock());
    if (isReset_.stop_requested())
        return false;
    const PathTree &tree = paths_.tree();
    for (PathTree::NodeId id = tree.firstChild(folder); id != PathTree::NONE;
         id = tree.node(id).nextSibling) {
        const PathTree::Node &node = tree.node(id);
        if ((node.flags & PathTree::STORED) == 0)
            continue;
        const auto isFolder = marks_->isFolder(id, tree.name(node));
        if (!isFolder)
            return false;
        receive({.name = tree.name(node), .isFolder = *isFolder, .token = id});
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
        if (entry.token == PathTree::NONE)
            entry.token = paths_.tree().findChild(parent, entry.name);
    return true;
}

bool FoundNodes::makeMissing(Token parent, std::span<Entry> entries)
{
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
    const std::size_t ids = [this] {
        const ReadingIndex reading(paths_.lock());
        return paths_.tree().ids();
    }();
    if (nodes_.size() < ids / MOST_IDS_A_NODE) {
        std::ranges::sort(nodes_);
        return;
    }
    kinds_.resize(ids);
    for (const auto &[node, isFolder] : nodes_)
        if (node < ids && kinds_[node] != Kind::file)
            kinds_[node] = isFolder ? Kind::folder : Kind::file;
    nodes_ = {};
}

FoundNodes::Kind FoundNodes::kind(PathTree::NodeId node) const
{
    if (!kinds_.empty())
        return node < kinds_.size() ? kinds_[node] : Kind::notFound;
    const auto found = std::ranges::lower_bound(nodes_, std::pair(node, false));
    if (found == nodes_.end() || found->first != node)
        return Kind::notFound;
    return found->second ? Kind::folder : Kind::file;
}

} // namespace quillon
