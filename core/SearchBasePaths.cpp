#include "core/SearchBasePaths.h"

#include "base/PathText.h"

#include <utility>

namespace quillon {

namespace {

using NodeId = PathTree::NodeId;

bool has(const PathTree &tree, NodeId node, PathTree::Flags flag)
{
    return node != PathTree::NONE && (tree.node(node).flags & flag) != 0;
}

/// Returns whether the tree's shape says that the parent lists the path. A path below "/" reads
/// "/name", so its first component is the single empty one, although the text "/" has two.
bool isParentByShape(std::string_view parent, std::string_view path)
{
    const std::size_t slash = path.rfind('/');
    if (slash == std::string_view::npos)
        return false;
    return slash == 0 ? parent == "/" : parent != "/" && parent == path.substr(0, slash);
}

/// Returns the text of the node that keeps a path's set of children.
std::string_view keyText(std::string_view parent)
{
    return parent == "/" ? std::string_view() : parent;
}

/// Does the reverse of keyText() for a node that keeps a set; ROOT stands for the empty path.
std::string parentText(const PathTree &tree, NodeId set)
{
    std::string text = tree.text(set);
    return text.empty() && set != PathTree::ROOT ? "/" : text;
}

bool isSlash(const PathTree &tree, NodeId id)
{
    const NodeId parent = tree.node(id).parent;
    return parent != PathTree::ROOT && tree.node(parent).parent == PathTree::ROOT &&
           tree.name(tree.node(id)).empty() && tree.name(tree.node(parent)).empty();
}

/// Returns the node that keeps the set of children of a node's path.
NodeId setOf(const PathTree &tree, NodeId id)
{
    return isSlash(tree, id) ? tree.node(id).parent : id;
}

/// Returns whether isParentByShape() holds for the path's parent.
bool isListedByShape(const PathTree &tree, NodeId id)
{
    const NodeId parent = tree.node(id).parent;
    return parent != PathTree::ROOT && !tree.name(tree.node(id)).empty() &&
           (!tree.name(tree.node(parent)).empty() || tree.node(parent).parent == PathTree::ROOT);
}

std::vector<NodeId> childrenWith(const PathTree &tree, NodeId parent, PathTree::Flags flag)
{
    std::vector<NodeId> children;
    if (parent == PathTree::NONE)
        return children;
    for (NodeId id = tree.firstChild(parent); id != PathTree::NONE; id = tree.node(id).nextSibling)
        if (has(tree, id, flag))
            children.push_back(id);
    return children;
}

/// Returns the next node in the order in which everything below a node comes after it.
NodeId nextInTree(const PathTree &tree, NodeId id)
{
    if (tree.node(id).hasChildren())
        return tree.firstChild(id);
    while (id != PathTree::ROOT && tree.node(id).nextSibling == PathTree::NONE)
        id = tree.node(id).parent;
    return id == PathTree::ROOT ? PathTree::NONE : tree.node(id).nextSibling;
}

constexpr std::string_view CHILD = "\n\t";

} // namespace

std::string_view StringPathParent::getParentFolderPath(std::string_view path)
{
    path = withoutTrailingSlashes(path);
    const std::size_t slash = path.rfind('/');
    if (slash == std::string_view::npos)
        return ".";
    return withoutTrailingSlashes(path.substr(0, slash + 1));
}

std::string_view normalizePath(std::string_view path)
{
    if (path.size() >= 2 && path.back() == '/')
        path.remove_suffix(1);
    return path;
}

std::vector<SearchBasePathsInsertionOperation>
makeInsertionOperations(std::string_view url, std::span<const std::string> children)
{
    const auto operation = [](std::string_view path) {
        return SearchBasePathsInsertionOperation{
            std::string(normalizePath(path)),
            std::string(normalizePath(StringPathParent::getParentFolderPath(path)))};
    };
    std::vector<SearchBasePathsInsertionOperation> operations;
    operations.reserve(1 + children.size());
    operations.push_back(operation(url));
    for (const std::string &child : children)
        operations.push_back(operation(child));
    return operations;
}

// The set of paths

bool SearchBasePaths::Paths::contains(std::string_view path) const
{
    return has(tree_, tree_.find(path), PathTree::STORED);
}

std::size_t SearchBasePaths::Paths::count() const
{
    return tree_.count(PathTree::STORED);
}

void SearchBasePaths::Paths::forEach(const Receiver &receive) const
{
    std::string text;
    for (NodeId id = nextInTree(tree_, PathTree::ROOT); id != PathTree::NONE;
         id = nextInTree(tree_, id)) {
        if (!has(tree_, id, PathTree::STORED))
            continue;
        text.clear();
        tree_.appendText(id, text);
        receive(text);
    }
}

// The map of children

bool SearchBasePaths::ParentToChildren::contains(std::string_view parent) const
{
    if (parent.empty())
        return store_.listedElsewhere(parent) != nullptr;
    return has(tree_, tree_.find(keyText(parent)), PathTree::HAS_CHILD_SET);
}

std::size_t SearchBasePaths::ParentToChildren::count() const
{
    return tree_.count(PathTree::HAS_CHILD_SET) + (contains("") ? 1 : 0);
}

std::optional<std::vector<std::string>>
SearchBasePaths::ParentToChildren::children(std::string_view parent) const
{
    if (!contains(parent))
        return std::nullopt;
    std::vector<std::string> texts;
    const NodeId set = parent.empty() ? PathTree::ROOT : tree_.find(keyText(parent));
    if (set != PathTree::ROOT)
        for (const NodeId child : childrenWith(tree_, set, PathTree::LISTED))
            texts.push_back(tree_.text(child));
    if (const Children *others = store_.listedElsewhere(parent))
        texts.insert(texts.end(), others->begin(), others->end());
    return texts;
}

void SearchBasePaths::ParentToChildren::forEach(const Receiver &receive) const
{
    if (contains(""))
        receive("");
    SortedPathWalk walk(tree_, SortedPathWalk::Of::childSets);
    for (NodeId node = walk.next(); node != PathTree::NONE; node = walk.next()) {
        receive(parentText(tree_, node));
    }
}

// Operations

NodeId SearchBasePaths::add(std::string_view path)
{
    const std::string_view normalized = normalizePath(path);
    const NodeId node =
        list(normalized, normalizePath(StringPathParent::getParentFolderPath(normalized)));
    return normalized == "/" ? index_.tree.node(node).parent : node;
}

NodeId SearchBasePaths::add(NodeId parent, std::string_view name)
{
    index_.tree.addFlags(parent, PathTree::HAS_CHILD_SET);
    return index_.tree.insertChild(parent, name, PathTree::STORED | PathTree::LISTED);
}

void SearchBasePaths::insert(std::span<const SearchBasePathsInsertionOperation> operations)
{
    for (const SearchBasePathsInsertionOperation &operation : operations)
        list(operation.normalizedPath, operation.normalizedParentPath);
}

NodeId SearchBasePaths::list(std::string_view path, std::string_view parent)
{
    if (!isParentByShape(parent, path)) {
        elsewhere_[std::string(parent)].emplace(path);
        if (!parent.empty())
            index_.tree.insert(keyText(parent), PathTree::HAS_CHILD_SET);
        return index_.tree.insert(path, PathTree::STORED);
    }
    const NodeId node = index_.tree.insert(path, PathTree::STORED | PathTree::LISTED);
    index_.tree.addFlags(index_.tree.node(node).parent, PathTree::HAS_CHILD_SET);
    return node;
}

NodeId SearchBasePaths::remove(std::string_view path, std::vector<std::string> &log)
{
    const std::string_view normalized = normalizePath(path);
    log.push_back(std::string(REMOVE_TAG).append(normalized));
    const NodeId node = index_.tree.insert(normalized, 0);
    if (normalized.empty()) {
        elsewhere_[""].clear();
        index_.tree.removeFlags(node, PathTree::STORED);
    } else {
        remove(node);
    }
    return node;
}

void SearchBasePaths::add(NodeId node)
{
    if (!isListedByShape(index_.tree, node)) {
        add(index_.tree.text(node));
        return;
    }
    index_.tree.addFlags(node, PathTree::STORED | PathTree::LISTED);
    index_.tree.addFlags(index_.tree.node(node).parent, PathTree::HAS_CHILD_SET);
}

void SearchBasePaths::remove(NodeId node)
{
    PathTree &tree = index_.tree;
    const NodeId set = setOf(tree, node);
    tree.addFlags(set, PathTree::HAS_CHILD_SET);
    for (const NodeId child : childrenWith(tree, set, PathTree::LISTED))
        tree.removeFlags(child, PathTree::LISTED);
    if (!elsewhere_.empty())
        elsewhere_.erase(parentText(tree, set));
    tree.removeFlags(node, PathTree::STORED);
}

void SearchBasePaths::forget(NodeId node)
{
    PathTree &tree = index_.tree;
    const NodeId set = setOf(tree, node);
    if (has(tree, set, PathTree::HAS_CHILD_SET) && listedElsewhere(set) == nullptr &&
        childrenWith(tree, set, PathTree::LISTED).empty())
        tree.removeFlags(set, PathTree::HAS_CHILD_SET);
    if (!isListedByShape(tree, node)) {
        const std::string text = tree.text(node);
        const auto others =
            elsewhere_.find(normalizePath(StringPathParent::getParentFolderPath(text)));
        if (others != elsewhere_.end() && !others->first.empty()) {
            others->second.erase(text);
            if (others->second.empty())
                elsewhere_.erase(others);
        }
    }
    tree.removeFlags(node, PathTree::STORED | PathTree::LISTED);
}

std::vector<NodeId> SearchBasePaths::listedChildren(NodeId node) const
{
    const NodeId set = setOf(index_.tree, node);
    std::vector<NodeId> children = childrenWith(index_.tree, set, PathTree::LISTED);
    if (const Children *others = listedElsewhere(set))
        for (const std::string &other : *others)
            if (const NodeId child = index_.tree.find(other); child != PathTree::NONE)
                children.push_back(child);
    return children;
}

void SearchBasePaths::listStoredChildren(std::string_view parent)
{
    const NodeId above = nodeAbove(parent);
    for (const NodeId child : childrenWith(index_.tree, above, PathTree::STORED)) {
        index_.tree.addFlags(above, PathTree::HAS_CHILD_SET);
        index_.tree.addFlags(child, PathTree::LISTED);
    }
}

void SearchBasePaths::clear()
{
    index_.tree.clear();
    elsewhere_.clear();
}

// The dump

std::string SearchBasePaths::treeMappingDescription() const
{
    std::string text;
    appendTreeMapping(PathTree::ROOT, true, text);
    SortedPathWalk walk(index_.tree, SortedPathWalk::Of::childSets);
    for (NodeId node = walk.next(); node != PathTree::NONE; node = walk.next())
        appendTreeMapping(node, text.empty(), text);
    return text;
}

void SearchBasePaths::appendTreeMapping(NodeId node, bool isFirst, std::string &text) const
{
    const std::string parent = parentText(index_.tree, node);
    const Children *others = listedElsewhere(parent);
    if (node == PathTree::ROOT && others == nullptr)
        return;
    text.append(isFirst ? "" : "\n").append(parent).append(": ");
    const std::size_t end = text.size();
    if (node != PathTree::ROOT)
        for (const NodeId child : childrenWith(index_.tree, node, PathTree::LISTED)) {
            text.append(CHILD).append(keyText(parent)).append("/");
            text.append(index_.tree.name(index_.tree.node(child)));
        }
    if (others != nullptr)
        for (const std::string &child : *others)
            text.append(CHILD).append(child);
    if (text.size() == end)
        text += CHILD;
}

NodeId SearchBasePaths::nodeAbove(std::string_view parent) const
{
    return parent.empty() ? PathTree::NONE : index_.tree.find(keyText(parent));
}

const SearchBasePaths::Children *SearchBasePaths::listedElsewhere(std::string_view parent) const
{
    const auto others = elsewhere_.find(parent);
    return others == elsewhere_.end() ? nullptr : &others->second;
}

const SearchBasePaths::Children *SearchBasePaths::listedElsewhere(NodeId set) const
{
    return elsewhere_.empty() ? nullptr : listedElsewhere(parentText(index_.tree, set));
}

} // namespace quillon
