#include "core/IndexUpdate.h"

#include "base/PathText.h"
#include "indexing/Crawler.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <optional>
#include <system_error>
#include <utility>

// How the index follows a change of the disk.
//
// The rule for one path is simple. The path and the children listed under it are removed from the
// index, and whatever a crawl of the path finds is put in. These removals reach no further down,
// so they alone would leave behind what was below a folder that vanished with all its contents.
// Hence the update asks the disk about every path that is indexed below the changed one and that
// the crawl did not find, and forgets those that are gone. A path for which a file system does not
// answer stays, and the update reports it, so that the caller asks again. Include folders are
// indexed even where a rule would skip them, so the update puts those below the changed path back.
// An include folder that is gone itself is taken to be away, on a disk that is not connected. It
// leaves the path store with everything in it, but searches continue to find what they found in it:
// those texts remain candidates without being stored.
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
// 2. One walk through the tree below the changed paths (IndexComparison) collects the found nodes
//    that have to change, and the nodes that were not found, about which the disk is asked. The
//    walk lets writers in and ends when the index is reset.
// 3. The change itself is made on the main thread, while nobody searches (apply), and in one go
//    unless very many paths are new or gone. Only flags of known nodes change there: those of nodes
//    that differ, and those of nodes that the removals of the plain rule reach, which are set again
//    at once.
//
// Nodes that have lost their last flag, or never got one, stay where they are until the update has
// ended, since the caller holds the tree (HeldNodes). An abandoned update therefore needs no
// clearing up of its own.

