#pragma once

#include "base/ChildTable.h"
#include "base/NameArena.h"
#include "platform/linux/watching/WatchOwners.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace quillon {

/// The folders that are kept an eye on, by name and folder above, and the watches they have.
///
/// One watch may belong to several folders: two places where the same folder is mounted, or the old
/// and the new place of a folder that was moved. Not locked.
class WatchTree
{
public:
    /// Zero is no folder. Ids of released folders are used again.
    using Id = std::uint32_t;
    static constexpr Id NONE = 0;
    static constexpr int NO_WATCH = -1;

    WatchTree();

    Id addRoot(std::string path);
    /// The name is not in use in the folder.
    Id add(Id parent, std::string_view name);
    Id find(Id parent, std::string_view name) const;

    /// Returns false once it was detached.
    bool isLive(Id id) const { return nodes_[id].state == State::live; }
    bool isRoot(Id id) const { return nodes_[id].parent == NONE; }
    Id parent(Id id) const { return nodes_[id].parent; }
    Id firstChild(Id id) const { return nodes_[id].firstChild; }
    Id nextSibling(Id id) const { return nodes_[id].nextSibling; }
    /// Folders between it and its root; the highest number stands for more, too.
    std::uint16_t depth(Id id) const { return nodes_[id].depth; }
    /// The result is empty for a root.
    std::string_view name(Id id) const;
    std::string path(Id id) const;
    std::string path(Id parent, std::string_view name) const;

    /// Takes a folder and all below it out, parents first. They keep their watches and can no
    /// longer be found by name.
    void detach(Id top, std::vector<Id> &detached);
    /// Forgets a detached folder, which has given up its watch.
    void release(Id id);

    int watch(Id id) const { return nodes_[id].watch; }
    void setWatch(Id id, int watch);
    /// Returns true when no other folder has the watch it had.
    bool clearWatch(Id id);
    /// Detached folders are among them.
    std::vector<Id> ownersOf(int watch) const { return owners_.of(watch); }

    /// Ids are below this.
    Id idLimit() const { return static_cast<Id>(nodes_.size()); }
    std::size_t folders() const { return folders_; }
    /// Returns the number of different watches.
    std::size_t watches() const { return watches_; }
    /// Memory held, slack included.
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
        /// Kernels list longer names than the 255 bytes that most file systems allow.
        std::uint16_t nameLength = 0;
        std::uint16_t depth : 14 = 0;
        State state : 2 = State::free;
    };
    static_assert(sizeof(Node) == 28);

    Id newNode();
    const std::string &rootPath(Id root) const { return rootPaths_[nodes_[root].name]; }
    void unlink(Id id);

    std::deque<Node> nodes_;
    std::vector<Id> free_;
    NameArena names_;
    /// "" for "/".
    std::vector<std::string> rootPaths_;
    ChildTable children_;
    WatchOwners owners_;
    std::size_t folders_ = 0;
    std::size_t watches_ = 0;
};

} // namespace quillon
