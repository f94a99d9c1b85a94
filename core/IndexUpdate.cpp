#include "core/IndexUpdate.h"

#include "base/PathText.h"
#include "indexing/Crawler.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <optional>
#include <system_error>

// How the index follows a change of the disk.
//
// The rule for one path is simple. The path and the children listed under it are removed from the
// index, and whatever a crawl of the path finds is put in. These removals reach no further down,
// so they alone would leave behind what was below a folder that vanished with all its contents.
// Hence the update asks the disk about every path that is indexed below the changed one and that
// the crawl did not find, and forgets those that are gone. A path for which a file system does not
// answer stays, and the caller is told to ask again. Include folders are indexed even where a rule
// would skip them, so the update puts those below the changed path back. An include folder that is
// gone itself is taken to be away, on a disk that is not connected. It leaves the path store with
// everything in it, but searches go on finding what they found in it: those texts remain candidates
// without being stored.
//
// The rule is applied to many paths at a time. Changed names of one folder share one crawl, which
// opens the folder once and then looks at these names alone (Crawler::crawlNames), and one task of
// the main queue. Include folders, which may be links, and "/" are updated alone.
//
// The update takes three steps.
//
// 1. The crawl looks each path that it finds up in the tree of the index, and remembers the node
//    (FoundNodes). A path that is new gets a node at once, without any flag, so no search sees it.
//    The marks of the found nodes are kept beside the tree: a flag in the node would have to be
//    set and cleared with the index locked exclusively, at every folder of the crawl, and would
//    stay behind when an update is abandoned.
// 2. One walk through the tree below the changed paths (compareBelow) tells the found nodes that
//    have to change from the nodes that were not found, about which the disk is asked (judge). The
//    walk lets writers in and ends when the index is reset.
// 3. The change itself is made in one go, on the main thread, while nobody searches (apply). Only
//    flags of known nodes change there: those of nodes that differ, and those of nodes that the
//    removals of the plain rule reach, which are set again at once.
//
// Nodes that have lost their last flag, or never got one, stay where they are until the update has
// ended, since the caller holds the tree (HeldNodes). An abandoned update therefore needs no
// clearing up of its own.

