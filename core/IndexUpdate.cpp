#include "core/IndexUpdate.h"

#include "indexing/Crawler.h"

#include <algorithm>
#include <optional>

// An update takes the path and the children listed under it out of the index and puts in whatever a
// crawl has found. Removals do not reach further down, so that alone would leave behind what stood
// below a folder that vanished with everything in it. Hence everything indexed below the path that
// the crawl did not find is looked for on the disk, and what is gone from there is forgotten too.
// Include folders are indexed whatever stands in their way, so those below the path come back.
//
// The index is locked for little more than the differences: what is indexed as it was found is left
// alone, except where the removals reach.

namespace quillon {

namespace {

constexpr PathTree::Flags WHOLE = PathTree::STORED | PathTree::CANDIDATE | PathTree::LISTED;
/// Nodes between two looks whether a writer waits.
constexpr std::uint32_t SLICE = 1024;

/// Keeps the ids that are read in one slice valid for the next one.
class Pin
{
public:
    explicit Pin(const SearchBasePaths &paths) : paths_(paths)
    {
        const ReadingIndex reading(paths_.lock());
        paths_.tree().pin();
    }
    ~Pin()
    {
        const ReadingIndex reading(paths_.lock());
        paths_.tree().unpin();
    }
    Pin(const Pin &) = delete;
    Pin &operator=(const Pin &) = delete;

private:
    const SearchBasePaths &paths_;
};

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

/// As the index sees it: a file counts only with an included extension, and an include folder may
/// be behind a link.
FolderLister::Kind IndexUpdate::kindOf(const std::string &path)
{
    if (isUnanswered_)
        return Kind::unknown;
    const Kind kind = terms_.folderLister.kind(isRoot(path) ? path + "/." : path);
    isUnanswered_ = kind == Kind::unknown;
    if (isRoot(path))
        return kind == Kind::other ? Kind::nothing : kind;
    const auto isIncluded = [&] {
        return extensions_.holdsExtensionOf(path.substr(path.rfind('/') + 1));
    };
    return kind == Kind::other && !isIncluded() ? Kind::nothing : kind;
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
            isUnanswered_ = isUnanswered_ || kind == Kind::unknown;
            if (kind != Kind::folder)
                return Kind::nothing;
        }
    }
    return kindOf(path_);
}

// Comparing

