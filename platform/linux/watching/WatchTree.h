#pragma once

#include "base/IdTable.h"
#include "base/NameArena.h"
#include "base/PagedMap.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace quillon {

/// The owners of each watch. The few watches with several owners are kept apart. Not locked.
class WatchOwners
{
public:
    using Id = std::uint32_t;

    /// Adds an owner. Returns true when nobody had the watch.
    bool add(int watch, Id owner);
    /// Removes an owner, who has the watch. Returns true when nobody has it any more.
    bool remove(int watch, Id owner);
    std::vector<Id> of(int watch) const;
    /// Returns the bytes of memory held, including unused capacity.
    std::size_t bytes() const;

private:
    /// One owner of each watch. The kernel gives out the numbers of watches one after the other.
    PagedMap<Id> first_;
    /// The other owners.
    std::unordered_multimap<int, Id> further_;
};

/// The watched and unwatched folders below the roots, by name and parent, and the watches they
/// have.
///
/// One watch may belong to several folders: two places where the same folder is mounted, or the old
/// and the new place of a folder that was moved. Not locked.
class WatchTree
{
public:
    /// Zero means no folder. The ids of released folders are used again.
    using Id = std::uint32_t;
    static constexpr Id NONE = 0;
    static constexpr int NO_WATCH = -1;

    WatchTree();

    /// Adds a folder whose name is not in use in its parent. The parent of a root is NONE, and its
    /// name is its path.
    Id add(Id parent, std::string_view name);
    Id find(Id parent, std::string_view name) const;

    /// Returns false once the folder was detached.
    bool isLive(Id id) const { return nodes_[id].state == State::live; }
    bool isRoot(Id id) const { return nodes_[id].parent == NONE; }
    Id parent(Id id) const { return nodes_[id].parent; }
    Id firstChild(Id id) const { return nodes_[id].firstChild; }
    Id nextSibling(Id id) const { return nodes_[id].nextSibling; }
    /// Returns the number of folders between this one and its root. The highest number also
    /// means more.
    std::uint16_t depth(Id id) const { return nodes_[id].depth; }
    std::string_view name(Id id) const;
    std::string path(Id id) const { return path(parent(id), name(id)); }
    std::string path(Id parent, std::string_view name) const;

    /// Takes a folder and everything below it out of the tree, parents first. The folders keep
    /// their watches and can no longer be found by name.
    void detach(Id top, std::vector<Id> &detached);
    /// Forgets a detached folder, which has given up its watch.
    void release(Id id);

    int watch(Id id) const { return nodes_[id].watch; }
    void setWatch(Id id, int watch);
    /// Returns true when no other folder has the watch that this one had.
    bool clearWatch(Id id);
    /// Returns the owners of a watch, including detached folders.
    std::vector<Id> ownersOf(int watch) const { return owners_.of(watch); }

    /// Returns a number that is higher than every id.
    Id idLimit() const { return static_cast<Id>(nodes_.size()); }
    std::size_t folders() const { return folders_; }
    /// Returns the number of different watches.
    std::size_t watches() const { return watches_; }
    /// Returns the bytes of memory held, including unused capacity.
    std::size_t bytes() const;

private:
    enum class State : std::uint16_t
    {
        free,
        live,
        detached,
    };
    struct Node
    {
        Id parent = NONE;
        Id firstChild = NONE;
        Id nextSibling = NONE;
        Id previousSibling = NONE;
        /// The place of the name, or of a root the index in the list of root paths.
        NameArena::Offset name = 0;
        int watch = NO_WATCH;
        /// Some kernels list longer names than the 255 bytes that most file systems allow.
        std::uint16_t nameLength = 0;
        std::uint16_t depth : 14 = 0;
        State state : 2 = State::free;
    };
    static_assert(sizeof(Node) == 28);

    Id newNode();
    NameArena::Offset placeOfRoot(std::string_view path);
    void unlink(Id id);

    std::deque<Node> nodes_;
    std::vector<Id> free_;
    NameArena names_;
    /// The paths of the roots, which stay when a root goes.
    std::deque<std::string> rootPaths_;
    IdTable children_;
    WatchOwners owners_;
    std::size_t folders_ = 0;
    std::size_t watches_ = 0;
};

} // namespace quillon