namespace quillon {

namespace {

constexpr PathTree::Flags WHOLE = PathTree::STORED | PathTree::CANDIDATE | PathTree::LISTED;

std::string description(const std::vector<std::string> &set)
{
    std::string text = "[";
    for (const std::string &member : set)
        text.append(text.size() == 1 ? "\"" : ", \"").append(member).append("\"");
    return text + "]";
}

} // namespace

IndexUpdate::IndexUpdate(SearchBasePaths &paths, Terms terms, ChangedPaths changed)
    : paths_(paths),
      terms_(std::move(terms)),
      disk_(terms_.folderLister, terms_.patterns, terms_.roots, *terms_.rules),
      path_(std::move(changed.path)),
      names_(std::move(changed.names)),
      kind_(kindOfPath()),
      found_(paths_, terms_.isReset, terms_.marks)
{
    if (isAlone())
        changed_.push_back({.path = path_, .kind = kind_});
    for (const std::string &name : names_)
        changed_.push_back(
            {.path = pathIn(path_, name), .kind = kind_ == Kind::folder ? Kind::unknown : kind_});
}

void IndexUpdate::crawled(const CrawlResult &result)
{
    notListed_ = result.notListed;
    if (result.error == std::errc::timed_out)
        kind_ = Kind::unknown;
    else if (result.error || result.outcome == CrawlResult::Outcome::packageOrMissing)
        kind_ = kindOfPath();
    if (isAlone()) {
        changed_.front().kind = kind_;
        changed_.front().isPackage =
            isFolder() && result.outcome == CrawlResult::Outcome::packageOrMissing;
        return;
    }
    for (std::size_t i = 0; i < changed_.size(); ++i) {
        changed_[i].kind = isFolder() ? result.kinds[i] : kind_;
        changed_[i].isPackage = changed_[i].kind == Kind::folder && isPackageName(names_[i]);
    }
}

std::vector<std::string> IndexUpdate::unanswered() const
{
    std::vector<std::string> paths;
    for (const Changed &changed : changed_)
        if (isAnyUnanswered_ || changed.kind == Kind::unknown)
            paths.push_back(changed.path);
    for (const std::string &path : notListed_)
        if (std::ranges::find(paths, path) == paths.end())
            paths.push_back(path);
    return paths;
}

std::vector<std::string> IndexUpdate::silentPaths() const
{
    std::vector<std::string> paths = silent_;
    for (const Changed &changed : changed_)
        if (changed.kind == Kind::unknown)
            paths.push_back(changed.path);
    return paths;
}

/// What is not a folder has none of the changed names in it.
FolderLister::Kind IndexUpdate::kindOfPath() const
{
    const Kind kind = disk_.kindWithoutLinks(path_);
    return kind == Kind::other && !isAlone() ? Kind::nothing : kind;
}

bool IndexUpdate::isBelowChanged(const std::string &path) const
{
    return std::ranges::any_of(changed_, [&path](const Changed &changed) {
        return changed.kind != Kind::unknown && isBelow(path, changed.path);
    });
}

// Comparing

bool IndexUpdate::compare()
{
    if (std::ranges::all_of(changed_,
                            [](const Changed &changed) { return changed.kind == Kind::unknown; }))
        return false;
    isAway_ = kind_ == Kind::nothing && disk_.isInAwayFolder(path_);
    found_.sort();
    if (!findNodes() || !compareWithIndex() || !judge())
        return false;
    for (const std::string &root : terms_.roots)
        if (isBelowChanged(root) && disk_.kindOf(root) == Kind::folder)
            innerRoots_.push_back(root);
    for (const Changed &changed : changed_) {
        if (changed.kind != Kind::nothing || changed.node == PathTree::NONE)
            continue;
        gone_.push_back(changed.node);
        if (isAway_ && changed.isCandidate)
            away_.push_back(changed.node);
    }
    if (isAlone() && kind_ != Kind::nothing)
        operations_ = makeInsertionOperations(path_, {});
    forgotten_.reserve(gone_.size());
    return true;
}

bool IndexUpdate::stepAside() const
{
    if (paths_.lock().isWriterWaiting())
        paths_.lock().yieldShared();
    return !terms_.isReset.stop_requested();
}

/// Finds the nodes of the changed paths. A path that is updated alone gets a node if it has none.
/// Returns false when the index was reset.
bool IndexUpdate::findNodes()
{
    const WritingIndex writing(paths_.lock());
    if (terms_.isReset.stop_requested())
        return false;
    PathTree &tree = paths_.mutableTree();
    if (isAlone()) {
        changed_.front().node = tree.insert(path_, 0);
        return true;
    }
    const NodeId folder = paths_.nodeAbove(path_);
    for (std::size_t i = 0; folder != PathTree::NONE && i < changed_.size(); ++i)
        changed_[i].node = tree.findChild(folder, names_[i]);
    return true;
}

/// Returns false when the index was reset.
bool IndexUpdate::compareWithIndex()
{
    const ReadingIndex reading(paths_.lock());
    if (!stepAside())
        return false;
    for (const std::string &root : terms_.roots)
        if (isBelowChanged(root))
            rootNodes_.push_back(paths_.tree().find(root));
    for (const std::string &path : notListed_)
        notListedNodes_.push_back(paths_.tree().find(path));
    std::ranges::sort(notListedNodes_);
    for (Changed &changed : changed_) {
        if (changed.node == PathTree::NONE)
            continue;
        changed.isCandidate = (paths_.tree().node(changed.node).flags & PathTree::CANDIDATE) != 0;
        if (!isAlone() && found_.kind(changed.node) != FoundNodes::Kind::notFound)
            missing_.push_back(changed.node);
        if (!compareBelow(changed))
            return false;
    }
    return true;
}

/// Walks what is indexed below a changed path. Returns false when the index was reset.
bool IndexUpdate::compareBelow(const Changed &changed)
{
    struct Level
    {
        NodeId next = PathTree::NONE;
        std::size_t place = IN_FOLDER;
    };
    const NodeId top = isAlone() ? paths_.nodeAbove(path_) : changed.node;
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
        const bool isTouched =
            removesFirst() && levels.size() <= 2 && changed.kind != Kind::unknown;
        const std::size_t below = placeOf(node, levels.back().place, isTouched);
        levels.push_back({paths_.tree().firstChild(node), below});
    }
    return true;
}

