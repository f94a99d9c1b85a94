#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace quillon {

/// Identifies one folder of a file system, whatever its name becomes.
struct FolderId
{
    std::uint64_t inode = 0;
    /// The time at which the folder was made, in nanoseconds since 1970. File systems reuse inode
    /// numbers, and this time distinguishes the folders that had the same one.
    std::int64_t birthTime = 0;

    friend bool operator==(const FolderId &, const FolderId &) = default;
};

/// The state of a folder at a path.
enum class FolderPresence
{
    /// The folder exists, its names may be listed, and it may be entered.
    there,
    /// The folder exists but may not be listed or entered.
    unreadable,
    /// The folder does not exist or cannot be reached.
    away,
    /// The file system does not answer.
    unanswered,
};

/// Answers questions about single folders. Safe from every thread. A symbolic link to a folder
/// counts as a folder, with the identity of the link itself.
class FolderIdentity
{
public:
    FolderIdentity() = default;
    virtual ~FolderIdentity() = default;
    FolderIdentity(const FolderIdentity &) = delete;
    FolderIdentity &operator=(const FolderIdentity &) = delete;

    /// Returns the state of the folder at the absolute path.
    virtual FolderPresence presence(const std::string &path) const = 0;
    /// Returns nothing when there is no folder, or when its file system keeps no birth times.
    virtual std::optional<FolderId> identify(const std::string &path) const = 0;
    /// Returns the absolute path of the folder directly below the parent that has this identity, or
    /// nothing when there is none or the parent cannot be read.
    virtual std::optional<std::string> find(const std::string &parent,
                                            const FolderId &id) const = 0;
};

} // namespace quillon
