#pragma once

#include "platform/linux/watching/FolderVerifier.h"
#include "platform/linux/watching/InotifyQueue.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace quillon {

/// The roots of a stream, and the watches on the folders above them that report when a root comes,
/// goes or becomes another folder. Not locked.
class WatchRoots
{
public:
    using Id = WatchTree::Id;

    WatchRoots(const InotifyQueue &queue, WatchedFolders &folders, const WatchFilter &items,
               ChangeLog &changes, OpenQuestions &questions, const MountTable *mounts);

    /// Adds a root of which nothing is known. The next check looks for it.
    void add(const std::string &path);
    /// Forgets the root and drops its folders. The watches on the folders above stay, since they
    /// may guard other roots too.
    void remove(std::string_view path);
    /// Returns whether the root is on a remote file system, or nothing when the disk did not
    /// answer.
    std::optional<bool> isRemote(const std::string &path) const;

    /// Notes that a mount has come or gone at this point, which may have made a root appear,
    /// disappear or become another folder, or may have changed a folder below a root.
    void noteMount(const std::string &point);

    /// Watches the folders above a path. Returns false when one that exists got no watch.
    bool guard(const std::string &path);
    bool owns(int watch) const { return guards_.contains(watch); }
    /// Notes an event, which may concern a root.
    void note(const InotifyQueue::Event &event);

    struct Check
    {
        /// The flags for the report of roots that have come, gone or become another folder.
        std::uint32_t flags = 0;
        /// True when roots may have been away since the last check.
        bool isSuspect = false;
        /// If a time is given, the only reports about new roots are of what has changed in them
        /// since then.
        std::optional<std::int64_t> quietSince = {};
    };
    /// Compares the roots with the disk.
    void check(FolderVerifier &verifier, const Check &terms);

private:
    struct Root
    {
        std::string path = {};
        /// The root's path without links at the last check, or empty when the root was not there.
        std::string realPath = {};
        bool isRemote = false;
        /// True when the root was looked for before.
        bool isKnown = false;
    };

    void askBelow(Id root, std::string_view below);
    bool guardWay(const std::string &path);
    void checkOne(Root &root, FolderVerifier &verifier, const Check &terms);

    const InotifyQueue &queue_;
    WatchedFolders &folders_;
    const WatchFilter &items_;
    ChangeLog &changes_;
    OpenQuestions &questions_;
    const MountTable *const mounts_;
    std::vector<Root> roots_;
    /// For each watch, the names in its folder that lead to a root.
    std::unordered_map<int, std::vector<std::string>> guards_;
};

} // namespace quillon
