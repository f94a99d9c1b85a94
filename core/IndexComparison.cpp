#include "core/IndexComparison.h"

#include "base/PathText.h"

#include <algorithm>
#include <utility>

namespace quillon {

namespace {

constexpr PathTree::Flags WHOLE = PathTree::STORED | PathTree::CANDIDATE | PathTree::LISTED;

} // namespace

IndexComparison::IndexComparison(SearchBasePaths &paths, const DiskKinds &disk,
                                 const FoundNodes &found, const Terms &terms)
    : paths_(paths),
      disk_(disk),
      found_(found),
      roots_(terms.roots),
      isReset_(terms.isReset),
      isAlone_(terms.isAlone),
      removesFirst_(terms.removesFirst)
{}

bool IndexComparison::compare(std::vector<Changed> &changed,
                              const std::vector<std::string> &notListed, bool isAway)
{
    if (!compareWithIndex(changed, notListed) || !judge(isAway))
        return false;
    for (const std::string &root : roots_)
        if (isBelowChanged(root, changed) && disk_.kindOf(root) == Kind::folder)
            outcome_.innerRoots.push_back(root);
    for (const Changed &one : changed) {
        if (one.kind != Kind::nothing || one.node == PathTree::NONE)
            continue;
        outcome_.gone.push_back(one.node);
        if (isAway && one.isCandidate)
            outcome_.away.push_back(one.node);
    }
    return true;
}

bool IndexComparison::isBelowChanged(const std::string &path, const std::vector<Changed> &changed)
{
    return std::ranges::any_of(changed, [&path](const Changed &one) {
        return one.kind != Kind::unknown && isBelow(path, one.path);
    });
}

/// Returns false when the index was reset.
bool IndexComparison::compareWithIndex(std::vector<Changed> &changed,
                                       const std::vector<std::string> &notListed)
{
    const ReadingIndex reading(paths_.lock());
    if (!stepAside())
        return false;
    for (const std::string &root : roots_)
        if (isBelowChanged(root, changed))
            rootNodes_.push_back(paths_.tree().find(root));
    for (const std::string &path : notListed)
        notListedNodes_.push_back(paths_.tree().find(path));
    std::ranges::sort(notListedNodes_);
    if (isAlone_)
        alone_ = changed.front().node;
    for (Changed &one : changed) {
        if (one.node == PathTree::NONE)
            continue;
        one.isCandidate = (paths_.tree().node(one.node).flags & PathTree::CANDIDATE) != 0;
        if (!isAlone_ && found_.kind(one.node) != FoundNodes::Kind::notFound)
            outcome_.missing.push_back(one.node);
        if (!compareBelow(one))
            return false;
    }
    return true;
}

/// Walks what is indexed below a changed path. Returns false when the index was reset.
bool IndexComparison::compareBelow(const Changed &changed)
{
    struct Level
    {
        NodeId next = PathTree::NONE;
        std::size_t place = IN_FOLDER;
    };
    const NodeId top = isAlone_ ? paths_.nodeAbove(changed.path) : changed.node;
    std::vector<Level> levels{{paths_.tree().firstChild(top), placeBelow(changed)}};
    for (std::size_t count = 1; !levels.empty(); ++count) {
        if (count % PathIndex::SLICE == 0 && !stepAside())
            return false;
        const NodeId node = levels.back().next;
        if (node == PathTree::NONE) {
            levels.pop_back();
            continue;
        }
        levels.back().next = paths_.tree().node(node).nextSibling;
        // A changed path and its children are removed. Removing the children also removes the
        // listing of what is directly below them.
        const bool isTouched = removesFirst_ && levels.size() <= 2 && changed.kind != Kind::unknown;
        const std::size_t below = placeOf(node, levels.back().place, isTouched);
        levels.push_back({paths_.tree().firstChild(node), below});
    }
    return true;
}

std::size_t IndexComparison::placeBelow(const Changed &changed) const
{
    if (changed.kind == Kind::unknown)
        return IN_UNKNOWN;
    if (changed.kind != Kind::folder)
        return IN_NO_FOLDER;
    return wasListed(changed.node) ? IN_FOLDER : IN_UNKNOWN;
}

/// Returns false for a folder that the crawl could not list.
bool IndexComparison::wasListed(NodeId node) const
{
    return !std::ranges::binary_search(notListedNodes_, node);
}

/// Records the node if it has to be put in again or was not found. Returns the place of what is
/// below the node.
std::size_t IndexComparison::placeOf(NodeId node, std::size_t parent, bool isTouched)
{
    const FoundNodes::Kind found = found_.kind(node);
    const PathTree::Node &indexed = paths_.tree().node(node);
    if (found != FoundNodes::Kind::notFound) {
        if (isTouched || (indexed.flags & WHOLE) != WHOLE)
            outcome_.missing.push_back(node);
        if (parent == IN_UNKNOWN || !wasListed(node))
            return IN_UNKNOWN;
        return found == FoundNodes::Kind::folder ? IN_FOLDER : IN_NO_FOLDER;
    }
    if (parent == IN_UNKNOWN) {
        if (isTouched)
            outcome_.unanswered.push_back({.node = node, .flags = indexed.flags});
        return IN_UNKNOWN;
    }
    if ((indexed.flags & WHOLE) == 0 && !indexed.hasChildren())
        return IN_FOLDER;
    // The node of "/" itself is a sibling of the nodes of what is below "/".
    if (node == alone_)
        return IN_FOLDER;
    unfound_.push_back(
        {.node = node, .flags = indexed.flags, .isTouched = isTouched, .parent = parent});
    return unfound_.size() - 1;
}

/// Asks the disk about the nodes that were not found. Returns false when the index was reset.
bool IndexComparison::judge(bool isAway)
{
    std::vector<Kind> kinds;
    kinds.reserve(unfound_.size());
    std::vector<bool> areAway;
    for (const Unfound &path : unfound_) {
        if (isReset_.stop_requested())
            return false;
        if (path.parent == IN_FOLDER)
            kinds.push_back(kindIn(Kind::folder, path));
        else
            kinds.push_back(
                kindIn(path.parent == IN_NO_FOLDER ? Kind::other : kinds[path.parent], path));
        outcome_.isAnyUnanswered = outcome_.isAnyUnanswered || kinds.back() == Kind::unknown;
        const bool isInAway = path.parent < areAway.size() ? areAway[path.parent] : isAway;
        areAway.push_back(kinds.back() == Kind::nothing &&
                          (isInAway || isIncludeFolder(path.node)));
        if ((path.flags & WHOLE) == 0)
            continue;
        if (kinds.back() == Kind::nothing) {
            outcome_.gone.push_back(path.node);
            if (areAway.back() && (path.flags & PathTree::CANDIDATE) != 0)
                outcome_.away.push_back(path.node);
        } else if (kinds.back() == Kind::unknown && path.isTouched) {
            outcome_.unanswered.push_back({.node = path.node, .flags = path.flags});
        }
    }
    std::ranges::reverse(outcome_.gone);
    return true;
}

bool IndexComparison::isIncludeFolder(NodeId node) const
{
    return std::ranges::find(rootNodes_, node) != rootNodes_.end();
}

/// Returns the kind of what is on the disk at an unfound node. A path below something that is gone,
/// or that is a link by now, is gone too, even if following the link leads to something of the same
/// name.
FolderKind IndexComparison::kindIn(Kind folder, const Unfound &unfound)
{
    if (folder != Kind::folder && !isIncludeFolder(unfound.node))
        return folder == Kind::unknown ? Kind::unknown : Kind::nothing;
    std::vector<std::string> text;
    if (!appendTexts({&unfound.node, 1}, "", text))
        return Kind::unknown;
    const Kind kind = disk_.kindOf(text.front());
    if (kind == Kind::unknown)
        outcome_.silent.push_back(std::move(text.front()));
    return kind;
}

bool IndexComparison::stepAside() const
{
    if (paths_.lock().isWriterWaiting())
        paths_.lock().yieldShared();
    return !isReset_.stop_requested();
}

bool IndexComparison::appendTexts(std::span<const NodeId> nodes, std::string_view prefix,
                                  std::vector<std::string> &texts) const
{
    const ReadingIndex reading(paths_.lock());
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        if (i % PathIndex::SLICE == 0 && !stepAside())
            return false;
        texts.emplace_back(prefix);
        paths_.tree().appendText(nodes[i], texts.back());
    }
    return true;
}

} // namespace quillon