std::size_t IndexUpdate::placeBelow(const Changed &changed) const
{
    if (changed.kind == Kind::unknown)
        return IN_UNKNOWN;
    if (changed.kind != Kind::folder)
        return IN_NO_FOLDER;
    return wasListed(changed.node) ? IN_FOLDER : IN_UNKNOWN;
}

/// Returns false for a folder that the crawl could not list.
bool IndexUpdate::wasListed(NodeId node) const
{
    return !std::ranges::binary_search(notListedNodes_, node);
}

/// Records the node if it has to be put in again or was not found. Returns the place of what is
/// below the node.
std::size_t IndexUpdate::placeOf(NodeId node, std::size_t parent, bool isTouched)
{
    const FoundNodes::Kind found = found_.kind(node);
    const PathTree::Node &indexed = paths_.tree().node(node);
    if (found != FoundNodes::Kind::notFound) {
        if (isTouched || (indexed.flags & WHOLE) != WHOLE)
            missing_.push_back(node);
        if (parent == IN_UNKNOWN || !wasListed(node))
            return IN_UNKNOWN;
        return found == FoundNodes::Kind::folder ? IN_FOLDER : IN_NO_FOLDER;
    }
    if (parent == IN_UNKNOWN) {
        if (isTouched)
            unanswered_.push_back({.node = node, .flags = indexed.flags});
        return IN_UNKNOWN;
    }
    if ((indexed.flags & WHOLE) == 0 && !indexed.hasChildren())
        return IN_FOLDER;
    // The node of "/" itself is a sibling of the nodes of what is below "/".
    if (isAlone() && node == changed_.front().node)
        return IN_FOLDER;
    unfound_.push_back(
        {.node = node, .flags = indexed.flags, .isTouched = isTouched, .parent = parent});
    return unfound_.size() - 1;
}

/// Asks the disk about the nodes that were not found. Returns false when the index was reset.
bool IndexUpdate::judge()
{
    std::vector<Kind> kinds;
    kinds.reserve(unfound_.size());
    std::vector<bool> areAway;
    for (const Unfound &path : unfound_) {
        if (terms_.isReset.stop_requested())
            return false;
        if (path.parent == IN_FOLDER)
            kinds.push_back(kindIn(Kind::folder, path));
        else
            kinds.push_back(
                kindIn(path.parent == IN_NO_FOLDER ? Kind::other : kinds[path.parent], path));
        isAnyUnanswered_ = isAnyUnanswered_ || kinds.back() == Kind::unknown;
        const bool isInAway = path.parent < areAway.size() ? areAway[path.parent] : isAway_;
        areAway.push_back(kinds.back() == Kind::nothing &&
                          (isInAway || isIncludeFolder(path.node)));
        if ((path.flags & WHOLE) == 0)
            continue;
        if (kinds.back() == Kind::nothing) {
            gone_.push_back(path.node);
            if (areAway.back() && (path.flags & PathTree::CANDIDATE) != 0)
                away_.push_back(path.node);
        } else if (kinds.back() == Kind::unknown && path.isTouched) {
            unanswered_.push_back(path);
        }
    }
    std::ranges::reverse(gone_);
    return true;
}

bool IndexUpdate::isIncludeFolder(NodeId node) const
{
    return std::ranges::find(rootNodes_, node) != rootNodes_.end();
}

/// Returns the kind of what is on the disk at an unfound node. A path below something that is gone,
/// or that is a link by now, is gone too, even if following the link leads to something of the same
/// name.
FolderLister::Kind IndexUpdate::kindIn(Kind folder, const Unfound &unfound)
{
    if (folder != Kind::folder && !isIncludeFolder(unfound.node))
        return folder == Kind::unknown ? Kind::unknown : Kind::nothing;
    std::vector<std::string> text;
    if (!appendTexts({&unfound.node, 1}, "", text))
        return Kind::unknown;
    const Kind kind = disk_.kindOf(text.front());
    if (kind == Kind::unknown)
        silent_.push_back(std::move(text.front()));
    return kind;
}

// Applying

bool IndexUpdate::apply()
{
    const WritingIndex writing(paths_.lock());
    if (terms_.isReset.stop_requested())
        return false;
    if (!terms_.wantsDifferences) {
        change();
        return true;
    }
    const std::vector<NodeId> nodes = reached();
    std::vector<bool> wasStored;
    for (const NodeId node : nodes)
        wasStored.push_back(paths_.tree().isStored(node));
    change();
    for (std::size_t i = 0; i < nodes.size(); ++i)
        if (paths_.tree().isStored(nodes[i]) != wasStored[i])
            (wasStored[i] ? removed_ : added_).push_back(nodes[i]);
    return true;
}

