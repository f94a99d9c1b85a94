#include "core/SearchBasePaths.h"

namespace quillon {

namespace {

constexpr PathTree::Flags INDEXED = PathTree::STORED | PathTree::CANDIDATE;

} // namespace

std::string_view normalizePath(std::string_view path)
{
    if (path.size() >= 2 && path.back() == '/')
        path.remove_suffix(1);
    return path;
}

PathTree::NodeId SearchBasePaths::add(std::string_view path)
{
    const std::string_view normalized = normalizePath(path);
    const PathTree::NodeId node = index_.tree.insert(normalized, INDEXED);
    // What stands below "/" reads "/name": its first component is the empty one.
    return normalized == "/" ? index_.tree.insert("", PathTree::HAS_CHILD_SET) : node;
}

PathTree::NodeId SearchBasePaths::add(PathTree::NodeId parent, std::string_view name)
{
    return index_.tree.insertChild(parent, name, INDEXED);
}

std::size_t SearchBasePaths::count() const
{
    return index_.tree.count(PathTree::STORED);
}

} // namespace quillon
