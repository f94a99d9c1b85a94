#include "core/SortedPathWalk.h"

#include <algorithm>
#include <string_view>

// Siblings in the order of their names would not do: "a b" sorts before "a/c", which is below "a".
// So each sibling counts twice, by its name for itself and by its name and a slash for everything
// below it. No name holds a slash, so no sibling's text falls between two texts of the latter kind.

namespace quillon {

SortedPathWalk::SortedPathWalk(const PathTree &tree, Of of)
    : tree_(tree),
      flag_(of == Of::paths ? PathTree::STORED : PathTree::HAS_CHILD_SET),
      generation_(tree.generation())
{
    pushChildren(PathTree::ROOT);
}

PathTree::NodeId SortedPathWalk::next()
{
    while (!items_.empty() && tree_.generation() == generation_) {
        const Item item = items_.back();
        items_.pop_back();
        // The set of the top is met as that of "/", just before the sets of what is below "/".
        const bool isTopSet = flag_ == PathTree::HAS_CHILD_SET && isTop(item.node);
        if (item.isBelow)
            pushChildren(item.node);
        if (item.isBelow == isTopSet && isMet(item.node))
            return item.node;
    }
    return PathTree::NONE;
}

bool SortedPathWalk::isMet(PathTree::NodeId node) const
{
    return (tree_.node(node).flags & flag_) != 0;
}

bool SortedPathWalk::isTop(PathTree::NodeId node) const
{
    return tree_.node(node).parent == PathTree::ROOT && tree_.name(tree_.node(node)).empty();
}

void SortedPathWalk::pushChildren(PathTree::NodeId parent)
{
    const std::size_t begin = items_.size();
    for (PathTree::NodeId id = tree_.firstChild(parent); id != PathTree::NONE;
         id = tree_.node(id).nextSibling) {
        if (isMet(id))
            items_.push_back({id, false});
        if (tree_.node(id).hasChildren() || (isMet(id) && isTop(id)))
            items_.push_back({id, true});
    }
    std::sort(items_.begin() + static_cast<std::ptrdiff_t>(begin), items_.end(),
              [this](const Item &a, const Item &b) { return comesAfter(a, b); });
}

bool SortedPathWalk::comesAfter(const Item &a, const Item &b) const
{
    const std::string_view nameA = tree_.name(tree_.node(a.node));
    const std::string_view nameB = tree_.name(tree_.node(b.node));
    const std::size_t shorter = std::min(nameA.size(), nameB.size());
    const int order = nameA.substr(0, shorter).compare(nameB.substr(0, shorter));
    if (order != 0)
        return order > 0;
    const auto following = [shorter](std::string_view name, bool isBelow) {
        if (name.size() > shorter)
            return static_cast<int>(static_cast<unsigned char>(name[shorter]));
        return isBelow ? static_cast<int>('/') : -1;
    };
    return following(nameA, a.isBelow) > following(nameB, b.isBelow);
}

} // namespace quillon
