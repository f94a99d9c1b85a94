#pragma once

#include "platform/linux/watching/FolderVerifier.h"
#include "platform/linux/watching/InotifyQueue.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace quillon {

/// The roots of a stream, and the watches on the folders above them that tell when one comes, goes
/// or becomes another. Not locked.
class WatchRoots
{
public:
    using Id = WatchTree::Id;

    WatchRoots(const InotifyQueue &queue, WatchedFolders &folders, const WatchFilter &items,
               ChangeLog &changes, RetryList &retries, const MountTable *mounts);

    /// Adds a root that nothing is known of; it is looked for at the next check.
    void add(const std::string &path);
    /// Takes the folder that a crawl has entered as that of a root which was added.
    void setFolder(std::string_view path, Id node);
    /// Forgets the root and drops its folders. The watches on the folders above stay, since they
    /// may guard other roots too.
    void remove(std::string_view path);
    /// Returns whether the root is on a remote file system. Absent when the disk did not answer.
    std::optional<bool> isRemote(const std::string &path) const;
    /// Returns the folder of a root. It is NONE where the root is not there.
    Id folder(std::string_view path) const;
    /// The roots that are there, and their folders.
    std::vector<std::pair<std::string, Id>> entered() const;

    /// Returns whether a mount that came or went at this point may have made a root appear,
    /// disappear or become another folder.
    bool areConcernedByMount(std::string_view point) const;

    /// Watches the folders above a path. False when one that is there got no watch.
    bool guard(const std::string &path);
    bool owns(int watch) const { return guards_.contains(watch); }
    /// Takes note of an event. True when a root may be concerned.
    bool note(const InotifyQueue::Event &event);

    struct Check
    {
        /// The flags with which roots are reported that have come, gone or become another.
        std::uint32_t flags = 0;
        /// Roots may have been away since the last check.
        bool isSuspect = false;
        /// Nothing is told of roots that are new here but what has changed in them since then.
        std::optional<std::int64_t> quietSince = {};
    };
    /// Compares the roots with the disk.
    void check(FolderVerifier &verifier, const Check &terms);
    /// It is called with each root on a remote file system that comes or is forgotten.
    std::function<void(const std::string &path, bool hasCome)> onRemote;

private:
    struct Root
    {
        std::string path = {};
        /// The path without links when the root was last checked, or empty when it was not there.
        std::string realPath = {};
        Id node = WatchTree::NONE;
        bool isRemote = false;
        /// Was looked for before.
        bool isKnown = false;
    };

    bool guardWay(const std::string &path);
    void checkOne(Root &root, FolderVerifier &verifier, const Check &terms);

    const InotifyQueue &queue_;
    WatchedFolders &folders_;
    const WatchFilter &items_;
    ChangeLog &changes_;
    RetryList &retries_;
    const MountTable *const mounts_;
    std::vector<Root> roots_;
    /// Watch -> the names in that folder that lead to a root.
    std::unordered_map<int, std::vector<std::string>> guards_;
};

} // namespace quillon
