#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace quillon {

/// What tells one folder of a file system from every other, through changes of its name.
struct FolderId
{
    std::uint64_t inode = 0;
    /// When the folder was made, in nanoseconds since 1970. Inode numbers are used again; this
    /// tells the folders that had one apart.
    std::int64_t birthTime = 0;

    friend bool operator==(const FolderId &, const FolderId &) = default;
};

/// Facts about single folders. Safe from every thread. A symbolic link to a folder counts as a
/// folder whose identity is the link's own.
class FolderIdentity
{
public:
    FolderIdentity() = default;
    virtual ~FolderIdentity() = default;
    FolderIdentity(const FolderIdentity &) = delete;
    FolderIdentity &operator=(const FolderIdentity &) = delete;

    /// True when a folder stands at the absolute path, whether or not it may be read.
    virtual bool isFolder(const std::string &path) const = 0;
    /// True when the folder's names may be listed and its contents entered.
    virtual bool isReadable(const std::string &path) const = 0;
    /// Absent when no folder stands there, or its file system keeps no birth times.
    virtual std::optional<FolderId> identify(const std::string &path) const = 0;
    /// The absolute path of the folder directly below the parent that has this identity; absent
    /// when there is none or the parent cannot be read.
    virtual std::optional<std::string> find(const std::string &parent,
                                            const FolderId &id) const = 0;
};

} // namespace quillon