bool IndexUpdate::compare()
{
    const Pin pin(paths_);
    if (isUnanswered_ || !compareFound())
        return false;
    std::ranges::sort(foundNodes_);
    if (!compareIndexed())
        return false;
    for (const std::string &root : terms_.roots)
        if (isBelow(root) && kindOf(root) == Kind::folder)
            innerRoots_.push_back(root);
    if (isUnanswered_)
        return false;
    if (kind_ != Kind::nothing) {
        operations_ = makeInsertionOperations(path_, missing_);
        missing_.clear();
    }
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
    top_ = paths_.nodeAbove(path_);
    std::vector<NodeId> nodes(std::size_t{found_.last()} + 1, PathTree::NONE);
    nodes[FoundPaths::ROOT] = top_;
    for (FoundPaths::Token path = 1; path <= found_.last(); ++path) {
        if (path % SLICE == 0 && !stepAside())
            return false;
        const FoundPaths::Token parent = found_.parent(path);
        const NodeId node = nodes[parent] == PathTree::NONE
                                ? PathTree::NONE
                                : tree.findChild(nodes[parent], found_.name(path));
        nodes[path] = node;
        // A child is going to be removed, and so is the listing of what is directly below it.
        const bool isTouched =
            parent == FoundPaths::ROOT || found_.parent(parent) == FoundPaths::ROOT;
        if (isTouched || node == PathTree::NONE || (tree.node(node).flags & WHOLE) != WHOLE)
            missing_.push_back(found_.text(path));
        if (node != PathTree::NONE)
            foundNodes_.emplace_back(node, found_.isFolder(path));
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
    std::vector<Unfound> unfound;
    {
        const ReadingIndex reading(paths_.lock());
        if (!stepAside())
            return false;
        std::vector<Level> levels;
        if (top_ != PathTree::NONE)
            levels.push_back(
                {paths_.tree().node(top_).firstChild, isFolder() ? IN_FOLDER : IN_NO_FOLDER});
        for (std::uint32_t count = 1; !levels.empty(); ++count) {
            if (count % SLICE == 0 && !stepAside())
                return false;
            const NodeId node = levels.back().next;
            if (node == PathTree::NONE) {
                levels.pop_back();
                continue;
            }
            levels.back().next = paths_.tree().node(node).nextSibling;
            const std::size_t place = placeOf(node, levels.back().place, unfound);
            levels.push_back({paths_.tree().node(node).firstChild, place});
        }
    }
    judge(unfound);
    return true;
}

/// Notes the node where it was not found. Returns the place of what is below it.
std::size_t IndexUpdate::placeOf(NodeId node, std::size_t parent, std::vector<Unfound> &unfound)
{
    const auto found = std::ranges::lower_bound(foundNodes_, std::pair(node, false));
    if (found != foundNodes_.end() && found->first == node)
        return found->second ? IN_FOLDER : IN_NO_FOLDER;
    const bool isIndexed = (paths_.tree().node(node).flags & WHOLE) != 0;
    if (!isIndexed && paths_.tree().node(node).firstChild == PathTree::NONE)
        return IN_FOLDER;
    // What stands below "/" has the node of "/" itself beside it.
    std::string text = paths_.tree().text(node);
    if (text == path_)
        return IN_FOLDER;
    unfound.push_back({std::move(text), parent, isIndexed});
    return unfound.size() - 1;
}

/// Tells what of it is gone from the disk. What is in something that is gone, or is a link now, is
/// gone too, even where following the link leads to something of the same name.
void IndexUpdate::judge(const std::vector<Unfound> &unfound)
{
    std::vector<Kind> kinds;
    for (const Unfound &path : unfound) {
        const bool isInFolder = path.parent == IN_FOLDER ||
                                (path.parent != IN_NO_FOLDER && kinds[path.parent] == Kind::folder);
        kinds.push_back(isInFolder || isRoot(path.text) ? kindOf(path.text) : Kind::nothing);
        if (kinds.back() == Kind::nothing && path.isIndexed)
            gone_.push_back(path.text);
    }
    std::ranges::reverse(gone_);
}

// Applying

bool IndexUpdate::apply()
{
    const WritingIndex writing(paths_.lock());
    if (terms_.isReset.stop_requested())
        return false;
    stored_ = paths_.parentToChildren().children(path_).value_or(std::vector<std::string>());
    for (const std::string &child : stored_)
        remove(child);
    remove(path_);
    if (kind_ != Kind::nothing)
        insert();
    for (const std::string &root : innerRoots_) {
        paths_.mutableTree().insert(normalizePath(root), PathTree::CANDIDATE);
        paths_.add(root);
        paths_.listStoredChildren(root);
    }
    if (kind_ == Kind::nothing)
        gone_.push_back(path_);
    for (const std::string &path : gone_) {
        const NodeId node = paths_.forget(path, removals_);
        paths_.mutableTree().removeFlags(node, PathTree::CANDIDATE);
    }
    return true;
}

std::vector<std::string> IndexUpdate::log() const
{
    std::vector<std::string> lines = {"sbl_stored_desc: " + description(stored_)};
    const auto listed = removals_.begin() + static_cast<std::ptrdiff_t>(stored_.size() + 1);
    lines.insert(lines.end(), removals_.begin(), listed);
    if (isPackage_)
        lines.push_back(std::string(PACKAGE_TAG) + path_);
    if (kind_ == Kind::nothing)
        lines.push_back("sbl_root_gone: " + path_);
    lines.insert(lines.end(), listed, removals_.end());
    return lines;
}

void IndexUpdate::remove(const std::string &path)
{
    const NodeId node = paths_.remove(path, removals_);
    paths_.mutableTree().removeFlags(node, PathTree::CANDIDATE);
}

void IndexUpdate::insert()
{
    const auto start = terms_.now();
    paths_.insert(operations_);
    insertionTime_ = terms_.now() - start;
    for (const SearchBasePathsInsertionOperation &operation : operations_)
        paths_.mutableTree().insert(operation.normalizedPath, PathTree::CANDIDATE);
}

} // namespace quillon