namespace quillon {

namespace {

/// So many paths are added or forgotten while searches and the main thread wait, in some 4 ms.
constexpr std::size_t MOST_AT_ONCE = 100'000;

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
      found_(paths_, terms_.isReset, terms_.marks),
      comparison_(paths_, disk_, found_,
                  {.roots = terms_.roots,
                   .isReset = terms_.isReset,
                   .isAlone = isAlone(),
                   .removesFirst = removesFirst()})
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
        if (comparison_.outcome().isAnyUnanswered || changed.kind == Kind::unknown)
            paths.push_back(changed.path);
    for (const std::string &path : notListed_)
        if (std::ranges::find(paths, path) == paths.end())
            paths.push_back(path);
    return paths;
}

std::vector<std::string> IndexUpdate::silentPaths() const
{
    std::vector<std::string> paths = comparison_.outcome().silent;
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

// Comparing

bool IndexUpdate::compare()
{
    if (std::ranges::all_of(changed_,
                            [](const Changed &changed) { return changed.kind == Kind::unknown; }))
        return false;
    found_.sort();
    const bool isAway = kind_ == Kind::nothing && disk_.isInAwayFolder(path_);
    if (!findNodes() || !comparison_.compare(changed_, notListed_, isAway))
        return false;
    if (isAlone() && kind_ != Kind::nothing)
        operations_ = makeInsertionOperations(path_, {});
    forgotten_.reserve(comparison_.outcome().gone.size());
    return true;
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

// Applying

bool IndexUpdate::apply()
{
    const WritingIndex writing(paths_.lock());
    if (terms_.isReset.stop_requested())
        return false;
    if (step_ == Step::begin)
        begin();
    if (step_ == Step::add)
        addSome();
    if (step_ == Step::forget)
        forgetSome();
    return true;
}

/// Returns every node that apply() may store or forget, once each.
std::vector<PathTree::NodeId> IndexUpdate::reached()
{
    PathTree &tree = paths_.mutableTree();
    const IndexComparison::Outcome &outcome = comparison_.outcome();
    std::vector<NodeId> nodes = outcome.missing;
    nodes.insert(nodes.end(), outcome.gone.begin(), outcome.gone.end());
    for (const Changed &changed : changed_) {
        if (changed.node == PathTree::NONE)
            continue;
        nodes.push_back(changed.node);
        std::ranges::copy(paths_.listedChildren(changed.node), std::back_inserter(nodes));
    }
    for (const std::string &root : outcome.innerRoots)
        nodes.push_back(tree.insert(normalizePath(root), 0));
    std::ranges::sort(nodes);
    nodes.erase(std::unique(nodes.begin(), nodes.end()), nodes.end());
    return nodes;
}

/// Makes the removals of the plain rule, and puts the changed paths in.
void IndexUpdate::begin()
{
    if (terms_.wantsDifferences)
        for (const NodeId node : reached())
            reached_.emplace_back(node, paths_.tree().isStored(node));
    for (Changed &changed : changed_) {
        if (!removesFirst() || changed.kind == Kind::unknown || changed.node == PathTree::NONE)
            continue;
        changed.stored = paths_.listedChildren(changed.node);
        for (const NodeId child : changed.stored)
            remove(child);
        remove(changed.node);
    }
    if (kind_ != Kind::nothing) {
        paths_.insert(operations_);
        if (isAlone())
            paths_.mutableTree().addFlags(changed_.front().node, PathTree::CANDIDATE);
        rest_ = comparison_.outcome().missing;
    }
    step_ = Step::add;
}

void IndexUpdate::addSome()
{
    const auto start = terms_.now();
    for (const NodeId node : takeSome()) {
        paths_.add(node);
        paths_.mutableTree().addFlags(node, PathTree::CANDIDATE);
    }
    insertionTime_ += terms_.now() - start;
    if (!rest_.empty())
        return;
    addWhatStays();
    rest_ = comparison_.outcome().gone;
    step_ = Step::forget;
}

/// Puts back what the removals have taken and what the crawl could not find.
void IndexUpdate::addWhatStays()
{
    PathTree &tree = paths_.mutableTree();
    for (const auto &[node, flags] : comparison_.outcome().unanswered)
        tree.addFlags(node, flags);
    for (const std::string &root : comparison_.outcome().innerRoots) {
        tree.insert(normalizePath(root), PathTree::CANDIDATE);
        paths_.add(root);
        paths_.listStoredChildren(root);
    }
}

void IndexUpdate::forgetSome()
{
    PathTree &tree = paths_.mutableTree();
    for (const NodeId node : takeSome()) {
        if (tree.isStored(node))
            forgotten_.push_back(node);
        paths_.forget(node);
        tree.removeFlags(node, PathTree::CANDIDATE);
    }
    if (rest_.empty())
        end();
}

void IndexUpdate::end()
{
    for (const NodeId node : comparison_.outcome().away)
        paths_.mutableTree().addFlags(node, PathTree::CANDIDATE);
    for (const auto &[node, wasStored] : reached_)
        if (paths_.tree().isStored(node) != wasStored)
            (wasStored ? removed_ : added_).push_back(node);
    step_ = Step::ended;
}

std::span<const PathTree::NodeId> IndexUpdate::takeSome()
{
    const auto some = rest_.first(std::min(rest_.size(), MOST_AT_ONCE));
    rest_ = rest_.subspan(some.size());
    return some;
}

void IndexUpdate::remove(NodeId node)
{
    paths_.remove(node);
    paths_.mutableTree().removeFlags(node, PathTree::CANDIDATE);
}

// The log

void IndexUpdate::log(const std::function<void(std::span<const std::string>)> &receive) const
{
    std::vector<std::string> lines;
    for (const Changed &changed : changed_) {
        std::vector<std::string> texts;
        if (changed.kind == Kind::unknown)
            continue;
        if (!comparison_.appendTexts(changed.stored, "", texts))
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
        if (!comparison_.appendTexts(some, REMOVE_TAG, lines))
            return;
        receive(lines);
    }
}

std::optional<IndexDifferences> IndexUpdate::differences() const
{
    IndexDifferences differences;
    if (!comparison_.appendTexts(removed_, "", differences.removed) ||
        !comparison_.appendTexts(added_, "", differences.added))
        return std::nullopt;
    std::ranges::sort(differences.removed);
    std::ranges::sort(differences.added);
    return differences;
}

} // namespace quillon
