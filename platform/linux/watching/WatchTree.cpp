#include "platform/linux/watching/WatchTree.h"

#include "base/Require.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <utility>

namespace quillon {

namespace {

constexpr std::uint64_t ODD = 0x9E3779B97F4A7C15U;

std::uint64_t hashOf(WatchTree::Id parent, std::string_view name)
{
    const std::uint64_t hash = (std::hash<std::string_view>()(name) ^ (parent * ODD)) * ODD;
    return hash ^ (hash >> 32);
}

constexpr std::uint16_t DEEPEST = (1U << 14) - 1;
constexpr std::size_t LONGEST_NAME = std::numeric_limits<std::uint16_t>::max();

} // namespace

// WatchOwners

bool WatchOwners::add(int watch, Id owner)
{
    const auto number = static_cast<std::uint32_t>(watch);
    if (first_.find(number) != nullptr) {
        further_.emplace(watch, owner);
        return false;
    }
    first_.set(number, owner);
    return true;
}

bool WatchOwners::remove(int watch, Id owner)
{
    const auto [begin, end] = further_.equal_range(watch);
    auto other = std::find_if(begin, end, [&](const auto &entry) { return entry.second == owner; });
    if (other != end) {
        further_.erase(other);
        return false;
    }
    const auto number = static_cast<std::uint32_t>(watch);
    const Id *first = first_.find(number);
    require(first != nullptr && *first == owner, "a watch is taken from one who has it");
    if (begin == end) {
        first_.erase(number);
        return true;
    }
    first_.set(number, begin->second);
    further_.erase(begin);
    return false;
}

std::vector<WatchOwners::Id> WatchOwners::of(int watch) const
{
    std::vector<Id> owners;
    if (watch >= 0)
        if (const Id *first = first_.find(static_cast<std::uint32_t>(watch)))
            owners.push_back(*first);
    const auto [begin, end] = further_.equal_range(watch);
    for (auto other = begin; other != end; ++other)
        owners.push_back(other->second);
    return owners;
}

std::size_t WatchOwners::bytes() const
{
    return first_.bytes() + further_.size() * (sizeof(std::pair<int, Id>) + 2 * sizeof(void *)) +
           further_.bucket_count() * sizeof(void *);
}

// WatchTree

WatchTree::WatchTree()
{
    nodes_.emplace_back();
}

WatchTree::Id WatchTree::newNode()
{
    Id id = NONE;
    if (free_.empty()) {
        id = static_cast<Id>(nodes_.size());
        nodes_.emplace_back();
    } else {
        id = free_.back();
        free_.pop_back();
    }
    nodes_[id] = Node();
    nodes_[id].state = State::live;
    ++folders_;
    return id;
}

/// There are only a few roots, and a root that comes again keeps its place.
NameArena::Offset WatchTree::placeOfRoot(std::string_view path)
{
    const auto known = std::ranges::find(rootPaths_, path);
    const auto place = static_cast<NameArena::Offset>(known - rootPaths_.begin());
    if (known == rootPaths_.end())
        rootPaths_.emplace_back(path);
    return place;
}

WatchTree::Id WatchTree::add(Id parent, std::string_view name)
{
    const Id id = newNode();
    Node &node = nodes_[id];
    node.parent = parent;
    children_.insert(hashOf(parent, name), id);
    if (parent == NONE) {
        node.name = placeOfRoot(name);
        return id;
    }
    require(!name.empty() && name.size() <= LONGEST_NAME,
            "a name fits in a record of the kernel's");
    Node &above = nodes_[parent];
    node.nextSibling = std::exchange(above.firstChild, id);
    if (node.nextSibling != NONE)
        nodes_[node.nextSibling].previousSibling = id;
    node.name = names_.store(name);
    node.nameLength = static_cast<std::uint16_t>(name.size());
    node.depth =
        static_cast<std::uint16_t>(std::min<unsigned>(above.depth + 1U, DEEPEST)) & DEEPEST;
    return id;
}

WatchTree::Id WatchTree::find(Id parent, std::string_view name) const
{
    return children_.find(hashOf(parent, name), [&](Id id) {
        return nodes_[id].parent == parent && this->name(id) == name;
    });
}

std::string_view WatchTree::name(Id id) const
{
    const Node &node = nodes_[id];
    if (node.parent == NONE)
        return rootPaths_[node.name];
    return {names_.at(node.name), node.nameLength};
}

std::string WatchTree::path(Id parent, std::string_view name) const
{
    if (parent == NONE)
        return std::string(name);
    std::size_t size = name.size() + 1;
    Id at = parent;
    for (; !isRoot(at); at = this->parent(at))
        size += nodes_[at].nameLength + std::size_t{1};
    const std::string_view root = this->name(at) == "/" ? std::string_view() : this->name(at);

    std::string path(root.size() + size, '/');
    size = path.size();
    const auto put = [&](std::string_view piece) {
        size -= piece.size();
        path.replace(size, piece.size(), piece);
    };
    put(name);
    for (at = parent; !isRoot(at); at = this->parent(at)) {
        --size; // the slash
        put(this->name(at));
    }
    path.replace(0, root.size(), root);
    return path;
}

void WatchTree::unlink(Id id)
{
    const Node &node = nodes_[id];
    if (node.previousSibling != NONE)
        nodes_[node.previousSibling].nextSibling = node.nextSibling;
    else if (node.parent != NONE)
        nodes_[node.parent].firstChild = node.nextSibling;
    if (node.nextSibling != NONE)
        nodes_[node.nextSibling].previousSibling = node.previousSibling;
}

void WatchTree::detach(Id top, std::vector<Id> &detached)
{
    unlink(top);
    std::size_t next = detached.size();
    detached.push_back(top);
    for (; next < detached.size(); ++next) {
        const Id id = detached[next];
        Node &node = nodes_[id];
        for (Id child = node.firstChild; child != NONE; child = nextSibling(child))
            detached.push_back(child);
        children_.erase(hashOf(node.parent, name(id)), id);
        node.state = State::detached;
        --folders_;
    }
}

void WatchTree::release(Id id)
{
    Node &node = nodes_[id];
    require(node.state == State::detached && node.watch == NO_WATCH,
            "a released folder is detached and has no watch");
    if (!isRoot(id))
        names_.release(node.name, node.nameLength);
    node = Node();
    free_.push_back(id);
}

void WatchTree::setWatch(Id id, int watch)
{
    require(nodes_[id].watch == NO_WATCH, "a folder has one watch at a time");
    nodes_[id].watch = watch;
    watches_ += owners_.add(watch, id) ? 1U : 0U;
}

bool WatchTree::clearWatch(Id id)
{
    const int watch = std::exchange(nodes_[id].watch, NO_WATCH);
    const bool wasLast = owners_.remove(watch, id);
    watches_ -= wasLast ? 1U : 0U;
    return wasLast;
}

std::size_t WatchTree::bytes() const
{
    return sizeof(*this) + nodes_.size() * sizeof(Node) + free_.capacity() * sizeof(Id) +
           names_.bytes() + children_.bytes() + owners_.bytes();
}

} // namespace quillon
