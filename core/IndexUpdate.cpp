#include "core/IndexUpdate.h"

#include "indexing/Crawler.h"

#include <algorithm>
#include <optional>

// An update takes the path and the children listed under it out of the index and puts in whatever a
// crawl has found. Removals do not reach further down, so that alone would leave behind what stood
// below a folder that vanished with everything in it. Hence everything indexed below the path that
// the crawl did not find is looked for on the disk, and what is gone from there is forgotten too;
// what a file system does not answer for stays. Include folders are indexed whatever stands in
// their way, so those below the path come back.
//
// The change itself is made in one go, on a thread that has more to do, while nobody searches. So
// all that takes long is done before, a little at a time: the nodes of new paths are made without a
// flag, which nobody sees, and nodes are kept in place until the end. What is left is to set and
// clear flags of known nodes, and only where there is a difference or the removals reach.

namespace quillon {

namespace {

constexpr PathTree::Flags WHOLE = PathTree::STORED | PathTree::CANDIDATE | PathTree::LISTED;
/// Nodes between two looks whether a writer waits, or between two times that searches get in.
constexpr std::size_t SLICE = 1024;

std::string description(const std::vector<std::string> &set)
{
    std::string text = "[";
    for (const std::string &member : set)
        text.append(text.size() == 1 ? "\"" : ", \"").append(member).append("\"");
    return text + "]";
}

} // namespace

IndexUpdate::IndexUpdate(SearchBasePaths &paths, Terms terms, std::string path)
    : paths_(paths),
      terms_(std::move(terms)),
      extensions_(terms_.patterns),
      path_(std::move(path)),
      kind_(kindOfChanged())
{}

void IndexUpdate::crawlFailed(const CrawlResult &result)
{
    kind_ = kindOfChanged();
    isPackage_ = isFolder() && result.outcome == CrawlResult::Outcome::packageOrMissing;
}

bool IndexUpdate::isRoot(const std::string &path) const
{
    return std::ranges::find(terms_.roots, path) != terms_.roots.end();
}

bool IndexUpdate::isBelow(const std::string &path) const
{
    return path_ == "/"
               ? path != path_
               : path.starts_with(path_) && path.size() > path_.size() && path[path_.size()] == '/';
}

bool IndexUpdate::isSkipped(const std::string &folder) const
{
    SkipRules::State state = terms_.rules->stateOf(folder);
    return terms_.rules->skips(state, folder.substr(folder.rfind('/') + 1), [&] { return folder; });
}

/// As the index sees it: a file counts only with an included extension, a folder only where no
/// pattern skips it, and an include folder may be behind a link.
FolderLister::Kind IndexUpdate::kindOf(const std::string &path)
{
    const Kind kind = terms_.folderLister.kind(isRoot(path) ? path + "/." : path);
    if (isRoot(path))
        return kind == Kind::other ? Kind::nothing : kind;
    const auto isIncluded = [&] {
        return extensions_.holdsExtensionOf(path.substr(path.rfind('/') + 1));
    };
    const bool counts =
        kind == Kind::other ? isIncluded() : kind != Kind::folder || !isSkipped(path);
    return counts ? kind : Kind::nothing;
}

/// A path that a link has come to lead to is not there, wherever the link leads.
FolderLister::Kind IndexUpdate::kindOfChanged()
{
    std::optional<std::size_t> nearestRoot;
    for (const std::string &root : terms_.roots) {
        const std::size_t size = root == "/" ? 0 : root.size();
        if (path_.starts_with(root) && path_.size() > size && path_[size] == '/')
            nearestRoot = std::max(nearestRoot.value_or(0), size);
    }
    if (nearestRoot && !isRoot(path_)) {
        for (std::size_t slash = path_.find('/', *nearestRoot + 1); slash != std::string::npos;
             slash = path_.find('/', slash + 1)) {
            const Kind kind = terms_.folderLister.kind(path_.substr(0, slash));
            if (kind != Kind::folder)
                return kind == Kind::unknown ? kind : Kind::nothing;
        }
    }
    return kindOf(path_);
}

// Comparing

bool IndexUpdate::compare()
{
    if (kind_ == Kind::unknown)
        return false;
    held_.emplace(paths_);
    if (!compareFound())
        return false;
    std::ranges::sort(foundNodes_);
    if (!compareIndexed() || !judge())
        return false;
    for (const std::string &root : terms_.roots)
        if (isBelow(root) && kindOf(root) == Kind::folder)
            innerRoots_.push_back(root);
    if (!makeNodes())
        return false;
    if (kind_ == Kind::nothing)
        gone_.push_back(self_);
    else
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

bool IndexUpdate::compareFound()
{
    const ReadingIndex reading(paths_.lock());
    if (!stepAside())
        return false;
    const PathTree &tree = paths_.tree();
    self_ = tree.find(path_);
    top_ = paths_.nodeAbove(path_);
    nodes_.assign(std::size_t{found_.last()} + 1, PathTree::NONE);
    nodes_[FoundPaths::ROOT] = top_;
    for (FoundPaths::Token path = 1; path <= found_.last(); ++path) {
        if (path % SLICE == 0 && !stepAside())
            return false;
        const FoundPaths::Token parent = found_.parent(path);
        const NodeId node = nodes_[parent] == PathTree::NONE
                                ? PathTree::NONE
                                : tree.findChild(nodes_[parent], found_.name(path));
        nodes_[path] = node;
        if (node == PathTree::NONE) {
            new_.push_back(path);
            continue;
        }
        foundNodes_.emplace_back(node, found_.isFolder(path));
        // A child is going to be removed, and so is the listing of what is directly below it.
        const bool isTouched =
            parent == FoundPaths::ROOT || found_.parent(parent) == FoundPaths::ROOT;
        if (isTouched || (tree.node(node).flags & WHOLE) != WHOLE)
            missing_.push_back(node);
    }
    return true;
}

bool IndexUpdate::compareIndexed()
{
    struct Level
    {
        NodeId next = PathTree::NONE;
        std::size_t place = IN_FOLDER;
    };
    const ReadingIndex reading(paths_.lock());
    if (!stepAside())
        return false;
    for (const std::string &root : terms_.roots)
        if (isBelow(root))
            rootNodes_.push_back(paths_.tree().find(root));
    std::vector<Level> levels;
    if (top_ != PathTree::NONE)
        levels.push_back(
            {paths_.tree().node(top_).firstChild, isFolder() ? IN_FOLDER : IN_NO_FOLDER});
    for (std::size_t count = 1; !levels.empty(); ++count) {
        if (count % SLICE == 0 && !stepAside())
            return false;
        const NodeId node = levels.back().next;
        if (node == PathTree::NONE) {
            levels.pop_back();
            continue;
        }
        levels.back().next = paths_.tree().node(node).nextSibling;
        const std::size_t place = placeOf(node, levels.back().place, levels.size() <= 2);
        levels.push_back({paths_.tree().node(node).firstChild, place});
    }
    return true;
}

/// Notes the node where it was not found. Returns the place of what is below it.
std::size_t IndexUpdate::placeOf(NodeId node, std::size_t parent, bool isTouched)
{
    const auto found = std::ranges::lower_bound(foundNodes_, std::pair(node, false));
    if (found != foundNodes_.end() && found->first == node)
        return found->second ? IN_FOLDER : IN_NO_FOLDER;
    const PathTree::Node &unfound = paths_.tree().node(node);
    if ((unfound.flags & WHOLE) == 0 && unfound.firstChild == PathTree::NONE)
        return IN_FOLDER;
    // What stands below "/" has the node of "/" itself beside it.
    if (node == self_)
        return IN_FOLDER;
    unfound_.push_back(
        {.node = node, .flags = unfound.flags, .isTouched = isTouched, .parent = parent});
    return unfound_.size() - 1;
}

/// Tells what of it is gone from the disk. False when the index was reset.
bool IndexUpdate::judge()
{
    std::vector<Kind> kinds;
    kinds.reserve(unfound_.size());
    for (const Unfound &path : unfound_) {
        if (terms_.isReset.stop_requested())
            return false;
        if (path.parent == IN_FOLDER)
            kinds.push_back(kindIn(Kind::folder, path));
        else
            kinds.push_back(
                kindIn(path.parent == IN_NO_FOLDER ? Kind::other : kinds[path.parent], path));
        if ((path.flags & WHOLE) == 0)
            continue;
        if (kinds.back() == Kind::nothing)
            gone_.push_back(path.node);
        else if (kinds.back() == Kind::unknown && path.isTouched)
            unanswered_.push_back(path);
    }
    std::ranges::reverse(gone_);
    return true;
}

/// What is in something that is gone, or is a link now, is gone too, even where following the link
/// leads to something of the same name.
FolderLister::Kind IndexUpdate::kindIn(Kind folder, const Unfound &unfound)
{
    const bool isIncludeFolder = std::ranges::find(rootNodes_, unfound.node) != rootNodes_.end();
    if (folder != Kind::folder && !isIncludeFolder)
        return folder == Kind::unknown ? Kind::unknown : Kind::nothing;
    std::vector<std::string> text;
    return appendTexts({&unfound.node, 1}, "", text) ? kindOf(text.front()) : Kind::unknown;
}

/// Makes the nodes of what is new.
bool IndexUpdate::makeNodes()
{
    std::size_t made = 0;
    do {
        const WritingIndex writing(paths_.lock());
        if (terms_.isReset.stop_requested())
            return false;
        PathTree &tree = paths_.mutableTree();
        if (made == 0) {
            self_ = tree.insert(path_, 0);
            nodes_[FoundPaths::ROOT] = path_ == "/" ? tree.node(self_).parent : self_;
        }
        for (const std::size_t end = std::min(made + SLICE, new_.size()); made < end; ++made) {
            const FoundPaths::Token path = new_[made];
            nodes_[path] = tree.insertChild(nodes_[found_.parent(path)], found_.name(path), 0);
            missing_.push_back(nodes_[path]);
        }
    } while (made < new_.size());
    return true;
}

// Applying

bool IndexUpdate::apply()
{
    const WritingIndex writing(paths_.lock());
    if (terms_.isReset.stop_requested())
        return false;
    PathTree &tree = paths_.mutableTree();
    stored_ = paths_.listedChildren(self_);
    for (const NodeId child : stored_)
        remove(child);
    remove(self_);
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
        if ((tree.node(node).flags & PathTree::STORED) != 0)
            forgotten_.push_back(node);
        paths_.forget(node);
        tree.removeFlags(node, PathTree::CANDIDATE);
    }
    return true;
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
    paths_.mutableTree().addFlags(self_, PathTree::CANDIDATE);
    for (const NodeId node : missing_)
        paths_.mutableTree().addFlags(node, PathTree::CANDIDATE);
}

// Telling

void IndexUpdate::log(const std::function<void(std::span<const std::string>)> &receive) const
{
    std::vector<std::string> texts;
    if (!appendTexts(stored_, "", texts))
        return;
    std::vector<std::string> lines = {"sbl_stored_desc: " + description(texts)};
    for (const std::string &child : texts)
        lines.push_back(std::string(REMOVE_TAG).append(child));
    lines.push_back(std::string(REMOVE_TAG).append(path_));
    if (isPackage_)
        lines.push_back(PACKAGE_TAG + path_);
    if (kind_ == Kind::nothing)
        lines.push_back("sbl_root_gone: " + path_);
    receive(lines);
    std::span<const NodeId> rest(forgotten_);
    while (!rest.empty()) {
        const auto some = rest.first(std::min(SLICE, rest.size()));
        rest = rest.subspan(some.size());
        lines.clear();
        if (!appendTexts(some, REMOVE_TAG, lines))
            return;
        receive(lines);
    }
}

/// False when the index was reset.
bool IndexUpdate::appendTexts(std::span<const NodeId> nodes, std::string_view prefix,
                              std::vector<std::string> &texts) const
{
    const ReadingIndex reading(paths_.lock());
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        if (i % SLICE == 0 && !stepAside())
            return false;
        texts.emplace_back(prefix);
        paths_.tree().appendText(nodes[i], texts.back());
    }
    return true;
}

} // namespace quillon