/// Returns every node that change() may store or forget, once each.
std::vector<PathTree::NodeId> IndexUpdate::reached()
{
    PathTree &tree = paths_.mutableTree();
    std::vector<NodeId> nodes = missing_;
    nodes.insert(nodes.end(), gone_.begin(), gone_.end());
    for (const Changed &changed : changed_) {
        if (changed.node == PathTree::NONE)
            continue;
        nodes.push_back(changed.node);
        std::ranges::copy(paths_.listedChildren(changed.node), std::back_inserter(nodes));
    }
    for (const std::string &root : innerRoots_)
        nodes.push_back(tree.insert(normalizePath(root), 0));
    std::ranges::sort(nodes);
    nodes.erase(std::unique(nodes.begin(), nodes.end()), nodes.end());
    return nodes;
}

/// Applies the differences.
void IndexUpdate::change()
{
    PathTree &tree = paths_.mutableTree();
    for (Changed &changed : changed_) {
        if (!removesFirst() || changed.kind == Kind::unknown || changed.node == PathTree::NONE)
            continue;
        changed.stored = paths_.listedChildren(changed.node);
        for (const NodeId child : changed.stored)
            remove(child);
        remove(changed.node);
    }
    if (kind_ != Kind::nothing)
        insert();
    for (const Unfound &path : unanswered_)
        tree.addFlags(path.node, path.flags);
    for (const std::string &root : innerRoots_) {
        tree.insert(normalizePath(root), PathTree::CANDIDATE);
        paths_.add(root);
        paths_.listStoredChildren(root);
    }
    for (const NodeId node : gone_) {
        if (tree.isStored(node))
            forgotten_.push_back(node);
        paths_.forget(node);
        tree.removeFlags(node, PathTree::CANDIDATE);
    }
    for (const NodeId node : away_)
        tree.addFlags(node, PathTree::CANDIDATE);
}

void IndexUpdate::remove(NodeId node)
{
    paths_.remove(node);
    paths_.mutableTree().removeFlags(node, PathTree::CANDIDATE);
}

void IndexUpdate::insert()
{
    const auto start = terms_.now();
    paths_.insert(operations_);
    for (const NodeId node : missing_)
        paths_.add(node);
    insertionTime_ = terms_.now() - start;
    if (isAlone())
        paths_.mutableTree().addFlags(changed_.front().node, PathTree::CANDIDATE);
    for (const NodeId node : missing_)
        paths_.mutableTree().addFlags(node, PathTree::CANDIDATE);
}

// The log

void IndexUpdate::log(const std::function<void(std::span<const std::string>)> &receive) const
{
    std::vector<std::string> lines;
    for (const Changed &changed : changed_) {
        std::vector<std::string> texts;
        if (changed.kind == Kind::unknown)
            continue;
        if (!appendTexts(changed.stored, "", texts))
            return;
        lines.push_back("sbl_stored_desc: " + description(texts));
        for (const std::string &child : texts)
            lines.push_back(std::string(REMOVE_TAG).append(child));
        lines.push_back(std::string(REMOVE_TAG).append(changed.path));
        if (changed.isPackage)
            lines.push_back(PACKAGE_TAG + changed.path);
        if (changed.kind == Kind::nothing)
            lines.push_back("sbl_root_gone: " + changed.path);
    }
    receive(lines);
    std::span<const NodeId> rest(forgotten_);
    while (!rest.empty()) {
        const auto some = takeSlice(rest);
        lines.clear();
        if (!appendTexts(some, REMOVE_TAG, lines))
            return;
        receive(lines);
    }
}

std::optional<IndexDifferences> IndexUpdate::differences() const
{
    IndexDifferences differences;
    if (!appendTexts(removed_, "", differences.removed) ||
        !appendTexts(added_, "", differences.added))
        return std::nullopt;
    std::ranges::sort(differences.removed);
    std::ranges::sort(differences.added);
    return differences;
}

/// Returns false when the index was reset.
bool IndexUpdate::appendTexts(std::span<const NodeId> nodes, std::string_view prefix,
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
